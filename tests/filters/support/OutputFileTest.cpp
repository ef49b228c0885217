#include "filters/support/OutputFile.h"

#include <filesystem>
#include <functional>
#include <set>
#include <stdexcept>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <corvel/Exception.h>

#include "filters/support/FilterError.h"
#include "support/FileSizeLimit.h"
#include "support/TempFolder.h"

namespace trovan::filters {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// What the work raises as FilterError; empty when it raises nothing.
template <typename Work>
std::string ErrorOf(Work work) {
  try {
    work();
  } catch (const FilterError& error) {
    return error.what();
  }
  return {};
}

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
  EXPECT_THAT(Names(), ElementsAre(testing::MatchesRegex("\\.trovan-[0-9]+\\.part")));
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

TEST_F(OutputFileTest, TellsTheNameThatWasGivenWhenItCannotBeMade) {
  EXPECT_EQ(ErrorOf([] { OutputFile file(L"no folder/b.asc"); }),
            "cannot write \"no folder/b.asc\": No such file or directory");
}

TEST_F(OutputFileTest, MayHaveTheLongestName) {
  const std::wstring longest(255, L'n');
  OutputFile output(folder_.File(longest));
  output.Commit();
  EXPECT_THAT(Names(), ElementsAre(std::string(255, 'n')));
  EXPECT_THAT(ErrorOf([&] { OutputFile file(folder_.File(longest + L"n")); }),
              HasSubstr("n\": File name too long"));
}

TEST_F(OutputFileTest, NeedsANameOfAFile) {
  for (const std::wstring& name : {std::wstring(), File() + L"/"}) {
    EXPECT_THAT(ErrorOf([&] { OutputFile file(name); }), HasSubstr("this is no name of a file"));
  }
  EXPECT_THAT(ErrorOf([&] { OutputFile file(File() + L'\0' + L"b"); }), HasSubstr("zero byte"));
  EXPECT_THAT(Names(), IsEmpty());
}

// --- Names that are taken ------------------------------------------------------------------------

TEST_F(OutputFileTest, ReplacesNothingThatIsNoFile) {
  const std::filesystem::path path = folder_.Path() / "grid.asc";
  const struct {
    const char* what;
    std::function<bool()> make;
    const char* reason;
  } cases[] = {
      {"folder", [&] { return std::filesystem::create_directory(path); }, "it is a folder"},
      {"pipe", [&] { return ::mkfifo(path.c_str(), 0600) == 0; }, "it is a device or a pipe"},
      {"link to a device", [&] { return ::symlink("/dev/null", path.c_str()) == 0; },
       "it is a device or a pipe"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    ASSERT_TRUE(c.make());
    const auto type = std::filesystem::symlink_status(path).type();
    EXPECT_THAT(ErrorOf([&] { OutputFile file(File()); }),
                AllOf(HasSubstr("cannot write"), HasSubstr("grid.asc\": "), HasSubstr(c.reason)));
    EXPECT_EQ(std::filesystem::symlink_status(path).type(), type);
    std::filesystem::remove(path);

    // The same when it comes while the file is written.
    {
      OutputFile output(File());
      ASSERT_TRUE(c.make());
      EXPECT_THAT(ErrorOf([&] { output.Commit(); }), HasSubstr(c.reason));
    }
    EXPECT_EQ(std::filesystem::symlink_status(path).type(), type);
    EXPECT_THAT(Names(), ElementsAre("grid.asc"));
    std::filesystem::remove(path);
  }
  EXPECT_THAT(ErrorOf([] { OutputFile file(L"/dev/null"); }),
              AllOf(HasSubstr("\"/dev/null\""), HasSubstr("it is a device or a pipe")));
}

TEST_F(OutputFileTest, ReplacesWhatALinkLeadsTo) {
  std::filesystem::create_directory(folder_.Path() / "disk");
  test::WriteBytes(folder_.Path() / "disk/far.asc", "older");
  std::filesystem::create_symlink("disk/far.asc", folder_.Path() / "near.asc");
  std::filesystem::create_symlink("near.asc", folder_.Path() / "grid.asc");
  OutputFile output(File());
  output.File().Write("new", 3);
  output.Commit();
  EXPECT_EQ(test::ReadBytes(folder_.Path() / "disk/far.asc"), "new");
  EXPECT_THAT(Names(), ElementsAre("disk", "grid.asc", "near.asc"));
  EXPECT_EQ(std::filesystem::read_symlink(folder_.Path() / "grid.asc"), "near.asc");
  EXPECT_EQ(std::filesystem::read_symlink(folder_.Path() / "near.asc"), "disk/far.asc");
}

TEST_F(OutputFileTest, MakesWhatALinkLeadsTo) {
  const std::filesystem::path target = folder_.Path() / "far.asc";
  std::filesystem::create_symlink(target, folder_.Path() / "grid.asc");
  OutputFile output(File());
  output.File().Write("new", 3);
  output.Commit();
  EXPECT_EQ(test::ReadBytes(target), "new");
  EXPECT_EQ(std::filesystem::read_symlink(folder_.Path() / "grid.asc"), target);
}

TEST_F(OutputFileTest, TellsTheNameOfALinkThatLeadsNowhere) {
  std::filesystem::create_symlink("none/far.asc", folder_.Path() / "grid.asc");
  EXPECT_THAT(ErrorOf([&] { OutputFile file(File()); }),
              HasSubstr("grid.asc\": No such file or directory"));
  std::filesystem::create_symlink("ring.asc", folder_.Path() / "ring.asc");
  EXPECT_THAT(ErrorOf([&] { OutputFile file(folder_.File(L"ring.asc")); }),
              HasSubstr("ring.asc\": Too many levels of symbolic links"));
}

// --- Failures ------------------------------------------------------------------------------------

TEST_F(OutputFileTest, TellsItsOwnFailuresByTheNameThatWasGiven) {
  OutputFile output(File());
  const std::string much(1'000'000, 'x');
  const test::FileSizeLimit full(500'000);
  EXPECT_THAT(
      ErrorOf([&] {
        output.Fill([&](corvel::CBufferedFile& file) { file.Write(much.data(), much.size()); });
      }),
      HasSubstr("grid.asc\": File too large"));
}

// What fits in the buffer fails when the buffer goes.
TEST_F(OutputFileTest, IsOnTheDiskWhenItIsFilled) {
  OutputFile output(File());
  const test::FileSizeLimit full(5);
  const auto fill = [](corvel::CBufferedFile& file) { file.Write("more than fits", 14); };
  EXPECT_THAT(ErrorOf([&] { output.Fill(fill); }), HasSubstr("grid.asc\": File too large"));
}

TEST_F(OutputFileTest, PassesOnTheFailuresOfOthers) {
  OutputFile output(File());
  const auto fill = [&](corvel::CBufferedFile&) {
    corvel::CBufferedFile().Open(folder_.File(L"none"), "rb", corvel::kFileShareRead, false);
  };
  EXPECT_THROW(output.Fill(fill), corvel::Exception);
}

TEST_F(OutputFileTest, LeavesTheOlderFileWhenTheDiskIsFullAtTheLastMoment) {
  test::WriteBytes(folder_.Path() / "grid.asc", "older");
  {
    OutputFile output(File());
    output.File().Write("more than fits", 14);
    const test::FileSizeLimit full(5);
    EXPECT_THAT(ErrorOf([&] { output.Commit(); }), HasSubstr("grid.asc\": File too large"));
  }
  EXPECT_EQ(Bytes(), "older");
  EXPECT_THAT(Names(), ElementsAre("grid.asc"));
}

// --- Two files together --------------------------------------------------------------------------

class OutputFilesTest : public OutputFileTest {
 protected:
  // The one file that has no name yet.
  std::filesystem::path Temporary() const {
    for (const auto& entry : std::filesystem::directory_iterator(folder_.Path())) {
      if (entry.path().extension() == ".part") return entry.path();
    }
    throw std::runtime_error("there is none");
  }
};

TEST_F(OutputFilesTest, ReplaceOlderOnesTogether) {
  test::WriteBytes(folder_.Path() / "grid.asc", "older values");
  OutputFile values(File());
  OutputFile names(folder_.File(L"names"));
  values.File().Write("values", 6);
  names.File().Write("names", 5);
  CommitTogether(values, names);
  EXPECT_EQ(Bytes(), "values");
  EXPECT_EQ(test::ReadBytes(folder_.Path() / "names"), "names");
  EXPECT_THAT(Names(), ElementsAre("grid.asc", "names"));
}

TEST_F(OutputFilesTest, LeaveOlderOnesWhenTheSecondCannotHaveItsName) {
  for (const bool isReplaced : {true, false}) {
    if (isReplaced) test::WriteBytes(folder_.Path() / "grid.asc", "older values");
    test::WriteBytes(folder_.Path() / "names", "older names");
    {
      OutputFile names(folder_.File(L"names"));
      const std::filesystem::path temporary = Temporary();
      OutputFile values(File());
      values.File().Write("values", 6);
      std::filesystem::remove(temporary);
      EXPECT_THAT(ErrorOf([&] { CommitTogether(values, names); }),
                  HasSubstr("names\": No such file or directory"));
    }
    EXPECT_EQ(test::ReadBytes(folder_.Path() / "names"), "older names");
    if (isReplaced) {
      EXPECT_EQ(Bytes(), "older values");
      std::filesystem::remove(folder_.Path() / "grid.asc");
    }
    EXPECT_THAT(Names(), ElementsAre("names"));
  }
}

TEST_F(OutputFilesTest, LeaveTheOlderOneWhenTheFirstCannotHaveItsName) {
  test::WriteBytes(folder_.Path() / "grid.asc", "older values");
  {
    OutputFile values(File());
    std::filesystem::remove(Temporary());
    OutputFile names(folder_.File(L"names"));
    EXPECT_THAT(ErrorOf([&] { CommitTogether(values, names); }),
                HasSubstr("grid.asc\": No such file or directory"));
  }
  EXPECT_EQ(Bytes(), "older values");
  EXPECT_THAT(Names(), ElementsAre("grid.asc"));
}

TEST_F(OutputFilesTest, LeaveOlderOnesWhenTheSecondDoesNotFitOnTheDisk) {
  test::WriteBytes(folder_.Path() / "grid.asc", "older values");
  {
    OutputFile values(File());
    OutputFile names(folder_.File(L"names"));
    names.File().Write("more than fits", 14);
    const test::FileSizeLimit full(5);
    EXPECT_THAT(ErrorOf([&] { CommitTogether(values, names); }), HasSubstr("names\": File too"));
  }
  EXPECT_EQ(Bytes(), "older values");
  EXPECT_THAT(Names(), ElementsAre("grid.asc"));
}

}  // namespace
}  // namespace trovan::filters
