#include "TextSniffer.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include <corvel/BufferedFile.h>
#include <corvel/Text.h>
#include <trovan/TextHelpers.h>

#include "filters/support/InputFile.h"
#include "filters/text/DelimitedReader.h"
#include "filters/text/RowStatistics.h"

namespace trovan::filters {
namespace {

constexpr const char* kBlanks = " \t";
// In the order in which they are taken where nothing else decides. "": blanks.
constexpr std::array<const char*, 5> kDelimiters = {"\t", ";", "|", ",", ""};
constexpr std::array<const char*, 2> kQuotes = {"\"", "'"};
// Quotes that close in front of a delimiter, for each one that does not.
constexpr unsigned long long kCleanForADirty = 10;

std::string EncodingOf(const TextSurvey& survey, bool binary) {
  switch (survey.mark) {
    case ByteOrderMark::kUtf16Le:
      return "UTF-16 LE";
    case ByteOrderMark::kUtf16Be:
      return "UTF-16 BE";
    case ByteOrderMark::kUtf32Le:
      return "UTF-32 LE";
    case ByteOrderMark::kUtf32Be:
      return "UTF-32 BE";
    case ByteOrderMark::kUtf8:
    case ByteOrderMark::kNone:
      break;
  }
  if (binary) return "unknown";
  if (!survey.IsUtf8()) return "8-bit";
  if (survey.mark == ByteOrderMark::kUtf8) return "UTF-8 with BOM";
  return survey.nonAscii == 0 ? "ASCII" : "UTF-8";
}

std::string LineEndsOf(const TextSurvey& survey) {
  const long long loneFeeds = survey.lineFeeds - survey.pairs;
  const int kinds = (loneFeeds > 0) + (survey.pairs > 0) + (survey.loneReturns > 0);
  if (kinds == 0) return "none";
  if (kinds > 1) return "mixed";
  return loneFeeds > 0 ? "LF" : survey.pairs > 0 ? "CR LF" : "CR";
}

bool HasWideCharacters(ByteOrderMark mark) {
  return mark != ByteOrderMark::kNone && mark != ByteOrderMark::kUtf8;
}

struct Reading {
  DelimitedFormat format;
  RowStatistics rows;
  bool oddQuotes = false;  // as in TextReport
};

class Sniffer {
 public:
  Sniffer(const std::wstring& path, const SniffHints& hints)
      : hints_(hints), name_(corvel::Utf8FromWide(path)) {
    RequireFile(path);
    file_.Open(path, "rb", corvel::kFileShareRead, false);
  }

  TextReport Run() {
    report_.survey = SurveyText(file_, kSampleBytes, nullptr);
    report_.binary = IsBinary(file_, static_cast<unsigned>(kSampleBytes));
    report_.encoding = EncodingOf(report_.survey, report_.binary);
    report_.lineEnds = LineEndsOf(report_.survey);
    if (report_.binary || HasWideCharacters(report_.survey.mark)) return report_;
    FindFirstRow();
    const Reading best = BestReading();
    report_.format = best.format;
    report_.oddQuotes = best.oddQuotes;
    TellRows(best.rows);
    return report_;
  }

 private:
  // Where the lines of the file begin.
  void Rewind() {
    file_.SetReadEnd(corvel::CBufferedFile::kNoReadEnd);
    file_.Seek(SizeOf(report_.survey.mark), corvel::kFileBegin);
  }

  // Counts the lines in front of the first row.
  void FindFirstRow() {
    PassSkippedLines();
    file_.SetReadEnd(sampleEnd_);
    std::string line;
    while (file_.ReadString(line)) {
      const bool isBlank = line.find_first_not_of("\r\f") == std::string::npos;
      const bool isComment = !isBlank && IsComment(line);
      if (!isBlank && !isComment) break;
      ++report_.leadingLines;
      if (isComment) ++report_.commentLines;
    }
  }

  // They may be longer than any sample, and than memory.
  void PassSkippedLines() {
    Rewind();
    if (hints_.skipLines == 0) return;
    DelimitedReader(file_, name_, {}).SkipLines(hints_.skipLines);
    report_.leadingLines = hints_.skipLines;
    sampleEnd_ = file_.GetPosition() + kSampleBytes;
  }

  // A '#' alone in front of a delimiter is the name of a column.
  bool IsComment(const std::string& line) const {
    if (hints_.comment) return *hints_.comment != 0 && line.front() == *hints_.comment;
    if (line.front() != '#') return false;
    return line.size() == 1 || std::string_view("\t;|,").find(line[1]) == std::string_view::npos;
  }

