// `trovan table cat` on long ways: pipes, Ctrl-C, memory.
#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Process.h"
#include "support/DbfImage.h"
#include "support/TempFolder.h"

namespace trovan::test {
namespace {

using testing::HasSubstr;

// Memory means something else under these.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kSanitized = true;
#else
constexpr bool kSanitized = false;
#endif

class TableCommandStreamTest : public testing::Test {
 protected:
  std::string Path(const std::string& name) const { return (folder_.Path() / name).string(); }

  // A table of `count` records of 150 bytes, mostly a hole of the file: its fields are empty.
  std::string LongTable(std::uint32_t count) {
    DbfImage image;
    image.Field("NAME", 'C', 100).Field("POP", 'N', 10).Field("AREA", 'N', 39);
    image.RecordCount(count).WithoutEndMark();
    const std::string bytes = image.Text();
    WriteBytes(folder_.Path() / "t.dbf", bytes);
    std::filesystem::resize_file(folder_.Path() / "t.dbf",
                                 bytes.size() + 150 * std::uintmax_t{count});
    return Path("t.dbf");
  }

  TempFolder folder_;
};

TEST_F(TableCommandStreamTest, EndsQuietlyWhenNobodyReadsOn) {
  Process process({"table", "cat", LongTable(1'000'000)});
  EXPECT_EQ(process.ReadOutput(15), "NAME,POP,AREA\r\n");
  process.CloseOutput();
  const Outcome outcome = process.Wait();
  EXPECT_EQ(outcome.signal, 0);
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.errors, "");
}

TEST_F(TableCommandStreamTest, FailsWhenTheOutputIsFull) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "this system has no /dev/full";
  const std::string table = LongTable(10);
  for (const char* command : {"cat", "info", "check"}) {
    const Outcome outcome = RunTrovan({"table", command, table}, "/dev/full");
    EXPECT_EQ(outcome.code, 1) << command;
    EXPECT_THAT(outcome.errors, HasSubstr("cannot write the output: No space left on device"));
  }
}

// The output is a file, so no write waits; the table is too long to be done before the signal.
TEST_F(TableCommandStreamTest, EndsWellFormedOnCtrlC) {
  const std::string table = LongTable(4'000'000'000U);
  Process process({"table", "cat", table, "--format", "json"}, Path("out.json"));
  std::error_code missing;
  while (!process.HasEnded()) {
    const auto size = std::filesystem::file_size(Path("out.json"), missing);
    if (!missing && size > 0) break;
  }
  process.Signal(SIGINT);
  const Outcome outcome = process.Wait();
  EXPECT_EQ(outcome.signal, 0);
  EXPECT_EQ(outcome.code, 130) << outcome.errors;
  EXPECT_TRUE(nlohmann::json::accept(ReadBytes(Path("out.json"))));
}

TEST_F(TableCommandStreamTest, EndsWellFormedOnCtrlCWhileItsReaderRests) {
  Process process({"table", "cat", LongTable(4'000'000'000U), "--format", "json"});
  while (!process.OutputIsFull()) ASSERT_FALSE(process.HasEnded());
  process.Signal(SIGINT);
  const Outcome outcome = process.Wait();
  EXPECT_EQ(outcome.signal, 0);
  EXPECT_EQ(outcome.code, 130) << outcome.errors;
  EXPECT_TRUE(nlohmann::json::accept(outcome.output)) << outcome.output.size() << " bytes";
}

TEST_F(TableCommandStreamTest, NeedsLittleMemoryForALongTable) {
  if (kSanitized) GTEST_SKIP() << "the sanitizers need memory of their own";
  const Outcome outcome = RunTrovan({"table", "cat", LongTable(300'000)}, Path("out.csv"));
  EXPECT_EQ(outcome.code, 0) << outcome.errors;
  EXPECT_EQ(std::filesystem::file_size(Path("out.csv")), 15 + 300'000 * 4U);
  EXPECT_LT(outcome.peakKiB, 32 * 1024);
}

TEST_F(TableCommandStreamTest, NeedsLittleMemoryForALongMemo) {
  if (kSanitized) GTEST_SKIP() << "the sanitizers need memory of their own";
  constexpr std::size_t kLength = 64 * 1024 * 1024;
  WriteBytes(folder_.Path() / "t.dbf", DbfImage().Field("M", 'M', 10).Record("         1").Text());
  std::string head(512, '\0');
  head += std::string("\xFF\xFF\x08\0\x08\0\0\x04", 8);
  head[20 + 1] = 2;  // blocks of 512 bytes
  WriteBytes(folder_.Path() / "t.dbt", head);
  std::filesystem::resize_file(folder_.Path() / "t.dbt", head.size() + kLength);
  const Outcome outcome = RunTrovan({"table", "cat", Path("t.dbf")}, Path("out.csv"));
  EXPECT_EQ(outcome.code, 0) << outcome.errors;
  EXPECT_EQ(std::filesystem::file_size(Path("out.csv")), kLength + 7);
  EXPECT_LT(outcome.peakKiB, 32 * 1024);
}

}  // namespace
}  // namespace trovan::test
