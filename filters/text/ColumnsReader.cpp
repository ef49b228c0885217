#include "ColumnsReader.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include <corvel/Text.h>

#include "filters/support/CodePageNames.h"
#include "filters/support/FilterError.h"
#include "filters/support/InputFile.h"
#include "filters/text/ColumnChoice.h"
#include "filters/text/TextSurvey.h"
#include "filters/text/Utf8Check.h"

namespace trovan::filters {
namespace {

// The survey is quick beside the reading of rows.
constexpr double kSurveyPart = 0.1;

// A stretch of longer work.
class Stretch : public corvel::IProgress {
 public:
  Stretch(corvel::IProgress& whole, double from, double to) : whole_(whole), from_(from), to_(to) {}

  bool Update(double fraction) override { return whole_.Update(from_ + (to_ - from_) * fraction); }

 private:
  corvel::IProgress& whole_;
  double from_;
  double to_;
};

void RefuseWideText(const std::string& name, ByteOrderMark mark) {
  const bool wide = mark == ByteOrderMark::kUtf16Le || mark == ByteOrderMark::kUtf16Be;
  if (!wide && mark != ByteOrderMark::kUtf32Le && mark != ByteOrderMark::kUtf32Be) return;
  const std::string encoding = wide ? "UTF-16" : "UTF-32";
  throw FilterError(name + " is " + encoding + " text; convert it first: iconv -f " + encoding +
                    " -t UTF-8");
}

void RequireTextOfLines(const std::string& name, const TextSurvey& survey) {
  RefuseWideText(name, survey.mark);
  if (survey.nulBytes > 0) {
    throw FilterError(name + ": the byte at offset " + std::to_string(survey.firstNul) +
                      " is NUL, so this is no text of single bytes; if it is UTF-16, convert it "
                      "first: iconv -f UTF-16LE -t UTF-8");
  }
  if (survey.lineFeeds == 0 && survey.loneReturns > 0) {
    throw FilterError(name +
                      ": the lines end with carriage returns alone; convert them first: tr '\\r' "
                      "'\\n'");
  }
}

unsigned long long LineFeeds(std::string_view text) {
  return static_cast<unsigned long long>(std::count(text.begin(), text.end(), '\n'));
}

std::string HexByte(char byte) {
  char text[8];
  std::snprintf(text, sizeof text, "0x%02X",
                static_cast<unsigned>(static_cast<unsigned char>(byte)));
  return text;
}

}  // namespace

ColumnsReader::ColumnsReader(const std::wstring& path, const ColumnsFormat& format,
                             corvel::IProgress* progress)
    : name_(corvel::Utf8FromWide(path)) {
  if (format.codePage) {
    RequireConvertible(*format.codePage, "asked for");
    codec_.emplace(*format.codePage);
  }
  RequireFile(path);
  file_.Open(path, "rb", corvel::kFileShareRead, false);
  std::unique_ptr<corvel::IProgress> start;
  if (progress != nullptr) {
    start = std::make_unique<Stretch>(*progress, 0.0, kSurveyPart);
    progress_ = std::make_unique<Stretch>(*progress, kSurveyPart, 1.0);
  }
  const TextSurvey survey = SurveyText(file_, kWholeFile, start.get());
  stopped_ = survey.stopped;
  if (!stopped_) RequireTextOfLines(name_, survey);
  isUtf8_ = survey.IsUtf8();
  loneReturns_ = survey.loneReturns;
  if (survey.mark == ByteOrderMark::kUtf8) file_.Seek(SizeOf(survey.mark), corvel::kFileBegin);
  rows_.emplace(file_, name_, format.format, format.comment);
  if (stopped_) return;
  if (progress_ != nullptr) rows_->ReportTo(*progress_);
  rows_->SkipLines(format.skipLines);
  ReadNames(format.header);
}

ColumnsReader::~ColumnsReader() = default;

void ColumnsReader::ReadNames(bool header) {
  if (!rows_->ReadRow()) return;
  waiting_ = !header;
  for (std::size_t i = 0; i < rows_->Row().size(); ++i) {
    std::string name(header ? Text(i) : std::string_view());
    names_.push_back(name.empty() ? "column_" + std::to_string(i + 1) : std::move(name));
  }
}

bool ColumnsReader::ReadRow() {
  if (std::exchange(waiting_, false)) return true;
  return !stopped_ && rows_->ReadRow();
}

bool ColumnsReader::WasStopped() const { return stopped_ || rows_->WasStopped(); }

std::string_view ColumnsReader::Text(std::size_t column) {
  const std::string_view text = Row()[column].text;
  if (!codec_) {
    if (!isUtf8_) RequireUtf8(column);
    return text;
  }
  text_.clear();
  malformed_ += codec_->AppendUtf8(text, text_);
  return text_;
}

void ColumnsReader::RequireUtf8(std::size_t column) const {
  const std::string_view text = Row()[column].text;
  Utf8Check check;
  check.Take({reinterpret_cast<const unsigned char*>(text.data()), text.size()});
  check.Finish();
  if (check.FirstBad() == Utf8Check::kNowhere) return;
  const auto offset = static_cast<std::size_t>(check.FirstBad());
  throw FilterError(PlaceOf(column, offset) + "the byte " + HexByte(text[offset]) +
                    " is no UTF-8; --code-page tells what text it is, such as --code-page 1252 "
                    "for Western Europe");
}

std::string ColumnsReader::PlaceOf(std::size_t column, std::size_t offset) const {
  // A value may hold line ends. A short row may lack the column.
  const auto row = Row();
  auto line = Line();
  for (const Field& before : row.first(std::min(column, row.size()))) {
    line += LineFeeds(before.text);
  }
  if (column < row.size()) line += LineFeeds(row[column].text.substr(0, offset));
  std::string place =
      name_ + ", line " + std::to_string(line) + ", column " + std::to_string(column + 1);
  if (column < names_.size()) place += " (\"" + ShortName(names_[column]) + "\")";
  return place + ": ";
}

}  // namespace trovan::filters
