// ESRI ASCII grids that other programs wrote, with what is known of them.
#include <algorithm>
#include <filesystem>
#include <limits>
#include <optional>
#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <corvel/Path.h>

#include "MemoryLattice.h"
#include "RealLattices.h"
#include "filters/lattice/AsciiGridReader.h"
#include "filters/lattice/AsciiGridWriter.h"
#include "support/Sha256.h"
#include "support/TempFolder.h"

namespace trovan::filters {
namespace {

using json = nlohmann::ordered_json;

class RealAsciiGridTest : public test::RealLattices {
 protected:
  void SetUp() override {
    RealLatticesOn::SetUp();
    if (IsSkipped()) return;
    const json all = Expected();
    for (const auto& [name, grid] : all.items()) {
      if (grid.contains("as_float64")) grids_[name] = grid;
    }
    ASSERT_GE(grids_.size(), 9U);
  }

  static test::MemoryLattice Read(const std::wstring& path) {
    AsciiGridReader reader(path);
    test::MemoryLattice lattice(reader.Header());
    reader.ReadRows(lattice);
    return lattice;
  }

  // The values as a file has them, top row first.
  static std::string TopDown(const test::MemoryLattice& lattice) {
    const std::size_t rowSize = RowSize(lattice.Header());
    std::string bytes;
    for (unsigned y = lattice.Header().rows; y-- > 0;) {
      bytes.append(reinterpret_cast<const char*>(lattice.Nodes().data()) + y * rowSize, rowSize);
    }
    return bytes;
  }

  json grids_;
};

TEST_F(RealAsciiGridTest, HaveTheirSizesAndPlaces) {
  for (const auto& [name, grid] : grids_.items()) {
    SCOPED_TRACE(name);
    const LatticeHeader header = AsciiGridReader(Path(name)).Header();
    EXPECT_EQ(header.columns, grid["columns"].get<unsigned>());
    EXPECT_EQ(header.rows, grid["rows"].get<unsigned>());
    const auto& transform = grid["geotransform"];
    EXPECT_EQ(header.spacing.x, transform[1].get<double>());
    EXPECT_EQ(header.spacing.y, -transform[5].get<double>());
    const double left = transform[0].get<double>();
    const double top = transform[3].get<double>();
    EXPECT_DOUBLE_EQ(header.origin.x, left + header.spacing.x / 2);
    EXPECT_NEAR(header.origin.y, top - header.spacing.y * (header.rows - 0.5), 1e-9);
    const auto noData =
        grid.contains("nodata") ? std::optional(grid["nodata"].get<double>()) : std::nullopt;
    EXPECT_EQ(header.voidValue, noData);
  }
}

TEST_F(RealAsciiGridTest, HaveTheirValues) {
  for (const auto& [name, grid] : grids_.items()) {
    SCOPED_TRACE(name);
    const auto lattice = Read(Path(name));
    const json& values = grid["as_float64"];
    double least = std::numeric_limits<double>::infinity();
    double most = -least;
    std::size_t missing = 0;
    for (unsigned y = 0; y < lattice.Header().rows; ++y) {
      for (unsigned x = 0; x < lattice.Header().columns; ++x) {
        const double value = lattice.Value<double>(x, y);
        if (value == lattice.Header().voidValue) {
          ++missing;
        } else {
          least = std::min(least, value);
          most = std::max(most, value);
        }
      }
    }
    EXPECT_EQ(missing, values["missing_values"].get<std::size_t>());
    EXPECT_EQ(least, values["min"].get<double>());
    EXPECT_EQ(most, values["max"].get<double>());
    EXPECT_EQ(test::Sha256(TopDown(lattice)), values["sha256_float64_little_endian"]);
  }
}

TEST_F(RealAsciiGridTest, AreTheSameAfterTheyWereWritten) {
  const test::TempFolder folder;
  for (const auto& [name, grid] : grids_.items()) {
    SCOPED_TRACE(name);
    auto lattice = Read(Path(name));
    AsciiGridWriter writer(folder.File(L"again.asc"), {});
    writer.Check(lattice.Header());
    writer.Write(lattice.Header(), lattice);
    const auto again = Read(folder.File(L"again.asc"));
    EXPECT_EQ(again.Nodes(), lattice.Nodes());
    EXPECT_EQ(again.Header().origin.x, lattice.Header().origin.x);
    EXPECT_EQ(again.Header().origin.y, lattice.Header().origin.y);
    EXPECT_EQ(again.Header().voidValue, lattice.Header().voidValue);
  }
}

}  // namespace
}  // namespace trovan::filters
