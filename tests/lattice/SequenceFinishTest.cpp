// How a lattice ends, and what is left when the disk is full.
#include <functional>
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

constexpr auto kRectilinear = LatticeResequencer::Rectilinear;
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

// What the file class raises, which tells the file and the reason.
std::string FileErrorOf(const std::function<void()>& work) {
  try {
    work();
  } catch (const corvel::Exception& error) {
    EXPECT_EQ(error.File(), "BufferedFile");
    return error.Message();
  }
  return "";
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

TEST_F(SequenceFinish, KeepsTheAxes) {
  Start({.type = kRectilinear, .xdim = 2, .coordSize = 2});
  lattice_.WriteRectilinearXs("abcd");
  lattice_.Finish();
  std::string xs(4, '?');
  lattice_.ReadRectilinearXs(xs.data());
  EXPECT_EQ(xs, "abcd");
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

TEST_F(SequenceFinish, IsMissedAndADestructorThatCannotCloseWritesToTheLog) {
  auto lattice = std::make_unique<LatticeResequencer>();
  test::Start(*lattice, Both());
  const std::string row(36'000, 'r');
  const CapturedLog log;
  const FileSizeLimit limit(1'000);
  EXPECT_NE(FileErrorOf([&] { lattice->WriteRowOfMultiComponentData(0, 0, row.data()); }), "");
  EXPECT_NE(FileErrorOf([&] { lattice->WriteRowOfXYZ(0, 0, row.data()); }), "");
  lattice.reset();
  ASSERT_THAT(log.Messages(), SizeIs(2));  // one for each file
  for (const auto& message : log.Messages()) {
    EXPECT_NE(message.text.find(L"LatticeResequencer"), std::wstring::npos);
    EXPECT_NE(message.text.find(L"Sequence"), std::wstring::npos);
    EXPECT_NE(message.text.find(L"Cannot write"), std::wstring::npos);
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
