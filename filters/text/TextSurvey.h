// What the bytes of a text file are, before anyone reads them as rows: line ends, NUL bytes, UTF-8.
//
//   const TextSurvey survey = SurveyText(file, kWholeFile, nullptr);
//   if (survey.nulBytes > 0) ...  // no text of single bytes: the first lies at survey.firstNul
#pragma once

#include <limits>

#include <corvel/BufferedFile.h>
#include <corvel/Progress.h>

namespace trovan::filters {

// The byte order mark at the start of a file. That of UTF-32 LE begins with that of UTF-16 LE: the
// longer one is taken.
enum class ByteOrderMark { kNone, kUtf8, kUtf16Le, kUtf16Be, kUtf32Le, kUtf32Be };

// In bytes.
long long SizeOf(ByteOrderMark mark);

struct TextSurvey {
  static constexpr long long kNowhere = -1;

  ByteOrderMark mark = ByteOrderMark::kNone;
  long long bytes = 0;    // that were looked at, the mark included
  bool wholeFile = true;  // the file has no more
  bool stopped = false;   // the user wished it

  long long nulBytes = 0;
  long long firstNul = kNowhere;      // offset
  long long lineFeeds = 0;            // with and without a carriage return in front
  long long pairs = 0;                // carriage return, line feed
  long long loneReturns = 0;          // carriage returns without a line feed behind
  long long nonAscii = 0;             // bytes from 0x80 on
  long long firstBadUtf8 = kNowhere;  // offset of the first byte that belongs to no character

  bool IsUtf8() const { return firstBadUtf8 == kNowhere; }
};

inline constexpr long long kWholeFile = std::numeric_limits<long long>::max();

// Looks at the first `limit` bytes of the file, in constant memory, and leaves the file at its
// start. A character that `limit` cuts is no fault. `progress` may be null.
//
// Raises corvel::Exception when the file cannot be read, or is a pipe.
TextSurvey SurveyText(corvel::CBufferedFile& file, long long limit, corvel::IProgress* progress);

}  // namespace trovan::filters
