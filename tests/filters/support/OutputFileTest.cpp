#include "filters/support/OutputFile.h"

#include <filesystem>
#include <set>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <corvel/Exception.h>

#include "filters/support/FilterError.h"
#include "support/FileSizeLimit.h"
#include "support/TempFolder.h"

namespace trovan::filters {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class OutputFileTest : public testing::Test {
 protected:
  std::wstring File() const { return folder_.File(L"grid.asc"); }
  std::string Bytes() const { return test::ReadBytes(folder_.Path() / "grid.asc"); }
  std::set<std::string> Names() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.Path())) {
      names.insert(entry.path().filename().string());
    }
    return names;
  }

  test::TempFolder folder_;
};

TEST_F(OutputFileTest, AppearsUnderItsNameWhenItIsCommitted) {
  OutputFile output(File());
  output.File().Write("whole", 5);
  output.File().Flush();
  EXPECT_THAT(Names(), ElementsAre(testing::MatchesRegex("grid\\.asc\\.[0-9]+\\.part")));
  output.Commit();
  EXPECT_THAT(Names(), ElementsAre("grid.asc"));
  EXPECT_EQ(Bytes(), "whole");
}

TEST_F(OutputFileTest, StaysAfterItsObject) {
  {
    OutputFile output(File());
    output.File().Write("whole", 5);
    output.Commit();
  }
  EXPECT_THAT(Names(), ElementsAre("grid.asc"));
  EXPECT_EQ(Bytes(), "whole");
}

TEST_F(OutputFileTest, IsGoneWhenItIsNotCommitted) {
  {
    OutputFile output(File());
    output.File().Write("half", 4);
  }
  EXPECT_THAT(Names(), IsEmpty());
}

TEST_F(OutputFileTest, ReplacesAnOlderFileOnlyWhenItIsCommitted) {
  test::WriteBytes(folder_.Path() / "grid.asc", "older and longer");
  {
    OutputFile output(File());
    output.File().Write("half", 4);
  }
  EXPECT_EQ(Bytes(), "older and longer");
  OutputFile output(File());
  output.File().Write("new", 3);
  EXPECT_EQ(Bytes(), "older and longer");
  output.Commit();
  EXPECT_EQ(Bytes(), "new");
  EXPECT_THAT(Names(), ElementsAre("grid.asc"));
}

TEST_F(OutputFileTest, CanBeReadBackBeforeItIsCommitted) {
  OutputFile output(File());
  output.File().Write("0123456789", 10);
  output.File().Seek(4, corvel::kFileBegin);
  char bytes[3] = {};
  output.File().Read(bytes, 3);
  EXPECT_EQ(std::string(bytes, 3), "456");
}

TEST_F(OutputFileTest, DoesNotMeetAnotherOfTheSameName) {
  OutputFile first(File());
  OutputFile second(File());
  first.File().Write("first", 5);
  second.File().Write("second", 6);
  first.Commit();
  EXPECT_EQ(Bytes(), "first");
  second.Commit();
  EXPECT_EQ(Bytes(), "second");
  EXPECT_THAT(Names(), ElementsAre("grid.asc"));
}

TEST_F(OutputFileTest, CannotBeMadeInAFolderThatDoesNotExist) {
  EXPECT_THROW(OutputFile(folder_.File(L"none/grid.asc")), corvel::Exception);
}

TEST_F(OutputFileTest, IsGoneWhenItsNameIsThatOfAFolder) {
  std::filesystem::create_directory(folder_.Path() / "grid.asc");
  {
    OutputFile output(File());
    try {
      output.Commit();
      ADD_FAILURE() << "nothing was raised";
    } catch (const FilterError& error) {
      EXPECT_THAT(error.what(), testing::HasSubstr("grid.asc\" its name: Is a directory"));
    }
  }
  EXPECT_THAT(Names(), ElementsAre("grid.asc"));
  EXPECT_TRUE(std::filesystem::is_directory(folder_.Path() / "grid.asc"));
}

TEST_F(OutputFileTest, LeavesTheOlderFileWhenTheDiskIsFullAtTheLastMoment) {
  test::WriteBytes(folder_.Path() / "grid.asc", "older");
  {
    OutputFile output(File());
    output.File().Write("more than fits", 14);
    const test::FileSizeLimit full(5);
    EXPECT_THROW(output.Commit(), corvel::Exception);
  }
  EXPECT_EQ(Bytes(), "older");
  EXPECT_THAT(Names(), ElementsAre("grid.asc"));
}

}  // namespace
}  // namespace trovan::filters
