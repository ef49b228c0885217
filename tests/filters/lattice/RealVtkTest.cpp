// VTK legacy files that other programs wrote, with what is known of them.
#include <algorithm>
#include <filesystem>
#include <limits>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <corvel/Path.h>

#include "MemoryLattice.h"
#include "RealLattices.h"
#include "filters/lattice/VtkReader.h"
#include "filters/lattice/VtkWriter.h"
#include "support/Sha256.h"
#include "support/TempFolder.h"

namespace trovan::filters {
namespace {

using json = nlohmann::ordered_json;
using testing::ElementsAre;

class RealVtkTest : public test::RealLattices {
 protected:
  void SetUp() override {
    RealLatticesOn::SetUp();
    if (IsSkipped()) return;
    const json all = Expected();
    for (const auto& [name, file] : all.items()) {
      if (name.ends_with(".vtk")) files_[name] = file;
    }
    ASSERT_GE(files_.size(), 2U);
  }

  static test::MemoryLattice Read(const std::wstring& path) {
    VtkReader reader(path, "");
    test::MemoryLattice lattice(reader.Header());
    reader.ReadRows(lattice);
    return lattice;
  }

  static void ExpectElements(const std::vector<unsigned char>& bytes, corvel::PrimType type,
                             const json& array) {
    double least = std::numeric_limits<double>::infinity();
    double most = -least;
    const auto size = static_cast<std::size_t>(corvel::CPrimType(type).Size());
    for (std::size_t at = 0; at < bytes.size(); at += size) {
      const double value = corvel::CPrimData::GetWideReal(type, &bytes[at]);
      least = std::min(least, value);
      most = std::max(most, value);
    }
    EXPECT_EQ(least, array["min"].get<double>());
    EXPECT_EQ(most, array["max"].get<double>());
    EXPECT_EQ(test::Sha256({reinterpret_cast<const char*>(bytes.data()), bytes.size()}),
              array["sha256_little_endian"]);
  }

  json files_;
};

TEST_F(RealVtkTest, HaveTheirSizesAndValues) {
  for (const auto& [name, file] : files_.items()) {
    SCOPED_TRACE(name);
    const auto lattice = Read(Path(name));
    const LatticeHeader& header = lattice.Header();
    EXPECT_EQ(header.columns, file["dimensions"][0].get<unsigned>());
    EXPECT_EQ(header.rows, file["dimensions"][1].get<unsigned>());
    EXPECT_EQ(header.planes, file["dimensions"][2].get<unsigned>());
    if (file.contains("origin")) {
      EXPECT_EQ(header.origin.x, file["origin"][0].get<double>());
      EXPECT_EQ(header.spacing.x, file["spacing"][0].get<double>());
    }
    const json& arrays = file["arrays"];
    const json& values = arrays.back();  // values of the points come last in each of these files
    EXPECT_EQ(header.components, values["components"].get<unsigned>());
    EXPECT_THAT(header.componentNames, ElementsAre(values["name"].get<std::string>()));
    ExpectElements(lattice.Nodes(), header.dataType, values);
    if (header.type != LatticeResequencer::Curvilinear) continue;
    ASSERT_EQ(arrays.front()["name"], "POINTS");
    ExpectElements(lattice.Coordinates(), header.coordType, arrays.front());
  }
}

TEST_F(RealVtkTest, AreTheSameAfterTheyWereWritten) {
  const test::TempFolder folder;
  for (const auto& [name, file] : files_.items()) {
    auto lattice = Read(Path(name));
    for (const bool asText : {false, true}) {
      SCOPED_TRACE(name + (asText ? ", text" : ", binary"));
      LatticeWriteOptions options;
      options.asText = asText;
      VtkWriter writer(folder.File(L"again.vtk"), options);
      writer.Check(lattice.Header());
      writer.Write(lattice.Header(), lattice);
      const auto again = Read(folder.File(L"again.vtk"));
      EXPECT_EQ(again.Nodes(), lattice.Nodes());
      EXPECT_EQ(again.Coordinates(), lattice.Coordinates());
      EXPECT_EQ(again.Header().title, lattice.Header().title);
    }
  }
}

}  // namespace
}  // namespace trovan::filters
