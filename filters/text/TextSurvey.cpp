#include "TextSurvey.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "filters/text/ReadProgress.h"
#include "filters/text/Utf8Check.h"

namespace trovan::filters {
namespace {

using Bytes = std::span<const unsigned char>;

constexpr std::size_t kBlock = std::size_t{64} * 1024;

struct MarkBytes {
  ByteOrderMark mark;
  std::string_view bytes;
};

// The longer ones first.
constexpr MarkBytes kMarks[] = {
    {ByteOrderMark::kUtf32Le, {"\xFF\xFE\0\0", 4}}, {ByteOrderMark::kUtf32Be, {"\0\0\xFE\xFF", 4}},
    {ByteOrderMark::kUtf8, "\xEF\xBB\xBF"},         {ByteOrderMark::kUtf16Le, "\xFF\xFE"},
    {ByteOrderMark::kUtf16Be, "\xFE\xFF"},
};

ByteOrderMark MarkOf(Bytes start) {
  const std::string_view text(reinterpret_cast<const char*>(start.data()), start.size());
  for (const MarkBytes& mark : kMarks) {
    if (text.starts_with(mark.bytes)) return mark.mark;
  }
  return ByteOrderMark::kNone;
}

long long Count(Bytes bytes, unsigned char byte) {
  return static_cast<long long>(std::count(bytes.begin(), bytes.end(), byte));
}

// Each test runs over the block on its own: simple loops that compilers make vector code of.
class Survey {
 public:
  void Take(Bytes block) {
    if (survey_.bytes == 0) survey_.mark = MarkOf(block);
    survey_.lineFeeds += Count(block, '\n');
    const long long returns = Count(block, '\r');
    if (returns > 0 || afterReturn_) TakeReturns(block);
    const long long nulBytes = Count(block, 0);
    if (nulBytes > 0 && survey_.nulBytes == 0) {
      survey_.firstNul = survey_.bytes + (std::find(block.begin(), block.end(), 0) - block.begin());
    }
    survey_.nulBytes += nulBytes;
    survey_.nonAscii += static_cast<long long>(
        std::count_if(block.begin(), block.end(), [](unsigned char b) { return b >= 0x80; }));
    utf8_.Take(block);
    survey_.bytes += static_cast<long long>(block.size());
  }

  TextSurvey Finish(bool wholeFile, bool stopped) {
    survey_.wholeFile = wholeFile;
    survey_.stopped = stopped;
    // Behind a return where the survey was cut, a line feed may follow.
    if (afterReturn_ && wholeFile) ++survey_.loneReturns;
    if (wholeFile) utf8_.Finish();
    survey_.firstBadUtf8 = utf8_.FirstBad();
    return survey_;
  }

 private:
  void TakeReturns(Bytes block) {
    for (const unsigned char byte : block) {
      if (afterReturn_) ++(byte == '\n' ? survey_.pairs : survey_.loneReturns);
      afterReturn_ = byte == '\r';
    }
  }

  TextSurvey survey_;
  bool afterReturn_ = false;  // the last byte was a carriage return
  Utf8Check utf8_;
};

}  // namespace

long long SizeOf(ByteOrderMark mark) {
  for (const MarkBytes& known : kMarks) {
    if (known.mark == mark) return static_cast<long long>(known.bytes.size());
  }
  return 0;
}

TextSurvey SurveyText(corvel::CBufferedFile& file, long long limit, corvel::IProgress* progress) {
  const long long length = std::min(file.GetLength(), limit);
  file.Seek(0, corvel::kFileBegin);
  Survey survey;
  std::vector<unsigned char> block(kBlock);
  bool goOn = true;
  bool atEnd = false;
  for (long long at = 0; goOn && !atEnd && at < limit;) {
    const auto wanted =
        static_cast<std::size_t>(std::min(static_cast<long long>(kBlock), limit - at));
    const std::size_t got = file.Read(block.data(), wanted);
    survey.Take({block.data(), got});
    at += static_cast<long long>(got);
    atEnd = got < wanted;
    goOn = corvel::UpdateProgress(progress, PartRead(at, length));
  }
  const bool wholeFile = atEnd || (goOn && file.Getc() < 0);
  file.Seek(0, corvel::kFileBegin);
  return survey.Finish(wholeFile, !goOn);
}

}  // namespace trovan::filters
