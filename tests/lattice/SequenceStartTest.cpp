// How a lattice starts: what is refused, which files there are, and what a second start changes.
#include <string>
#include <type_traits>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ResequencerFixture.h"

namespace trovan::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::StartsWith;

constexpr auto kUniform = LatticeResequencer::Uniform;
constexpr auto kRectilinear = LatticeResequencer::Rectilinear;
constexpr auto kCurvilinear = LatticeResequencer::Curvilinear;

static_assert(kUniform == 1 && kRectilinear == 2 && kCurvilinear == 3);
static_assert(sizeof(LatticeResequencer::LatticeType) == 4);
static_assert(!std::is_copy_constructible_v<LatticeResequencer>);
static_assert(!std::is_copy_assignable_v<LatticeResequencer>);
static_assert(!std::is_move_constructible_v<LatticeResequencer>);
static_assert(!std::is_move_assignable_v<LatticeResequencer>);

using SequenceStart = ResequencerTest;

TEST_F(SequenceStart, IsIdleBefore) {
  EXPECT_EQ(lattice_.GetXdim(), 0U);
  EXPECT_EQ(lattice_.GetYdim(), 0U);
  EXPECT_EQ(lattice_.GetZdim(), 0U);
  EXPECT_EQ(lattice_.GetNumDataComponentsPerNode(), 0U);
  EXPECT_EQ(lattice_.GetCoordElementSize(), 0U);
  EXPECT_EQ(lattice_.GetDataElementSize(), 0U);
  EXPECT_EQ(lattice_.GetDataTotalSize(), 0);
  EXPECT_EQ(lattice_.GetCurviCoordTotalSize(), 0);
  EXPECT_THAT(TempFiles(), IsEmpty());
}

