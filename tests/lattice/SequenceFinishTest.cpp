// How a lattice ends, and what is left when the disk is full.
#include <memory>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ResequencerFixture.h"
#include "support/CapturedLog.h"
#include "support/FileSizeLimit.h"

namespace trovan::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr auto kCurvilinear = LatticeResequencer::Curvilinear;

using SequenceFinish = ResequencerTest;

// A curvilinear lattice with both files; rows of 6,000 bytes of data.
Sizes Both() {
  return {.type = kCurvilinear,
          .xdim = 3'000,
          .ydim = 40,
          .coordSize = 4,
          .dataSize = 2,
          .coordFile = true};
}

TEST_F(SequenceFinish, DeletesBothFilesAndGoesBackToIdle) {
  Start(Both());
  EXPECT_THAT(TempFiles(), SizeIs(2));
  lattice_.Finish();
  EXPECT_THAT(TempFiles(), IsEmpty());
  EXPECT_EQ(lattice_.GetXdim(), 0U);
  EXPECT_EQ(lattice_.GetYdim(), 0U);
  EXPECT_EQ(lattice_.GetZdim(), 0U);
  EXPECT_EQ(lattice_.GetNumDataComponentsPerNode(), 0U);
  EXPECT_EQ(lattice_.GetDataElementSize(), 0U);
  EXPECT_EQ(lattice_.GetCoordElementSize(), 0U);
  char byte = 0;
  EXPECT_EQ(RaisedBy([&] { lattice_.ReadRowOfMultiComponentData(0, 0, &byte); }), "Bad parameter");
  EXPECT_EQ(RaisedBy([&] { lattice_.ReadRowOfXYZ(0, 0, &byte); }), "Bad parameter");
}

TEST_F(SequenceFinish, MayComeAgainAndBeforeAnyStart) {
  lattice_.Finish();
  Start(Both());
  lattice_.Finish();
  lattice_.Finish();
  EXPECT_THAT(TempFiles(), IsEmpty());
}

