// Rows in and out: whole and by component or axis, what they check, and where they lie in the file.
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <gsl/gsl>

#include "ResequencerFixture.h"

namespace trovan::test {
namespace {

constexpr auto kRectilinear = LatticeResequencer::Rectilinear;
constexpr auto kCurvilinear = LatticeResequencer::Curvilinear;

class SequenceRows : public ResequencerTest {
 protected:
  using RowCall = std::function<void(unsigned y, unsigned z, void* buffer)>;
  struct Named {
    const char* name;
    RowCall call;
  };

  std::vector<Named> CoordinateRows() {
    LatticeResequencer& l = lattice_;
    return {
        {"WriteRowOfXYZ", [&l](unsigned y, unsigned z, void* b) { l.WriteRowOfXYZ(y, z, b); }},
        {"WriteRowOfX", [&l](unsigned y, unsigned z, void* b) { l.WriteRowOfX(y, z, b); }},
        {"WriteRowOfY", [&l](unsigned y, unsigned z, void* b) { l.WriteRowOfY(y, z, b); }},
        {"WriteRowOfZ", [&l](unsigned y, unsigned z, void* b) { l.WriteRowOfZ(y, z, b); }},
        {"ReadRowOfXYZ", [&l](unsigned y, unsigned z, void* b) { l.ReadRowOfXYZ(y, z, b); }},
        {"ReadRowOfX", [&l](unsigned y, unsigned z, void* b) { l.ReadRowOfX(y, z, b); }},
        {"ReadRowOfY", [&l](unsigned y, unsigned z, void* b) { l.ReadRowOfY(y, z, b); }},
        {"ReadRowOfZ", [&l](unsigned y, unsigned z, void* b) { l.ReadRowOfZ(y, z, b); }},
    };
  }
  std::vector<Named> DataRows() {
    LatticeResequencer& l = lattice_;
    return {
        {"WriteRowOfMultiComponentData",
         [&l](unsigned y, unsigned z, void* b) { l.WriteRowOfMultiComponentData(y, z, b); }},
        {"WriteRowOfSingleComponentData",
         [&l](unsigned y, unsigned z, void* b) { l.WriteRowOfSingleComponentData(y, z, 0, b); }},
        {"ReadRowOfMultiComponentData",
         [&l](unsigned y, unsigned z, void* b) { l.ReadRowOfMultiComponentData(y, z, b); }},
        {"ReadRowOfSingleComponentData",
         [&l](unsigned y, unsigned z, void* b) { l.ReadRowOfSingleComponentData(y, z, 0, b); }},
    };
  }