TEST_F(SequenceStart, RefusesSizesThatMakeNoLattice) {
  const auto type = [](unsigned value) {
    return static_cast<LatticeResequencer::LatticeType>(value);
  };
  const struct {
    const char* name;
    Sizes sizes;
    const char* message;
  } cases[] = {
      {"no column", {.xdim = 0}, "Bad parameter"},
      {"no row", {.ydim = 0}, "Bad parameter"},
      {"no plane", {.zdim = 0}, "Bad parameter"},
      {"type 0", {.type = type(0)}, "Bad parameter"},
      {"type 4", {.type = type(4)}, "Bad parameter"},
      {"a huge type", {.type = type(0xFFFFFFFF)}, "Bad parameter"},
      {"rectilinear without a coordinate size",
       {.type = kRectilinear},
       "Bad coordinate size parameter"},
      {"curvilinear without one", {.type = kCurvilinear}, "Bad coordinate size parameter"},
      {"no component", {.components = 0}, "Bad component count or data size parameter"},
      {"no data size", {.dataSize = 0}, "Bad component count or data size parameter"},
      {"everything wrong: the dimensions come first",
       {.type = kRectilinear, .xdim = 0, .components = 0},
       "Bad parameter"},
      {"then the coordinate size",
       {.type = kRectilinear, .components = 0},
       "Bad coordinate size parameter"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(RaisedBy([&] { Start(c.sizes); }), c.message) << c.name;
    EXPECT_EQ(lattice_.GetXdim(), 0U) << c.name;
    EXPECT_EQ(lattice_.GetNumDataComponentsPerNode(), 0U) << c.name;
  }
  EXPECT_THAT(TempFiles(), IsEmpty());
}

TEST_F(SequenceStart, LeavesAStartedLatticeAloneWhenItRefuses) {
  Start({.xdim = 3, .ydim = 2});
  EXPECT_EQ(RaisedBy([&] { Start({.xdim = 9, .zdim = 0}); }), "Bad parameter");
  EXPECT_EQ(lattice_.GetXdim(), 3U);
  EXPECT_EQ(ReadRow(1, 0), std::string(3, '\0'));
}

TEST_F(SequenceStart, TakesAUniformLatticeWithoutCoordinateSize) {
  Start({.xdim = 2, .coordSize = 0});
  EXPECT_EQ(lattice_.GetXdim(), 2U);
}

TEST_F(SequenceStart, TakesNoComponentsWhenThereIsNoDataFile) {
  Start({.xdim = 2, .components = 0, .dataSize = 0, .dataFile = false});
  EXPECT_THAT(TempFiles(), IsEmpty());
  EXPECT_EQ(lattice_.GetXdim(), 2U);
  EXPECT_EQ(lattice_.GetDataScanlineSize(), 0U);
}

TEST_F(SequenceStart, TakesNoComponentsWhenThereIsACoordinateFileOnly) {
  Start({.type = kCurvilinear,
         .xdim = 2,
         .components = 0,
         .coordSize = 1,
         .dataSize = 0,
         .coordFile = true,
         .dataFile = false});
  EXPECT_THAT(TempFiles(), ElementsAre(StartsWith("QVC")));
  lattice_.WriteRowOfXYZ(0, 0, "xyzXYZ");
  EXPECT_EQ(CoordFile(), "xyzXYZ");
}

TEST_F(SequenceStart, TellsItsSizes) {
  Start({.type = kCurvilinear,
         .xdim = 5,
         .ydim = 4,
         .zdim = 3,
         .components = 2,
         .coordSize = 8,
         .dataSize = 4});
  EXPECT_EQ(lattice_.GetXdim(), 5U);
  EXPECT_EQ(lattice_.GetYdim(), 4U);
  EXPECT_EQ(lattice_.GetZdim(), 3U);
  EXPECT_EQ(lattice_.GetNumDataComponentsPerNode(), 2U);
  EXPECT_EQ(lattice_.GetCoordElementSize(), 8U);
  EXPECT_EQ(lattice_.GetDataElementSize(), 4U);
  EXPECT_EQ(lattice_.GetDataScanlineSize(), 40U);
  EXPECT_EQ(lattice_.GetDataPlaneSize(), 160);
  EXPECT_EQ(lattice_.GetDataTotalSize(), 480);
  EXPECT_EQ(lattice_.GetCurviCoordScanlineSize(), 120U);
  EXPECT_EQ(lattice_.GetCurviCoordPlaneSize(), 480);
  EXPECT_EQ(lattice_.GetCurviCoordTotalSize(), 1440);
  EXPECT_EQ(lattice_.GetRectiXCoordsTotalSize(), 40U);
  EXPECT_EQ(lattice_.GetRectiYCoordsTotalSize(), 32U);
  EXPECT_EQ(lattice_.GetRectiZCoordsTotalSize(), 24U);
}

TEST_F(SequenceStart, MakesTheFilesThatTheFlagsAskForWhateverTheType) {
  for (const auto type : {kUniform, kRectilinear, kCurvilinear}) {
    for (const bool coordFile : {false, true}) {
      for (const bool dataFile : {false, true}) {
        SCOPED_TRACE(testing::Message() << type << coordFile << dataFile);
        Start({.type = type,
               .xdim = 3,
               .ydim = 2,
               .zdim = 2,
               .components = 2,
               .coordSize = 4,
               .dataSize = 2,
               .coordFile = coordFile,
               .dataFile = dataFile});
        EXPECT_EQ(TempFiles().size(), std::size_t{coordFile} + std::size_t{dataFile});
        if (coordFile) {
          EXPECT_EQ(CoordFile(), std::string(3 * 2 * 2 * 3 * 4, '\0'));
        }
        if (dataFile) {
          EXPECT_EQ(DataFile(), std::string(3 * 2 * 2 * 2 * 2, '\0'));
        }
        lattice_.Finish();
      }
    }
  }
}

TEST_F(SequenceStart, MakesAnEmptyCoordinateFileOfAUniformLatticeWithoutCoordinateSize) {
  Start({.xdim = 3, .coordSize = 0, .coordFile = true});
  EXPECT_EQ(CoordFile(), "");
}

TEST_F(SequenceStart, NamesItsFilesByTheirPrefixesInTheTemporaryFolder) {
  Start({.coordSize = 1, .coordFile = true});
  EXPECT_THAT(TempFiles(),
              ElementsAre(MatchesRegex("QVC[0-9a-f]+\\.tmp"), MatchesRegex("QVD[0-9a-f]+\\.tmp")));
}

TEST_F(SequenceStart, FillsFilesAroundTheSizeOfItsBlocksWithZeros) {
  for (const unsigned size : {1U, 65535U, 65536U, 65537U, 131072U, 200000U}) {
    Start({.xdim = size});
    const std::string bytes = DataFile();  // while it is open: the zeros are on the file already
    EXPECT_EQ(bytes.size(), size);
    EXPECT_EQ(bytes.find_first_not_of('\0'), std::string::npos);
    lattice_.Finish();
  }
}

TEST_F(SequenceStart, RaisesWithoutATemporaryFolderAndKeepsTheSizes) {
  const ScopedVariable nowhere("TMPDIR", (folder_.Path() / "missing").c_str());
  EXPECT_EQ(RaisedBy([&] { Start({.xdim = 7}); }), "GetTempPath failed!");
  EXPECT_EQ(lattice_.GetXdim(), 7U);
}

TEST_F(SequenceStart, NeedsATemporaryFolderThoughItMakesNoFile) {
  const ScopedVariable nowhere("TMPDIR", (folder_.Path() / "missing").c_str());
  EXPECT_EQ(RaisedBy([&] { Start({.xdim = 7, .ydim = 2, .components = 3, .dataFile = false}); }),
            "GetTempPath failed!");
  EXPECT_EQ(lattice_.GetXdim(), 7U);
  EXPECT_EQ(lattice_.GetDataPlaneSize(), 42);
}

TEST_F(SequenceStart, RaisesWhenNoTemporaryNameCanBeMade) {
  // Longer than a name of 260 characters has room for.
  const auto deep = folder_.Path() / std::string(120, 'a') / std::string(120, 'b');
  std::filesystem::create_directories(deep);
  const ScopedVariable variable("TMPDIR", deep.c_str());
  EXPECT_EQ(RaisedBy([&] { Start({.coordSize = 1, .coordFile = true, .dataFile = false}); }),
            "GetTempFileName failed!");
  EXPECT_EQ(RaisedBy([&] { Start({}); }), "GetTempFileName failed!");
  lattice_.Finish();
}

TEST_F(SequenceStart, ReplacesAndForgetsTheFilesOfAnEarlierStart) {
  Start({.xdim = 3});
  lattice_.WriteRowOfMultiComponentData(0, 0, "old");
  const std::string old = TempFiles().at(0);
  Start({.xdim = 4});
  EXPECT_EQ(TempFiles().size(), 2U);
  EXPECT_EQ(ReadRow(0, 0), std::string(4, '\0'));
  lattice_.Finish();
  EXPECT_THAT(TempFiles(), ElementsAre(old));
  EXPECT_EQ(DataFile(), "old");
}

TEST_F(SequenceStart, ExtendsAFileThatStaysOpenFromItsPosition) {
  Start({.xdim = 4, .ydim = 2});
  lattice_.WriteRowOfMultiComponentData(0, 0, "abcd");
  lattice_.WriteRowOfMultiComponentData(1, 0, "efgh");
  lattice_.WriteRowOfMultiComponentData(0, 0, "ABCD");  // the position is 4 now
  Start({.xdim = 3, .ydim = 2, .dataFile = false});
  EXPECT_EQ(DataFile(), std::string("ABCD\0\0\0\0\0\0", 10));
  lattice_.WriteRowOfMultiComponentData(1, 0, "xyz");
  EXPECT_EQ(DataFile(), std::string("ABCxyz\0\0\0\0", 10));
  lattice_.Finish();
  EXPECT_THAT(TempFiles(), IsEmpty());
}

TEST_F(SequenceStart, ExtendsACoordinateFileThatStaysOpenToo) {
  Start({.type = kCurvilinear, .coordSize = 1, .coordFile = true});
  lattice_.WriteRowOfXYZ(0, 0, "xyz");
  Start({.type = kCurvilinear, .xdim = 2, .coordSize = 1, .coordFile = false});
  EXPECT_EQ(CoordFile(), std::string("xyz\0\0\0\0\0\0", 9));
}

}  // namespace
}  // namespace trovan::test
