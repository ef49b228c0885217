#include <stdexcept>
#include <string>
#include <type_traits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <corvel/Exception.h>
#include <corvel/Logger.h>

#include "support/CapturedLog.h"

namespace corvel {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::ThrowsMessage;
using trovan::test::CapturedLog;

static_assert(std::is_base_of_v<std::runtime_error, Exception>);
static_assert(std::is_nothrow_copy_constructible_v<std::runtime_error>);

TEST(Exception, SaysWhereAndWhat) {
  const Exception error("Trovan.dll", "Sequence", 172, "Out of order", false);
  EXPECT_STREQ(error.what(), "Trovan.dll::Sequence(172): Out of order");
}

TEST(Exception, SaysLinesAndTextsOfEveryKind) {
  EXPECT_STREQ(Exception("", "", 0, "", false).what(), "::(0): ");
  EXPECT_STREQ(Exception("m", "f", -5, "100 %s {}\n", true).what(), "m::f(-5): 100 %s {}\n");
  EXPECT_STREQ(Exception("m", "f", 2147483647, "\xC3\xA4", false).what(),
               "m::f(2147483647): \xC3\xA4");
}

TEST(Exception, KeepsEachOfItsParts) {
  for (const bool reported : {false, true}) {
    const Exception error("module", "file", 7, "message", reported);
    EXPECT_EQ(error.Module(), "module");
    EXPECT_EQ(error.File(), "file");
    EXPECT_EQ(error.Line(), 7);
    EXPECT_EQ(error.Message(), "message");
    EXPECT_EQ(error.Reported(), reported);
  }
}

TEST(Exception, IsCaughtAsARuntimeError) {
  try {
    throw Exception("module", "file", 7, "message", false);
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "module::file(7): message");
  }
}

TEST(Exception, IsRaisedForABadParameter) {
  try {
    Throw_ERR_CORVEL_BAD_PARAMETER("Trovan", "DBFReader", 12);
  } catch (const Exception& error) {
    EXPECT_STREQ(error.what(), "Trovan::DBFReader(12): Bad parameter");
    EXPECT_EQ(error.Module(), "Trovan");
    EXPECT_EQ(error.File(), "DBFReader");
    EXPECT_EQ(error.Line(), 12);
    EXPECT_FALSE(error.Reported());
  }
  EXPECT_THROW(Throw_ERR_CORVEL_BAD_PARAMETER("m", "f", 1), Exception);
}

TEST(Exception, IsRaisedForAnInternalError) {
  try {
    ThrowInternalError("Trovan", "GCachedBitmapXform", 34);
  } catch (const Exception& error) {
    EXPECT_STREQ(error.what(), "Trovan::GCachedBitmapXform(34): Internal error");
    EXPECT_EQ(error.Line(), 34);
    EXPECT_FALSE(error.Reported());
  }
  EXPECT_THROW(ThrowInternalError("m", "f", 1), Exception);
}

// What LogExceptionInfo logs when `raise` has raised.
template <typename Raise>
CapturedLog::Message LoggedAfter(Raise raise) {
  const CapturedLog log;
  try {
    raise();
  } catch (...) {
    LogExceptionInfo(L"CReader::~CReader", L"Reader", 56);
  }
  EXPECT_EQ(log.Messages().size(), 1U);
  return log.Messages().at(0);
}

TEST(LogExceptionInfo, LogsAWarningWithTheTextAndThePlace) {
  const auto logged = LoggedAfter([] { ThrowInternalError("Trovan", "DBFReader", 34); });
  EXPECT_EQ(logged.level, kLogWarning);
  EXPECT_THAT(logged.text, AllOf(HasSubstr(L"Trovan::DBFReader(34): Internal error"),
                                 HasSubstr(L"CReader::~CReader"), HasSubstr(L"File Reader"),
                                 HasSubstr(L"Line 56")));
}

TEST(LogExceptionInfo, LogsExceptionsOfOthers) {
  const auto logged = LoggedAfter([] { throw std::invalid_argument("100 %s of \xC3\xA4"); });
  EXPECT_THAT(logged.text, HasSubstr(L"100 %s of \u00E4"));
}

TEST(LogExceptionInfo, LogsThatAnExceptionHasNoText) {
  const auto logged = LoggedAfter([] { throw 42; });
  EXPECT_THAT(logged.text, AllOf(HasSubstr(L"unknown type"), HasSubstr(L"Line 56")));
}

TEST(LogExceptionInfo, LogsOutsideOfACatchThatThereIsNone) {
  const CapturedLog log;
  LogExceptionInfo(L"where", L"file", 1);
  ASSERT_EQ(log.Messages().size(), 1U);
  EXPECT_THAT(log.Messages()[0].text, HasSubstr(L"no exception"));
}

TEST(LogExceptionInfo, TakesNullForAPlaceThatIsNotKnown) {
  const CapturedLog log;
  LogExceptionInfo(nullptr, nullptr, 1);
  EXPECT_EQ(log.Messages().size(), 1U);
}

TEST(LogExceptionInfo, LeavesTheExceptionToWhoeverHandlesIt) {
  const CapturedLog log;
  EXPECT_THAT(
      [] {
        try {
          throw std::runtime_error("the first");
        } catch (...) {
          LogExceptionInfo(L"where", L"file", 1);
          throw;
        }
      },
      ThrowsMessage<std::runtime_error>("the first"));
}

TEST(LogExceptionInfo, NeverRaisesThoughTheLogDoes) {
  int calls = 0;
  g_Logger.SetSink([&](int, const std::wstring&) {
    ++calls;
    throw std::runtime_error("the log is full");
  });
  try {
    throw std::runtime_error("the first");
  } catch (...) {
    EXPECT_NO_THROW(LogExceptionInfo(L"where", L"file", 1));
  }
  g_Logger.SetSink({});
  EXPECT_EQ(calls, 1);
}

}  // namespace
}  // namespace corvel
