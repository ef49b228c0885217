#include <limits>
#include <optional>
#include <random>
#include <string>

#include <corvel/Exception.h>

#include "EnviFixture.h"
#include "filters/lattice/HgtReader.h"
#include "filters/lattice/HgtTile.h"
#include "filters/lattice/HgtWriter.h"
#include "support/FileSizeLimit.h"

namespace trovan::filters {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(HgtPosition, IsThatOfTheNameOfTheFile) {
  const struct {
    const wchar_t* path;
    std::optional<corvel::Vec2d> position;
  } cases[] = {
      {L"N57E011.hgt", corvel::Vec2d(11.0, 57.0)},
      {L"n57e011.HGT", corvel::Vec2d(11.0, 57.0)},
      {L"S05W070.hgt", corvel::Vec2d(-70.0, -5.0)},
      {L"N00E000.hgt", corvel::Vec2d(0.0, 0.0)},
      {L"a/b.c/S90W180.hgt", corvel::Vec2d(-180.0, -90.0)},
      {L"N37W105.SRTMGL1.hgt", corvel::Vec2d(-105.0, 37.0)},
      {L"N57E011", corvel::Vec2d(11.0, 57.0)},
      {L"N57E011/tile.hgt", std::nullopt},
      {L"N57E0111.hgt", std::nullopt},
      {L"N57E01.hgt", std::nullopt},
      {L"N5xE011.hgt", std::nullopt},
      {L"N-7E011.hgt", std::nullopt},
      {L"N57E 11.hgt", std::nullopt},
      {L"E57N011.hgt", std::nullopt},
      {L"N91E011.hgt", std::nullopt},
      {L"N57E181.hgt", std::nullopt},
      {L"N57E011_old.hgt", std::nullopt},
      {L"", std::nullopt},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(HgtPosition(c.path), c.position) << std::string(c.path, c.path + wcslen(c.path));
  }
}

TEST(HgtName, ReadsBackAsItsPosition) {
  EXPECT_EQ(HgtName(57, 11), "N57E011.hgt");
  EXPECT_EQ(HgtName(-5, -70), "S05W070.hgt");
  EXPECT_EQ(HgtName(0, 0), "N00E000.hgt");
}

class HgtTest : public RasterTest {
 protected:
  // A tile of one degree with its south-west sample there.
  static LatticeHeader Tile(unsigned side, double longitude, double latitude) {
    LatticeHeader header = SmallLattice(corvel::kInt16, side, side);
    header.origin = {longitude, latitude, 0.0};
    header.spacing = {1.0 / (side - 1), 1.0 / (side - 1), 1.0};
    return header;
  }
  static std::string CheckError(const LatticeHeader& header, const std::wstring& name = L"a.hgt",
                                const LatticeWriteOptions& options = {}) {
    return ErrorOf([&] { HgtWriter(name, options).Check(header); });
  }
};

TEST_F(HgtTest, IsReadFromNorthToSouthWithTheHighByteFirst) {
  Put("N57E011.hgt", std::string("\0\1\0\2\x80\0\xFF\xFF", 8));
  HgtReader reader(File(L"N57E011.hgt"));
  test::MemoryLattice nodes(reader.Header());
  reader.ReadRows(nodes);
  EXPECT_EQ(nodes.Value<std::int16_t>(0, 1), 1);
  EXPECT_EQ(nodes.Value<std::int16_t>(1, 1), 2);
  EXPECT_EQ(nodes.Value<std::int16_t>(0, 0), -32768);
  EXPECT_EQ(nodes.Value<std::int16_t>(1, 0), -1);
}

TEST_F(HgtTest, HasTheHeaderOfItsSizeAndName) {
  Put("s05w070.hgt", std::string(18, '\0'));
  const HgtReader reader(File(L"s05w070.hgt"));
  const LatticeHeader& header = reader.Header();
  EXPECT_EQ(header.type, LatticeResequencer::Uniform);
  EXPECT_EQ(header.columns, 3U);
  EXPECT_EQ(header.rows, 3U);
  EXPECT_EQ(header.planes, 1U);
  EXPECT_EQ(header.components, 1U);
  EXPECT_EQ(header.dataType, corvel::kInt16);
  EXPECT_EQ(header.rowOrder, RowOrder::kTopDown);
  EXPECT_EQ(header.voidValue, -32768.0);
  EXPECT_EQ(header.origin, corvel::Vec3d(-70.0, -5.0, 0.0));
  EXPECT_EQ(header.spacing, corvel::Vec3d(0.5, 0.5, 1.0));
  EXPECT_THAT(header.remarks, IsEmpty());
}

TEST_F(HgtTest, LiesAtTheOriginWhenItsNameTellsNoPosition) {
  Put("tile.hgt", std::string(8, '\0'));
  const HgtReader reader(File(L"tile.hgt"));
  EXPECT_EQ(reader.Header().origin, corvel::Vec3d(0.0, 0.0, 0.0));
  EXPECT_THAT(reader.Header().remarks, ElementsAre(HasSubstr("tells no position")));
}

TEST_F(HgtTest, IsRefusedUnlessItIsASquare) {
  for (std::size_t size = 0; size < 200; ++size) {
    const bool isSquare = size == 8 || size == 18 || size == 32 || size == 50 || size == 72 ||
                          size == 98 || size == 128 || size == 162;
    Put("N57E011.hgt", std::string(size, '\0'));
    const std::string error = ErrorOf([&] { HgtReader(File(L"N57E011.hgt")); });
    if (isSquare) {
      EXPECT_EQ(error, "");
    } else {
      EXPECT_THAT(error, AllOf(HasSubstr("N57E011.hgt is no height tile: it has " +
                                         std::to_string(size) + " bytes"),
                               HasSubstr("1201 x 1201")));
    }
  }
}

// A file with a hole takes no room; a double cannot hold the square of its side.
TEST_F(HgtTest, FindsTheSideOfVeryLargeSquares) {
  constexpr std::uint64_t kSide = 1'999'999;
  Put("large.hgt", "");
  std::filesystem::resize_file(Folder() / "large.hgt", kSide * kSide * 2);
  EXPECT_EQ(HgtReader(File(L"large.hgt")).Header().columns, kSide);
  std::filesystem::resize_file(Folder() / "large.hgt", kSide * kSide * 2 - 2);
  EXPECT_THAT(ErrorOf([&] { HgtReader(File(L"large.hgt")); }), HasSubstr("is no height tile"));
}

TEST_F(HgtTest, TellsWhereAFileEndsThatShrankSinceItWasOpened) {
  Put("N57E011.hgt", std::string(18, '\0'));
  HgtReader reader(File(L"N57E011.hgt"));
  Put("N57E011.hgt", "abc");
  test::MemoryLattice nodes(reader.Header());
  EXPECT_THAT(ErrorOf([&] { reader.ReadRows(nodes); }), HasSubstr("ends at byte 3"));
}

TEST_F(HgtTest, ReadsBackAsItWasWritten) {
  std::mt19937 random(20240611);
  for (const unsigned side : {2U, 3U, 100U, 1201U, 1601U}) {  // the last has several blocks
    SCOPED_TRACE(side);
    test::MemoryLattice nodes(Tile(side, -70.0, -5.0));
    FillAtRandom(nodes, random);
    HgtWriter writer(File(L"S05W070.hgt"), {});
    writer.Check(nodes.Header());
    writer.Write(nodes.Header(), nodes);
    EXPECT_EQ(Bytes("S05W070.hgt").size(), std::size_t{side} * side * 2);

    HgtReader reader(File(L"S05W070.hgt"));
    EXPECT_EQ(reader.Header().origin, nodes.Header().origin);
    EXPECT_EQ(reader.Header().spacing, nodes.Header().spacing);
    test::MemoryLattice read(reader.Header());
    reader.ReadRows(read);
    EXPECT_TRUE(read.Nodes() == nodes.Nodes());
  }
  EXPECT_THAT(Names(), ElementsAre("S05W070.hgt"));
}

TEST_F(HgtTest, WritesTheTopRowFirstWhateverOrderTheLatticeHad) {
  LatticeHeader header = Tile(2, 0.0, 0.0);
  header.rowOrder = RowOrder::kBottomUp;
  test::MemoryLattice nodes(header);
  FillInOrder<std::int16_t>(nodes);
  HgtWriter(File(L"a.hgt"), {}).Write(header, nodes);
  EXPECT_EQ(Bytes("a.hgt"), std::string("\0\2\0\3\0\0\0\1", 8));
}

TEST_F(HgtTest, TakesOnlyLatticesOfItsForm) {
  const LatticeHeader good = Tile(3, 11.0, 57.0);
  EXPECT_EQ(CheckError(good), "");

  LatticeHeader header = good;
  header.type = LatticeResequencer::Rectilinear;
  EXPECT_THAT(CheckError(header), HasSubstr("not uniform"));
  header.type = LatticeResequencer::Curvilinear;
  EXPECT_THAT(CheckError(header), HasSubstr("not uniform"));
  header = good;
  header.planes = 2;
  EXPECT_THAT(CheckError(header), HasSubstr("one plane, the lattice has 2"));
  header = good;
  header.components = 3;
  EXPECT_THAT(CheckError(header), HasSubstr("one value for each node, the lattice has 3"));
  header = good;
  header.rows = 4;
  EXPECT_THAT(CheckError(header), HasSubstr("the lattice has 3 x 4"));
  EXPECT_THAT(CheckError(SmallLattice(corvel::kInt16, 1, 1)), HasSubstr("1 x 1"));
  header = good;
  header.dataType = corvel::kUInt16;
  EXPECT_THAT(CheckError(header), HasSubstr("--type int16"));
}

TEST_F(HgtTest, TakesOnlyItsOwnVoidValue) {
  LatticeHeader header = Tile(3, 11.0, 57.0);
  header.voidValue = -32768.0;
  EXPECT_EQ(CheckError(header), "");
  header.voidValue = -9999.0;
  EXPECT_THAT(CheckError(header), HasSubstr("by -32768, the lattice by -9999"));
}

TEST_F(HgtTest, TakesOnlyOptionsThatItHas) {
  const LatticeHeader header = Tile(3, 11.0, 57.0);
  LatticeWriteOptions options;
  options.rowOrder = RowOrder::kTopDown;
  options.byteOrder = ByteOrder::kBigEndian;
  EXPECT_EQ(CheckError(header, L"a.hgt", options), "");
  options.rowOrder = RowOrder::kBottomUp;
  EXPECT_THAT(CheckError(header, L"a.hgt", options), HasSubstr("top row first"));
  options = {};
  options.byteOrder = ByteOrder::kLittleEndian;
  EXPECT_THAT(CheckError(header, L"a.hgt", options), HasSubstr("big-endian"));
  options = {};
  options.interleave = Interleave::kBandSequential;
  EXPECT_THAT(CheckError(header, L"a.hgt", options), HasSubstr("interleave"));
  options = {};
  options.asText = true;
  EXPECT_THAT(CheckError(header, L"a.hgt", options), HasSubstr("as text"));
}

TEST_F(HgtTest, TakesOnlyANameThatTellsItsPosition) {
  EXPECT_EQ(CheckError(Tile(1201, 11.0, 57.0), L"N57E011.hgt"), "");
  EXPECT_EQ(CheckError(Tile(1201, 11.0, 57.0), L"any.hgt"), "");
  EXPECT_EQ(CheckError(Tile(1201, 11.0 + 1e-7, 57.0 - 1e-7), L"N57E011.hgt"), "");
  EXPECT_THAT(CheckError(Tile(1201, 11.0, 57.0), L"N57E012.hgt"),
              AllOf(HasSubstr("N57E012.hgt is not where the lattice lies (11, 57)"),
                    HasSubstr("name it N57E011.hgt")));
  EXPECT_THAT(CheckError(Tile(1201, 11.0, -57.0), L"N57E011.hgt"), HasSubstr("name it S57E011"));
  EXPECT_THAT(CheckError(Tile(1201, 11.0 + 1e-5, 57.0), L"N57E011.hgt"),
              HasSubstr("a name without a position"));
  EXPECT_THAT(
      CheckError(Tile(1201, std::numeric_limits<double>::quiet_NaN(), 57.0), L"N57E011.hgt"),
      HasSubstr("a name without a position"));

  LatticeHeader header = Tile(1201, 11.0, 57.0);
  header.spacing.y = 1.0 / 1201;
  EXPECT_THAT(CheckError(header, L"N57E011.hgt"), HasSubstr("covers one degree"));
  EXPECT_EQ(CheckError(header, L"any.hgt"), "");
}

TEST_F(HgtTest, LeavesNothingWhenTheSourceRaises) {
  const LatticeHeader header = Tile(5, 11.0, 57.0);
  FailingSource source(RowSize(header), 3);
  EXPECT_THROW(HgtWriter(File(L"a.hgt"), {}).Write(header, source), std::runtime_error);
  EXPECT_THAT(Names(), IsEmpty());
}

TEST_F(HgtTest, LeavesNothingOnAFullDisk) {
  test::MemoryLattice nodes(Tile(300, 11.0, 57.0));
  const test::FileSizeLimit limit(100'000);
  EXPECT_THROW(HgtWriter(File(L"a.hgt"), {}).Write(nodes.Header(), nodes), FilterError);
  EXPECT_THAT(Names(), IsEmpty());
}

TEST_F(HgtTest, ReplacesAFileThatExists) {
  Put("a.hgt", "old");
  test::MemoryLattice nodes(Tile(2, 0.0, 0.0));
  HgtWriter(File(L"a.hgt"), {}).Write(nodes.Header(), nodes);
  EXPECT_EQ(Bytes("a.hgt"), std::string(8, '\0'));
}

}  // namespace
}  // namespace trovan::filters
