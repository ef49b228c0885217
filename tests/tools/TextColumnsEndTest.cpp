// `trovan text columns` on long ways: outputs that are full, closed or interrupted; memory.
#include <csignal>
#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "TextCommandFixture.h"
#include "support/FileSizeLimit.h"

namespace trovan::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// Memory means something else under these.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kSanitized = true;
#else
constexpr bool kSanitized = false;
#endif

class TextColumnsEndTest : public TextCommandFixture {};

TEST_F(TextColumnsEndTest, ReplacesAFileWhenTheOutputIsComplete) {
  const std::string rows = Save("t.csv", "x,y\n1,2\n");
  Save("o.json", "an older file");
  const Outcome outcome = Columns({rows, "--points", "x,y", "--out", Path("o.json")});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.output, "");
  EXPECT_EQ(nlohmann::json::parse(Bytes("o.json"))["features"].size(), 1U);
  EXPECT_THAT(Files(), ElementsAre("o.json", "t.csv"));
}

TEST_F(TextColumnsEndTest, LeavesTheOldFileWhenANumberIsBad) {
  const std::string rows = Save("t.csv", ManyRows(10'000) + "end,abc,1\n");
  Save("o.csv", "an older file");
  const Outcome outcome = Columns({rows, "--numbers", "x", "--out", Path("o.csv")});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_THAT(outcome.errors, HasSubstr("line 10002, column 2 (\"x\"): \"abc\" is no number"));
  EXPECT_EQ(Bytes("o.csv"), "an older file");
  EXPECT_THAT(Files(), ElementsAre("o.csv", "t.csv"));
}

TEST_F(TextColumnsEndTest, LeavesNothingBehindWhenFilesMayNotBecomeSoLarge) {
  const std::string rows = Save("t.csv", ManyRows(100'000));
  const FileSizeLimit limit(500'000);
  const Outcome outcome = Columns({rows, "--out", Path("o.csv")});
  EXPECT_EQ(outcome.signal, 0);
  EXPECT_EQ(outcome.code, 1);
  EXPECT_THAT(outcome.errors, HasSubstr("cannot write \"" + Path("o.csv") + "\": File too large"));
  EXPECT_THAT(Files(), ElementsAre("t.csv"));
}

TEST_F(TextColumnsEndTest, FailsWhenTheOutputIsFull) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "this system has no /dev/full";
  const Outcome outcome = Columns({Save("t.csv", ManyRows(10))}, "/dev/full");
  EXPECT_EQ(outcome.code, 1);
  EXPECT_THAT(outcome.errors, HasSubstr("cannot write the output: No space left on device"));
}

TEST_F(TextColumnsEndTest, RefusesAnOutputThatIsNoFile) {
  const std::string rows = Save("t.csv", ManyRows(10));
  for (const std::string& output : {folder_.Path().string(), std::string("/dev/null")}) {
    const Outcome outcome = Columns({rows, "--out", output});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_THAT(outcome.errors, HasSubstr("cannot write \"" + output + "\""));
  }
  EXPECT_THAT(Files(), ElementsAre("t.csv"));
}

TEST_F(TextColumnsEndTest, EndsQuietlyWhenNobodyReadsOn) {
  Process process({"text", "columns", Save("t.csv", ManyRows(200'000))});
  EXPECT_EQ(process.ReadOutput(10), "name,x,y\r\n");
  process.CloseOutput();
  const Outcome outcome = process.Wait();
  EXPECT_EQ(outcome.signal, 0);
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.errors, "");
}

// The pipe holds the command up, so that the signal comes in the middle of the rows.
TEST_F(TextColumnsEndTest, EndsWellFormedOnCtrlC) {
  const std::string rows = Save("t.csv", ManyRows(300'000));
  const std::vector<std::vector<std::string>> forms = {{"--to", "json"}, {"--points", "x,y"}};
  for (const auto& form : forms) {
    std::vector<std::string> arguments = {"text", "columns", rows};
    arguments.insert(arguments.end(), form.begin(), form.end());
    Process process(arguments);
    while (!process.OutputIsFull()) ASSERT_FALSE(process.HasEnded());
    process.Signal(SIGINT);
    const Outcome outcome = process.Wait();
    EXPECT_EQ(outcome.signal, 0);
    EXPECT_EQ(outcome.code, 130) << outcome.errors;
    EXPECT_TRUE(nlohmann::json::accept(outcome.output)) << outcome.output.size() << " bytes";
  }
}

// The signal comes as soon as the output has its first name; the rows take far longer.
TEST_F(TextColumnsEndTest, LeavesNothingBehindOnCtrlC) {
  const std::string rows = Save("t.csv", ManyRows(1'500'000));
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    SCOPED_TRACE(signal);
    Process process({"text", "columns", rows, "--to", "json", "--out", Path("o.json")});
    while (Files().size() == 1) ASSERT_FALSE(process.HasEnded());
    process.Signal(signal);
    const Outcome outcome = process.Wait();
    EXPECT_EQ(outcome.signal, 0);
    EXPECT_EQ(outcome.code, 130) << outcome.errors;
    EXPECT_THAT(Files(), ElementsAre("t.csv"));
  }
}

TEST_F(TextColumnsEndTest, NeedsNoMoreMemoryForALongFile) {
  if (kSanitized) GTEST_SKIP() << "the sanitizers need memory of their own";
  const std::string few = Save("few.csv", ManyRows(50'000));
  const std::string many = Save("many.csv", ManyRows(1'500'000));
  const std::vector<std::vector<std::string>> forms = {{"--to", "csv", "--numbers", "x"},
                                                       {"--to", "json", "--code-page", "1252"},
                                                       {"--points", "x,y"}};
  for (const auto& form : forms) {
    const auto peak = [&](const std::string& rows) {
      std::vector<std::string> arguments = {rows, "--out", Path("o")};
      arguments.insert(arguments.end(), form.begin(), form.end());
      const Outcome outcome = Columns(arguments);
      EXPECT_EQ(outcome.code, 0) << outcome.errors;
      return outcome.peakKiB;
    };
    const long small = peak(few);
    const long large = peak(many);
    EXPECT_LT(large, small + 2048);
    EXPECT_LT(large, 32 * 1024);
  }
}

}  // namespace
}  // namespace trovan::test
