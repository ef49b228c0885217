// Sizes beyond 32 bits: rows, planes and places within a plane wrap; planes and totals do not.
#include <string>

#include <gtest/gtest.h>

#include "ResequencerFixture.h"

namespace trovan::test {
namespace {

constexpr auto kCurvilinear = LatticeResequencer::Curvilinear;
constexpr long long kTwoTo32 = 1LL << 32;

using SequenceWrap = ResequencerTest;

TEST_F(SequenceWrap, AffectsThePlaneButNotTheTotal) {
  // 70,000 x 70,000 bytes: 4,900,000,000 = 2^32 + 605,032,704.
  Start({.xdim = 70'000, .ydim = 70'000, .zdim = 9, .coordSize = 1, .dataFile = false});
  EXPECT_EQ(lattice_.GetDataScanlineSize(), 70'000U);
  EXPECT_EQ(lattice_.GetDataPlaneSize(), 4'900'000'000 - kTwoTo32);
  EXPECT_EQ(lattice_.GetDataTotalSize(), 9 * (4'900'000'000 - kTwoTo32));
  EXPECT_EQ(lattice_.GetCurviCoordScanlineSize(), 210'000U);
  EXPECT_EQ(lattice_.GetCurviCoordPlaneSize(), 14'700'000'000 - 3 * kTwoTo32);
  EXPECT_EQ(lattice_.GetCurviCoordTotalSize(), 9 * (14'700'000'000 - 3 * kTwoTo32));
}

TEST_F(SequenceWrap, WidensAPlaneWithoutSign) {
  Start({.xdim = 1, .ydim = 0xFFFFFFFF, .zdim = 3, .coordSize = 5, .dataFile = false});
  EXPECT_EQ(lattice_.GetDataPlaneSize(), 0xFFFFFFFFLL);
  EXPECT_EQ(lattice_.GetDataTotalSize(), 3 * 0xFFFFFFFFLL);
  EXPECT_EQ(lattice_.GetRectiYCoordsTotalSize(), 0xFFFFFFFBU);
  EXPECT_EQ(lattice_.GetCurviCoordPlaneSize(), kTwoTo32 - 15);
}

TEST_F(SequenceWrap, TakesTheLargestSizesThere) {
  Start({.xdim = 1, .ydim = 0xFFFFFFFF, .zdim = 0xFFFFFFFF, .dataFile = false});
  // (2^32 - 1)^2 as 64 bits with a sign.
  EXPECT_EQ(lattice_.GetDataTotalSize(), 1LL - (1LL << 33));
}

TEST_F(SequenceWrap, PutsRowsOfAWrappedPlaneWhereTheirPlaceWraps) {
  // A row of 65,536 bytes, a plane of 2^32: it counts as nothing, and so does the whole file.
  Start({.xdim = 65'536, .ydim = 65'536, .zdim = 7});
  EXPECT_EQ(lattice_.GetDataPlaneSize(), 0);
  EXPECT_EQ(DataFile(), "");
  lattice_.WriteRowOfMultiComponentData(1, 5, std::string(65'536, 'r').data());
  EXPECT_EQ(DataFile(), std::string(65'536, '\0') + std::string(65'536, 'r'));
  EXPECT_EQ(ReadRow(1, 0), std::string(65'536, 'r'));  // the same place
}

TEST_F(SequenceWrap, AffectsThePlaceWithinAPlane) {
  // 6 bytes a row, 3 * 2^32 a plane: it counts as nothing, and places within it wrap at 2^32.
  Start({.xdim = 2, .ydim = 0x80000000, .zdim = 2, .dataSize = 3});
  EXPECT_EQ(lattice_.GetDataScanlineSize(), 6U);
  EXPECT_EQ(lattice_.GetDataPlaneSize(), 0);                         // 6 * 2^31 = 3 * 2^32
  lattice_.WriteRowOfMultiComponentData(715'827'883, 1, "wrapped");  // 6 * 715,827,883 = 2^32 + 2
  EXPECT_EQ(DataFile(), std::string("\0\0wrappe", 8));
}

TEST_F(SequenceWrap, SkipsNodesThatAShortStagingBufferDoesNotHold) {
  // 2^31 + 4 nodes of 2 bytes: the row wraps to 8 bytes, which hold 4 nodes.
  Start({.xdim = 0x80000004, .components = 2});
  ASSERT_EQ(lattice_.GetDataScanlineSize(), 8U);
  lattice_.WriteRowOfMultiComponentData(0, 0, "aAbBcCdD");
  std::string got(4, '?');
  lattice_.ReadRowOfSingleComponentData(0, 0, 1, got.data());
  EXPECT_EQ(got, "ABCD");
  lattice_.WriteRowOfSingleComponentData(0, 0, 0, std::string("1234").data());
  EXPECT_EQ(ReadRow(0, 0), "1A2B3C4D");
}

TEST_F(SequenceWrap, SkipsCoordinatesThatAShortStagingBufferDoesNotHold) {
  // 3 * 2863311531 = 2 * 2^32 + 1: one byte is left of a row.
  Start({.type = kCurvilinear,
         .xdim = 2'863'311'531,
         .coordSize = 1,
         .coordFile = true,
         .dataFile = false});
  ASSERT_EQ(lattice_.GetCurviCoordScanlineSize(), 1U);
  lattice_.WriteRowOfX(0, 0, "x");
  std::string got = "?";
  lattice_.ReadRowOfY(0, 0, got.data());
  EXPECT_EQ(got, "?");
  lattice_.ReadRowOfX(0, 0, got.data());
  EXPECT_EQ(got, "x");
}

}  // namespace
}  // namespace trovan::test
