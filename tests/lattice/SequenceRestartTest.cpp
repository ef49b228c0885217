// A start without a finish before it: which files it closes, and what it leaves when it fails.
#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ResequencerFixture.h"
#include "support/FileSizeLimit.h"
#include "support/LockedNewFiles.h"

namespace trovan::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr auto kCurvilinear = LatticeResequencer::Curvilinear;

class SequenceRestart : public ResequencerTest {
 protected:
  // A lattice with both files, whose rows hold "abc" and "xyzXYZuvw".
  void StartBoth() {
    Start({.type = kCurvilinear, .xdim = 3, .coordSize = 1, .coordFile = true});
    lattice_.WriteRowOfMultiComponentData(0, 0, "abc");
    lattice_.WriteRowOfXYZ(0, 0, "xyzXYZuvw");
    coords_ = Named("QVC").at(0);
    data_ = Named("QVD").at(0);
  }
  // A larger one.
  void Restart() { Start({.type = kCurvilinear, .xdim = 5, .coordSize = 1, .coordFile = true}); }
  // Leaves bytes in the files' buffers that could not be written: closing tries them once more.
  void LeaveUnwrittenData() {
    EXPECT_NE(FileErrorOf([&] { lattice_.WriteRowOfMultiComponentData(0, 0, "ABC"); }), "");
  }
  void LeaveUnwrittenCoords() {
    EXPECT_NE(FileErrorOf([&] { lattice_.WriteRowOfXYZ(0, 0, "XYZxyzUVW"); }), "");
  }

  std::vector<std::string> Named(const std::string& prefix) const {
    std::vector<std::string> names = TempFiles();
    std::erase_if(names, [&](const std::string& name) { return !name.starts_with(prefix); });
    return names;
  }

  // The names of the temporary files that this program has open, sorted.
  std::vector<std::string> OpenFiles() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
      std::error_code gone;  // the iterator's own one
      const std::filesystem::path path = std::filesystem::read_symlink(entry, gone);
      if (path.parent_path() == std::filesystem::canonical(folder_.Path())) {
        names.push_back(path.filename().string());
      }
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  void ExpectBothRowsAsBeforeButLonger() {
    EXPECT_EQ(lattice_.GetXdim(), 5U);
    EXPECT_EQ(ReadRow(0, 0), std::string("abc\0\0", 5));
    EXPECT_EQ(ReadCoordRow(0, 0), std::string("xyzXYZuvw\0\0\0\0\0\0", 15));
  }

  // The files of the first start.
  std::string coords_;
  std::string data_;
};

TEST_F(SequenceRestart, ClosesTheFilesThatItReplaces) {
  StartBoth();
  EXPECT_THAT(OpenFiles(), ElementsAre(coords_, data_));
  Restart();
  EXPECT_THAT(OpenFiles(), ElementsAre(AllOf(StartsWith("QVC"), testing::Ne(coords_)),
                                       AllOf(StartsWith("QVD"), testing::Ne(data_))));
}

TEST_F(SequenceRestart, LeavesTheFileOpenThatItDoesNotReplace) {
  StartBoth();
  Start({.xdim = 5, .coordFile = false, .dataFile = true});
  EXPECT_THAT(OpenFiles(), ElementsAre(coords_, AllOf(StartsWith("QVD"), testing::Ne(data_))));
  lattice_.Finish();
  EXPECT_THAT(TempFiles(), ElementsAre(data_));
}

TEST_F(SequenceRestart, KeepsTheFilesWhenThereIsNoTemporaryFolder) {
  StartBoth();
  {
    const ScopedVariable nowhere("TMPDIR", (folder_.Path() / "missing").c_str());
    EXPECT_EQ(RaisedBy([&] { Restart(); }), "GetTempPath failed!");
  }
  EXPECT_THAT(OpenFiles(), ElementsAre(coords_, data_));
  ExpectBothRowsAsBeforeButLonger();
  lattice_.Finish();
  EXPECT_THAT(TempFiles(), IsEmpty());
}

TEST_F(SequenceRestart, KeepsTheFilesWhenNoTemporaryNameCanBeMade) {
  StartBoth();
  {
    const TempFolder other;
    const auto deep = other.Path() / std::string(120, 'a') / std::string(120, 'b');
    std::filesystem::create_directories(deep);
    const ScopedVariable variable("TMPDIR", deep.c_str());
    EXPECT_EQ(RaisedBy([&] { Restart(); }), "GetTempFileName failed!");
  }
  EXPECT_THAT(OpenFiles(), ElementsAre(coords_, data_));
  ExpectBothRowsAsBeforeButLonger();
  lattice_.Finish();
  EXPECT_THAT(TempFiles(), IsEmpty());
}

TEST_F(SequenceRestart, KnowsTheNewCoordinateFileWhenTheOldOneCannotBeClosed) {
  StartBoth();
  {
    const FileSizeLimit limit(0);
    LeaveUnwrittenCoords();
    EXPECT_THAT(FileErrorOf([&] { Restart(); }),
                AllOf(HasSubstr("Cannot write"), HasSubstr(coords_)));
  }
  EXPECT_EQ(Named("QVC").size(), 2U);
  EXPECT_THAT(OpenFiles(), ElementsAre(data_));
  EXPECT_EQ(lattice_.GetXdim(), 5U);
  lattice_.Finish();
  EXPECT_THAT(TempFiles(), ElementsAre(coords_));
}

TEST_F(SequenceRestart, KnowsTheNewDataFileWhenTheOldOneCannotBeClosed) {
  StartBoth();
  {
    const FileSizeLimit limit(0);
    LeaveUnwrittenData();
    EXPECT_THAT(FileErrorOf([&] { Start({.xdim = 5}); }),
                AllOf(HasSubstr("Cannot write"), HasSubstr(data_)));
  }
  EXPECT_EQ(Named("QVD").size(), 2U);
  EXPECT_THAT(OpenFiles(), ElementsAre(coords_));
  EXPECT_EQ(lattice_.GetXdim(), 5U);
  lattice_.Finish();
  EXPECT_THAT(TempFiles(), ElementsAre(data_));
}

TEST_F(SequenceRestart, KnowsTheNewCoordinateFileThatCannotBeOpened) {
  StartBoth();
  {
    const LockedNewFiles locked;
    EXPECT_THAT(FileErrorOf([&] { Restart(); }), HasSubstr("Cannot open"));
  }
  EXPECT_EQ(Named("QVC").size(), 2U);
  EXPECT_THAT(OpenFiles(), ElementsAre(data_));
  lattice_.Finish();
  EXPECT_THAT(TempFiles(), ElementsAre(coords_));
}

TEST_F(SequenceRestart, KnowsTheNewDataFileThatCannotBeOpened) {
  StartBoth();
  {
    const LockedNewFiles locked;
    EXPECT_THAT(FileErrorOf([&] { Start({.xdim = 5}); }), HasSubstr("Cannot open"));
  }
  EXPECT_EQ(Named("QVD").size(), 2U);
  EXPECT_THAT(OpenFiles(), ElementsAre(coords_));
  lattice_.Finish();
  EXPECT_THAT(TempFiles(), ElementsAre(data_));
}

}  // namespace
}  // namespace trovan::test