  void ExpectRefusals(const std::vector<Named>& rows) {
    std::string buffer(1'000, '?');
    for (const auto& row : rows) {
      SCOPED_TRACE(row.name);
      const auto raised = [&](unsigned y, unsigned z, void* to) {
        return RaisedBy([&] { row.call(y, z, to); });
      };
      EXPECT_EQ(raised(0, 0, buffer.data()), "");
      EXPECT_EQ(raised(2, 1, buffer.data()), "");
      EXPECT_EQ(raised(3, 0, buffer.data()), "Bad parameter");
      EXPECT_EQ(raised(0, 2, buffer.data()), "Bad parameter");
      EXPECT_EQ(raised(0xFFFFFFFF, 0, buffer.data()), "Bad parameter");
      EXPECT_EQ(raised(0, 0xFFFFFFFF, buffer.data()), "Bad parameter");
      EXPECT_EQ(raised(0, 0, nullptr), "Bad parameter");
    }
  }
};

TEST_F(SequenceRows, RaiseOutsideOfTheLatticeAndWithoutABuffer) {
  Start({.type = kCurvilinear,
         .xdim = 4,
         .ydim = 3,
         .zdim = 2,
         .coordSize = 2,
         .dataSize = 2,
         .coordFile = true});
  ExpectRefusals(DataRows());
  ExpectRefusals(CoordinateRows());
}

TEST_F(SequenceRows, OfCoordinatesAreForCurvilinearLatticesOnly) {
  for (const auto type : {LatticeResequencer::Uniform, kRectilinear}) {
    Start({.type = type, .xdim = 2, .coordSize = 1, .coordFile = true});
    std::string buffer(6, '?');
    for (const auto& row : CoordinateRows()) {
      EXPECT_EQ(RaisedBy([&] { row.call(0, 0, buffer.data()); }), "Bad parameter") << row.name;
    }
    for (const auto& row : DataRows()) {
      EXPECT_EQ(RaisedBy([&] { row.call(0, 0, buffer.data()); }), "") << row.name;
    }
    lattice_.Finish();
  }
}

TEST_F(SequenceRows, RaiseTheFilesErrorWhenThereIsNoFile) {
  Start({.type = kCurvilinear, .coordSize = 1, .dataFile = false});
  char buffer[3] = {};
  for (const auto& rows : {DataRows(), CoordinateRows()}) {
    for (const auto& row : rows) {
      try {
        row.call(0, 0, buffer);
        ADD_FAILURE() << row.name;
      } catch (const corvel::Exception& error) {
        EXPECT_EQ(error.File(), "BufferedFile") << row.name;
      }
    }
  }
}

TEST_F(SequenceRows, FailFastOnAnEmptyStagingBuffer) {
  // 2^16 nodes of 2^16 bytes: the size of a row wraps to 0.
  Start({.xdim = 65'536, .dataSize = 65'536});
  ASSERT_EQ(lattice_.GetDataScanlineSize(), 0U);
  char byte = 'b';
  for (const auto& row : DataRows()) {
    EXPECT_THROW(row.call(0, 0, &byte), gsl::fail_fast) << row.name;
  }
  EXPECT_EQ(byte, 'b');
}

// A buffer that once held a row is empty without being null.
TEST_F(SequenceRows, FailFastOnAStagingBufferThatHasBecomeEmpty) {
  Start({.xdim = 4});
  Start({.xdim = 4, .components = 0, .dataSize = 0, .dataFile = false});
  ASSERT_EQ(lattice_.GetDataScanlineSize(), 0U);
  char byte = 'b';
  for (const auto& row : DataRows()) {
    EXPECT_THROW(row.call(0, 0, &byte), gsl::fail_fast) << row.name;
  }
  EXPECT_EQ(byte, 'b');
}

TEST_F(SequenceRows, FailFastOnAnEmptyStagingBufferOfCoordinatesToo) {
  // 3 times 2^16 nodes of 2^16 bytes: the size of a row wraps to 0.
  const Sizes wrapped = {
      .type = kCurvilinear, .xdim = 65'536, .coordSize = 65'536, .dataFile = false};
  char byte = 'b';
  for (const bool wasLarger : {false, true}) {
    SCOPED_TRACE(wasLarger);
    Sizes first = wrapped;
    if (wasLarger) first.xdim = first.coordSize = 2;
    first.coordFile = true;
    Start(first);
    if (wasLarger) Start(wrapped);
    ASSERT_EQ(lattice_.GetCurviCoordScanlineSize(), 0U);
    for (const auto& row : CoordinateRows()) {
      EXPECT_THROW(row.call(0, 0, &byte), gsl::fail_fast) << row.name;
    }
    EXPECT_EQ(byte, 'b');
    lattice_.Finish();
  }
}

TEST_F(SequenceRows, LieOneBehindTheOtherXFastestThenYThenZ) {
  Start({.xdim = 2, .ydim = 2, .zdim = 2, .components = 2});
  lattice_.WriteRowOfMultiComponentData(1, 1, "GgHh");
  lattice_.WriteRowOfMultiComponentData(0, 1, "EeFf");
  lattice_.WriteRowOfMultiComponentData(1, 0, "CcDd");
  EXPECT_EQ(DataFile(), std::string("\0\0\0\0CcDdEeFfGgHh", 16));
  lattice_.WriteRowOfMultiComponentData(0, 0, "AaBb");
  EXPECT_EQ(DataFile(), "AaBbCcDdEeFfGgHh");
}

TEST_F(SequenceRows, AreOnTheFileWhenTheCallReturns) {
  Start({.type = kCurvilinear, .xdim = 2, .components = 2, .coordSize = 1, .coordFile = true});
  lattice_.WriteRowOfSingleComponentData(0, 0, 1, "xy");
  EXPECT_EQ(DataFile(), std::string("\0x\0y", 4));
  lattice_.WriteRowOfY(0, 0, "pq");
  EXPECT_EQ(CoordFile(), std::string("\0p\0\0q\0", 6));
}

TEST_F(SequenceRows, ComeFromTheFileEachTime) {
  Start({.xdim = 3});
  lattice_.WriteRowOfMultiComponentData(0, 0, "abc");
  EXPECT_EQ(ReadRow(0, 0), "abc");
  std::string first(3, '?');
  lattice_.ReadRowOfSingleComponentData(0, 0, 0, first.data());
  EXPECT_EQ(first, "abc");
}

TEST_F(SequenceRows, AreZeroUntilTheyAreWritten) {
  Start({.xdim = 3, .ydim = 3, .zdim = 2, .dataSize = 2});
  for (unsigned z = 0; z < 2; ++z) {
    for (unsigned y = 0; y < 3; ++y) EXPECT_EQ(ReadRow(y, z), std::string(6, '\0'));
  }
}

TEST_F(SequenceRows, OfOneComponentKeepTheOthers) {
  Start({.xdim = 2, .ydim = 2, .components = 3, .dataSize = 2});
  lattice_.WriteRowOfSingleComponentData(1, 0, 1, "ABCD");
  EXPECT_EQ(ReadRow(1, 0), std::string("\0\0AB\0\0\0\0CD\0\0", 12));
  lattice_.WriteRowOfMultiComponentData(1, 0, "aabbccddeeff");
  lattice_.WriteRowOfSingleComponentData(1, 0, 2, "1234");
  EXPECT_EQ(ReadRow(1, 0), "aabb12ddee34");
  std::string component(4, '?');
  lattice_.ReadRowOfSingleComponentData(1, 0, 1, component.data());
  EXPECT_EQ(component, "bbee");
}

TEST_F(SequenceRows, OfOneAxisKeepTheOthersAndComeBackTogether) {
  Start({.type = kCurvilinear, .xdim = 2, .coordSize = 2, .coordFile = true});
  lattice_.WriteRowOfX(0, 0, "x0x1");
  lattice_.WriteRowOfY(0, 0, "y0y1");
  EXPECT_EQ(ReadCoordRow(0, 0), std::string("x0y0\0\0x1y1\0\0", 12));
  lattice_.WriteRowOfZ(0, 0, "z0z1");
  EXPECT_EQ(ReadCoordRow(0, 0), "x0y0z0x1y1z1");
  std::string axis(4, '?');
  lattice_.ReadRowOfX(0, 0, axis.data());
  EXPECT_EQ(axis, "x0x1");
  lattice_.ReadRowOfY(0, 0, axis.data());
  EXPECT_EQ(axis, "y0y1");
  lattice_.ReadRowOfZ(0, 0, axis.data());
  EXPECT_EQ(axis, "z0z1");
}

TEST_F(SequenceRows, LeaveTheCallersBufferAloneBeyondTheRow) {
  Start({.type = kCurvilinear, .xdim = 2, .components = 2, .coordSize = 2, .coordFile = true});
  std::string buffer(20, '#');
  lattice_.ReadRowOfMultiComponentData(0, 0, buffer.data());
  EXPECT_EQ(buffer, std::string(4, '\0') + std::string(16, '#'));
  lattice_.ReadRowOfSingleComponentData(0, 0, 1, buffer.data() + 10);
  EXPECT_EQ(buffer.substr(10), std::string(2, '\0') + std::string(8, '#'));
  lattice_.ReadRowOfY(0, 0, buffer.data() + 14);
  EXPECT_EQ(buffer.substr(14), std::string(4, '\0') + "##");
}

// The component is the caller's business: one too many is the first of the next node.
TEST_F(SequenceRows, TakeAComponentBeyondTheCountForItsPlaceInTheRow) {
  Start({.xdim = 3, .components = 2});
  lattice_.WriteRowOfMultiComponentData(0, 0, "aAbBcC");
  std::string got = "???";
  lattice_.ReadRowOfSingleComponentData(0, 0, 2, got.data());
  EXPECT_EQ(got, "bc?");  // the third lies outside of the row
  lattice_.WriteRowOfSingleComponentData(0, 0, 3, "xyz");
  EXPECT_EQ(ReadRow(0, 0), "aAbxcy");
  got = "???";
  lattice_.ReadRowOfSingleComponentData(0, 0, 6, got.data());
  lattice_.ReadRowOfSingleComponentData(0, 0, 0xFFFFFFFF, got.data());
  EXPECT_EQ(got, "???");
}

TEST_F(SequenceRows, KeepTheRestOfTheStagedRowWhenTheFileIsShort) {
  Start({.xdim = 100, .ydim = 2'000});
  lattice_.WriteRowOfMultiComponentData(0, 0, std::string(100, 'a').data());
  lattice_.WriteRowOfMultiComponentData(1'999, 0, std::string(100, 'z').data());
  std::filesystem::resize_file(folder_.Path() / TempFiles().at(0), 40);
  EXPECT_EQ(ReadRow(0, 0), std::string(40, 'a') + std::string(60, 'z'));
}

TEST_F(SequenceRows, NeedNoFileForTheCallersOwnRows) {
  Start({.type = kCurvilinear,
         .xdim = 2,
         .components = 3,
         .coordSize = 2,
         .dataSize = 2,
         .dataFile = false});
  std::string row = "x0y0z0x1y1z1";
  std::string axis(4, '?');
  lattice_.ScanlineExtractXs(axis.data(), row.data());
  EXPECT_EQ(axis, "x0x1");
  lattice_.ScanlineExtractYs(axis.data(), row.data());
  EXPECT_EQ(axis, "y0y1");
  lattice_.ScanlineExtractZs(axis.data(), row.data());
  EXPECT_EQ(axis, "z0z1");
  std::string values = "ABCD";
  lattice_.ScanlineFillXs(row.data(), values.data());
  EXPECT_EQ(row, "ABy0z0CDy1z1");
  lattice_.ScanlineFillYs(row.data(), values.data());
  EXPECT_EQ(row, "ABABz0CDCDz1");
  lattice_.ScanlineFillZs(row.data(), values.data());
  EXPECT_EQ(row, "ABABABCDCDCD");
  lattice_.ExtractDataComponentFromScanline(axis.data(), row.data(), 2);
  EXPECT_EQ(axis, "ABCD");
  lattice_.FillDataComponentInScanline(row.data(), "1234", 1);
  EXPECT_EQ(row, "AB12ABCD34CD");
}

TEST_F(SequenceRows, CopyElementsOfAnySize) {
  for (const unsigned size : {1U, 2U, 3U, 4U, 5U, 7U, 8U, 12U, 16U, 33U}) {
    for (const unsigned components : {1U, 2U, 3U, 4U, 5U, 9U}) {
      SCOPED_TRACE(testing::Message() << components << " components of " << size << " bytes");
      constexpr unsigned kNodes = 11;
      Start({.xdim = kNodes, .components = components, .dataSize = size});
      std::string expected(std::size_t{kNodes} * components * size, '\0');
      for (unsigned c = 0; c < components; ++c) {
        const std::string values = Numbered(kNodes * size, static_cast<unsigned char>(50 * c));
        lattice_.WriteRowOfSingleComponentData(0, 0, c, values.data());
        for (unsigned x = 0; x < kNodes; ++x) {
          expected.replace((std::size_t{x} * components + c) * size, size, values, x * size, size);
        }
        std::string back(values.size(), '?');
        lattice_.ReadRowOfSingleComponentData(0, 0, c, back.data());
        EXPECT_EQ(back, values);
      }
      EXPECT_EQ(ReadRow(0, 0), expected);
      lattice_.Finish();
    }
  }
}

}  // namespace
}  // namespace trovan::test
