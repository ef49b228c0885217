// ENVI rasters and height tiles that other programs wrote, with what is known of them.
#include <algorithm>
#include <limits>
#include <memory>
#include <string>

#include <nlohmann/json.hpp>

#include "EnviFixture.h"
#include "RealLattices.h"
#include "filters/lattice/EnviReader.h"
#include "filters/lattice/EnviWriter.h"
#include "filters/lattice/HgtReader.h"
#include "filters/lattice/HgtWriter.h"
#include "filters/lattice/SwapBytes.h"
#include "support/Sha256.h"

namespace trovan::filters {
namespace {

using nlohmann::ordered_json;

std::unique_ptr<LatticeReader> Open(const std::wstring& path, const ordered_json& known) {
  if (known["driver"] == "ENVI") return std::make_unique<EnviReader>(path, 1);
  return std::make_unique<HgtReader>(path);
}

std::string NameOfType(corvel::PrimType type) {
  switch (type) {
    case corvel::kUInt8:
      return "Byte";
    case corvel::kInt16:
      return "Int16";
    case corvel::kUInt16:
      return "UInt16";
    default:
      return "another";
  }
}

// All values as doubles and as bytes: bands one after the other, their rows top down,
// little-endian.
struct Values {
  explicit Values(const test::MemoryLattice& nodes) {
    const LatticeHeader& header = nodes.Header();
    const auto size = static_cast<std::size_t>(corvel::CPrimType(header.dataType).Size());
    for (unsigned band = 0; band < header.components; ++band) {
      for (unsigned y = header.rows; y-- > 0;) {
        for (unsigned x = 0; x < header.columns; ++x) {
          const std::size_t node = std::size_t{y} * header.columns + x;
          const unsigned char* value =
              nodes.Nodes().data() + (node * header.components + band) * size;
          bytes.append(value, value + size);
          const double number = corvel::CPrimData::GetWideReal(header.dataType, value);
          if (number == header.voidValue) continue;
          least = std::min(least, number);
          most = std::max(most, number);
        }
      }
    }
    if (kMachineIsBigEndian) SwapBytes(bytes.data(), bytes.size() / size, size);
  }

  std::string bytes;
  double least = std::numeric_limits<double>::max();
  double most = std::numeric_limits<double>::lowest();
};

class RealEnviTest : public test::RealLatticesOn<RasterTest> {
 protected:
  void SetUp() override {
    RealLatticesOn::SetUp();
    if (IsSkipped()) return;
    const ordered_json all = Expected();
    for (const auto& [name, known] : all.items()) {
      const ordered_json driver = known.value("driver", "");
      if (driver == "ENVI" || driver == "SRTMHGT") known_[name] = known;
    }
    ASSERT_GE(known_.size(), 5U);
  }

  ordered_json known_;
};

void ExpectKnown(const LatticeHeader& header, const ordered_json& known) {
  EXPECT_EQ(header.columns, known["columns"].get<unsigned>());
  EXPECT_EQ(header.rows, known["rows"].get<unsigned>());
  EXPECT_EQ(header.components, known["bands"].get<unsigned>());
  EXPECT_EQ(NameOfType(header.dataType), known["data_type"].get<std::string>());
  EXPECT_EQ(header.rowOrder, RowOrder::kTopDown);
  if (known.contains("nodata")) {
    EXPECT_EQ(header.voidValue, known["nodata"].get<double>());
  }
  if (!known.contains("geotransform")) return;
  // From the outer corner of the first pixel: x, its step, and the same of y.
  const auto place = known["geotransform"].get<std::vector<double>>();
  EXPECT_NEAR(header.spacing.x, place[1], 1e-12);
  EXPECT_NEAR(header.spacing.y, -place[5], 1e-12);
  EXPECT_NEAR(header.origin.x, place[0] + 0.5 * place[1], 1e-9);
  EXPECT_NEAR(header.origin.y, place[3] + (header.rows - 0.5) * place[5], 1e-9);
}

TEST_F(RealEnviTest, AreReadWithAllTheirValues) {
  for (const auto& [name, known] : known_.items()) {
    SCOPED_TRACE(name);
    const auto reader = Open(Path(name), known);
    ExpectKnown(reader->Header(), known);
    test::MemoryLattice nodes(reader->Header());
    reader->ReadRows(nodes);
    const Values values(nodes);
    EXPECT_EQ(test::Sha256(values.bytes), known["sha256_bsq_little_endian"].get<std::string>());
    EXPECT_EQ(values.least, known["min"].get<double>());
    EXPECT_EQ(values.most, known["max"].get<double>());
  }
}

TEST_F(RealEnviTest, KeepTheirValuesInEveryInterleave) {
  for (const auto& [name, known] : known_.items()) {
    for (const Interleave interleave :
         {Interleave::kBandSequential, Interleave::kBandByLine, Interleave::kBandByPixel}) {
      SCOPED_TRACE(name + " as " + std::string(InterleaveName(interleave)));
      const auto reader = Open(Path(name), known);
      test::MemoryLattice nodes(reader->Header());
      reader->ReadRows(nodes);
      EnviWriter writer(File(L"out.img"), {interleave, std::nullopt, ByteOrder::kBigEndian, false});
      writer.Check(nodes.Header());
      writer.Write(nodes.Header(), nodes);

      EnviReader again(File(L"out.img"), 1);
      EXPECT_EQ(again.Header().origin, nodes.Header().origin);
      EXPECT_EQ(again.Header().componentNames, nodes.Header().componentNames);
      test::MemoryLattice read(again.Header());
      again.ReadRows(read);
      EXPECT_TRUE(read.Nodes() == nodes.Nodes());
    }
  }
}

TEST_F(RealEnviTest, OfHeightsAreWrittenByteForByte) {
  std::size_t tiles = 0;
  for (const auto& [name, known] : known_.items()) {
    if (known["driver"] != "SRTMHGT") continue;
    SCOPED_TRACE(name);
    const auto reader = Open(Path(name), known);
    test::MemoryLattice nodes(reader->Header());
    reader->ReadRows(nodes);
    const std::filesystem::path file = std::filesystem::path(name).filename();
    HgtWriter writer(File(file.wstring()), {});
    writer.Check(nodes.Header());
    writer.Write(nodes.Header(), nodes);
    EXPECT_TRUE(Bytes(file.c_str()) == test::ReadBytes(DataFolder() / name));
    ++tiles;
  }
  EXPECT_GT(tiles, 0U);
}

}  // namespace
}  // namespace trovan::filters
