#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <corvel/Logger.h>

#include "support/CapturedLog.h"
#include "support/Locale.h"
#include "support/TempFolder.h"

namespace corvel {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::ThrowsMessage;
using trovan::test::CapturedLog;
using trovan::test::ReadBytes;
using trovan::test::ScopedLocale;
using trovan::test::TempFolder;

// Leads the program's standard error into a file while it lives.
class CapturedStandardError {
 public:
  CapturedStandardError() : before_(::dup(STDERR_FILENO)) {
    const int file = ::open(path_.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    if (before_ < 0 || file < 0) throw std::runtime_error("standard error cannot be captured");
    ::dup2(file, STDERR_FILENO);
    ::close(file);
  }
  ~CapturedStandardError() {
    std::fflush(stderr);
    ::dup2(before_, STDERR_FILENO);
    ::close(before_);
  }
  CapturedStandardError(const CapturedStandardError&) = delete;
  CapturedStandardError& operator=(const CapturedStandardError&) = delete;

  // What has arrived by now; a logger does not keep anything back.
  std::string Text() const { return ReadBytes(path_); }

 private:
  TempFolder folder_;
  std::filesystem::path path_ = folder_.Path() / "stderr";
  int before_;
};

static_assert(kLogWarning == 1);

TEST(Logger, HandsLevelAndTextToItsSink) {
  const CapturedLog log;
  for (const int level : {kLogError, kLogWarning, kLogInfo, kLogDebug, 17, -1}) {
    g_Logger(level, L"level %d", level);
  }
  ASSERT_EQ(log.Messages().size(), 6U);
  EXPECT_EQ(log.Messages()[1].level, kLogWarning);
  EXPECT_EQ(log.Messages()[1].text, L"level 1");
  EXPECT_EQ(log.Messages()[4].level, 17);
  EXPECT_EQ(log.Messages()[5].text, L"level -1");
}

TEST(Logger, FormatsByTheRulesOfFormatString) {
  const CapturedLog log;
  g_Logger(kLogWarning, L"%s, %S, %5.1f, %I64d, %c%%", L"wide \u6771", "narrow \xC3\xA4", 2.25,
           -5'000'000'000LL, L'\u00DF');
  ASSERT_EQ(log.Messages().size(), 1U);
  EXPECT_EQ(log.Messages()[0].text, L"wide \u6771, narrow \u00E4,   2.2, -5000000000, \u00DF%");
}

TEST(Logger, LogsAFormatThatCannotBeUsedAsItStands) {
  const CapturedLog log;
  g_Logger(kLogWarning, L"100 %y of %d", 1);
  g_Logger(kLogWarning, L"50 %");
  g_Logger(kLogWarning, nullptr);
  ASSERT_EQ(log.Messages().size(), 3U);
  EXPECT_EQ(log.Messages()[0].text, L"100 %y of %d");
  EXPECT_EQ(log.Messages()[1].text, L"50 %");
  EXPECT_EQ(log.Messages()[2].text, L"(no message)");
}

TEST(Logger, LetsWhatItsSinkRaisesReachWhoeverLogs) {
  g_Logger.SetSink([](int, const std::wstring&) { throw std::runtime_error("the log is full"); });
  EXPECT_THAT([] { g_Logger(kLogWarning, L"text"); },
              ThrowsMessage<std::runtime_error>("the log is full"));
  g_Logger.SetSink({});
}

TEST(Logger, WritesErrorsAndWarningsToStandardErrorInUtf8) {
  for (const char* name : {"C", "C.UTF-8"}) {
    const ScopedLocale locale(name);
    const CapturedStandardError error;
    g_Logger(kLogError, L"no such folder: %s", L"Stra\u00DFe");
    g_Logger(kLogWarning, L"\u6771\U0001F5FA {} {0} %s", L"{");
    EXPECT_EQ(error.Text(),
              "error: no such folder: Stra\xC3\x9F"
              "e\n"
              "warning: \xE6\x9D\xB1\xF0\x9F\x97\xBA {} {0} {\n");
  }
}

TEST(Logger, DropsAllElseWithoutASink) {
  const CapturedStandardError error;
  g_Logger(kLogInfo, L"info");
  g_Logger(kLogDebug, L"debug");
  g_Logger(17, L"chatter");
  EXPECT_EQ(error.Text(), "");
}

TEST(Logger, WritesNothingToStandardErrorWhileASinkTakesIt) {
  const CapturedStandardError error;
  {
    const CapturedLog log;
    g_Logger(kLogError, L"to the sink");
  }
  EXPECT_EQ(error.Text(), "");
}

TEST(Logger, WritesToStandardErrorAgainWhenItsSinkIsTakenAway) {
  const CapturedStandardError error;
  { const CapturedLog log; }
  g_Logger(kLogError, L"again");
  EXPECT_THAT(error.Text(), HasSubstr("again"));
}

TEST(Logger, CanBeHadOfOnesOwn) {
  Logger logger;
  std::wstring heard;
  logger.SetSink([&](int, const std::wstring& text) { heard = text; });
  const CapturedLog log;
  logger(kLogWarning, L"mine");
  EXPECT_EQ(heard, L"mine");
  EXPECT_TRUE(log.Messages().empty());
}

}  // namespace
}  // namespace corvel