// The staged bytes show where the file is too short to give any. It is longer than its buffer
// first, so that the row is no longer in there.
TEST_F(SequenceFinish, ForgetsTheStagedRows) {
  const Sizes sizes = {
      .type = kCurvilinear, .xdim = 3, .ydim = 50'000, .coordSize = 1, .coordFile = true};
  Start(sizes);
  lattice_.WriteRowOfMultiComponentData(0, 0, "abc");
  lattice_.WriteRowOfXYZ(0, 0, "xyzXYZuvw");
  lattice_.Finish();
  Start(sizes);
  for (const std::string& name : TempFiles()) {
    std::filesystem::resize_file(folder_.Path() / name, 0);
  }
  EXPECT_EQ(ReadRow(0, 0), std::string(3, '\0'));
  EXPECT_EQ(ReadCoordRow(0, 0), std::string(9, '\0'));
}

TEST_F(SequenceFinish, DoesNotMindAFileThatIsGone) {
  Start(Both());
  for (const std::string& name : TempFiles()) std::filesystem::remove(folder_.Path() / name);
  lattice_.Finish();
  EXPECT_EQ(lattice_.GetXdim(), 0U);
}

TEST_F(SequenceFinish, IsNotTheDestructorsWorkWhichLeavesTheFiles) {
  auto lattice = std::make_unique<LatticeResequencer>();
  test::Start(*lattice, {.xdim = 3});
  lattice->WriteRowOfMultiComponentData(0, 0, "abc");
  lattice.reset();
  EXPECT_EQ(DataFile(), "abc");
}

TEST_F(SequenceFinish, CleansUpAfterTheDiskWasFullForTheZeros) {
  for (const std::size_t room : {0U, 1U, 65536U, 100'000U, 239'999U}) {
    SCOPED_TRACE(room);
    {
      const FileSizeLimit limit(room);
      EXPECT_THAT(FileErrorOf([&] { Start(Both()); }), HasSubstr("Cannot write"));
    }
    EXPECT_THAT(TempFiles(), SizeIs(2));
    lattice_.Finish();
    EXPECT_THAT(TempFiles(), IsEmpty());
  }
}

TEST_F(SequenceFinish, RaisesAtTheRowThatFindsTheDiskFull) {
  Start(Both());
  const std::string row(6'000, 'r');
  const FileSizeLimit limit(100'000);  // as when another program has taken the room
  for (unsigned y = 0; y < 16; ++y) lattice_.WriteRowOfMultiComponentData(y, 0, row.data());
  EXPECT_THAT(FileErrorOf([&] { lattice_.WriteRowOfMultiComponentData(16, 0, row.data()); }),
              HasSubstr("Cannot write"));
}

TEST_F(SequenceFinish, DeletesNothingWhenClosingRaisesAndBothFilesWhenCalledAgain) {
  for (const bool data : {true, false}) {
    SCOPED_TRACE(data);
    Start(Both());
    const std::string row(36'000, 'r');
    {
      const FileSizeLimit limit(1'000);
      // What could not be written waits in the file's buffer, and closing tries once more.
      EXPECT_NE(FileErrorOf([&] {
                  if (data) {
                    lattice_.WriteRowOfMultiComponentData(0, 0, row.data());
                  } else {
                    lattice_.WriteRowOfXYZ(0, 0, row.data());
                  }
                }),
                "");
      EXPECT_NE(FileErrorOf([&] { lattice_.Finish(); }), "");
    }
    EXPECT_THAT(TempFiles(), SizeIs(2));
    EXPECT_EQ(lattice_.GetXdim(), 3'000U);
    lattice_.Finish();
    EXPECT_THAT(TempFiles(), IsEmpty());
    EXPECT_EQ(lattice_.GetXdim(), 0U);
  }
}

// Leaves bytes in both files' buffers that could not be written.
void WriteOnAFullDisk(LatticeResequencer& lattice) {
  const std::string row(36'000, 'r');
  EXPECT_NE(FileErrorOf([&] { lattice.WriteRowOfMultiComponentData(0, 0, row.data()); }), "");
  EXPECT_NE(FileErrorOf([&] { lattice.WriteRowOfXYZ(0, 0, row.data()); }), "");
}

TEST_F(SequenceFinish, ClosesTheCoordinateFileBeforeTheDataFile) {
  Start(Both());
  {
    const FileSizeLimit limit(1'000);
    WriteOnAFullDisk(lattice_);
    EXPECT_THAT(FileErrorOf([&] { lattice_.Finish(); }), HasSubstr("QVC"));
    EXPECT_THAT(FileErrorOf([&] { lattice_.Finish(); }), HasSubstr("QVD"));
    EXPECT_THAT(TempFiles(), SizeIs(2));
    lattice_.Finish();
  }
  EXPECT_THAT(TempFiles(), IsEmpty());
}

TEST_F(SequenceFinish, IsMissedAndADestructorThatCannotCloseWritesToTheLog) {
  auto lattice = std::make_unique<LatticeResequencer>();
  test::Start(*lattice, Both());
  const CapturedLog log;
  const FileSizeLimit limit(1'000);
  WriteOnAFullDisk(*lattice);
  lattice.reset();
  ASSERT_THAT(log.Messages(), SizeIs(2));  // one for each file
  EXPECT_NE(log.Messages()[0].text.find(L"QVC"), std::wstring::npos);
  EXPECT_NE(log.Messages()[1].text.find(L"QVD"), std::wstring::npos);
  const std::wstring place = L" [Function LatticeResequencer, File Sequence, Line ";
  for (const auto& message : log.Messages()) {
    EXPECT_EQ(message.level, corvel::kLogWarning);
    EXPECT_NE(message.text.find(L"Cannot write"), std::wstring::npos);
    const std::size_t at = message.text.find(L" [");
    ASSERT_NE(at, std::wstring::npos);
    EXPECT_EQ(message.text.substr(at, place.size()), place);
  }
}

TEST_F(SequenceFinish, LetsAFileThatVanishedFromTheFolderBeUsedToTheEnd) {
  Start({.xdim = 3});
  for (const std::string& name : TempFiles()) std::filesystem::remove(folder_.Path() / name);
  lattice_.WriteRowOfMultiComponentData(0, 0, "abc");
  EXPECT_EQ(ReadRow(0, 0), "abc");
}

}  // namespace
}  // namespace trovan::test