  Reading Read(const DelimitedFormat& format) {
    Rewind();
    ReadLimits limits;
    limits.end = sampleEnd_;
    DelimitedReader reader(file_, name_, format, hints_.comment.value_or('\0'), limits);
    reader.SkipLines(report_.leadingLines);
    Reading reading = {format, {}, false};
    reading.rows.Take(reader, kSampleRows);
    return reading;
  }

  static bool HasCleanQuotes(const RowStatistics& rows) {
    const auto dirty = rows.QuoteFaults();
    const auto clean = rows.QuotedFields() - std::min(dirty, rows.QuotedFields());
    return clean >= kCleanForADirty * dirty;
  }

  // With the quotes that fit best: the first kind that is used, and properly; the first kind as
  // well where none is used.
  Reading ReadWithQuotes(DelimitedFormat format) {
    if (hints_.quotes) {
      format.quotes = *hints_.quotes;
      return Read(format);
    }
    bool anyFault = false;
    for (const char* quotes : kQuotes) {
      format.quotes = quotes;
      Reading reading = Read(format);
      if (reading.rows.QuotedFields() > 0 && HasCleanQuotes(reading.rows)) return reading;
      if (quotes == kQuotes.front()) anyFault = !HasCleanQuotes(reading.rows);
    }
    format.quotes = anyFault ? "" : kQuotes.front();
    Reading reading = Read(format);
    reading.oddQuotes = anyFault;
    return reading;
  }

  static DelimitedFormat SetApartBy(const std::string& delimiters) {
    return {delimiters, delimiters.empty() ? kBlanks : "", ""};
  }

  static bool IsBetter(const RowStatistics& a, const RowStatistics& b) {
    const auto share = [](const RowStatistics& rows) {
      return static_cast<double>(rows.RowsOf(rows.ColumnsFrom(2))) /
             static_cast<double>(std::max(rows.Rows(), 1ULL));
    };
    if (share(a) != share(b)) return share(a) > share(b);
    return a.NumberShare() > b.NumberShare();
  }

  Reading BestReading() {
    if (hints_.delimiters) {
      Reading reading = ReadWithQuotes(SetApartBy(*hints_.delimiters));
      report_.delimited = IsDelimited(reading.rows);
      return reading;
    }
    std::optional<Reading> best;
    for (const char* delimiters : kDelimiters) {
      Reading reading = ReadWithQuotes(SetApartBy(delimiters));
      if (!best || IsBetter(reading.rows, best->rows)) best = std::move(reading);
    }
    report_.delimited = IsDelimited(best->rows);
    return report_.delimited ? *best : ReadWithQuotes({"", "", ""});
  }

  static bool IsDelimited(const RowStatistics& rows) {
    const std::size_t columns = rows.ColumnsFrom(2);
    return columns > 0 && 2 * rows.RowsOf(columns) >= rows.Rows();
  }

  void TellRows(const RowStatistics& rows) {
    const bool commasDelimit = report_.format.delimiters.find(',') != std::string::npos;
    report_.decimal = rows.Decimal(commasDelimit);
    report_.rows = rows.Rows();
    const bool isCut = file_.GetLength() > sampleEnd_;
    report_.allRows = !isCut && rows.TookAll();
    report_.columns = report_.delimited ? rows.ColumnsFrom(2) : rows.Columns();
    report_.rowsOfThatWidth = rows.RowsOf(report_.columns);
    report_.firstOtherLine = rows.FirstLineOtherThan(report_.columns);
    report_.header = rows.HasHeader();
    if (report_.header) report_.names = rows.FirstRow();
    TellProblem(rows, isCut);
  }

  void TellProblem(const RowStatistics& rows, bool isCut) {
    report_.problem = rows.Error();
    if (report_.lineEnds == "CR") {
      report_.problem = name_ + ": all lines end with a carriage return alone, which ends no row";
    } else if (isCut && rows.Rows() == 0 && report_.problem.empty()) {
      report_.noWholeRow = true;
      report_.problem = name_ + ": no row ends within 1 MiB: there is nothing to go by";
    }
  }

  const SniffHints& hints_;
  std::string name_;
  corvel::CBufferedFile file_;
  long long sampleEnd_ = kSampleBytes;  // an offset in the file
  TextReport report_;
};

}  // namespace

TextReport SniffText(const std::wstring& path, const SniffHints& hints) {
  return Sniffer(path, hints).Run();
}

}  // namespace trovan::filters
