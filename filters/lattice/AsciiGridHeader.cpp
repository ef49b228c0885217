#include "AsciiGridHeader.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>

namespace trovan::filters {
namespace {

std::string InSmallLetters(std::string_view text) {
  std::string small(text);
  for (char& c : small) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return small;
}

bool LooksLikeNumber(std::string_view text) {
  double ignored = 0;
  return ParseNumber(text, ignored) != NumberStatus::kNotANumber;
}

// Programs write a byte order mark before UTF-8 where they should not.
std::string_view WithoutMark(std::string_view word) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  if (word.starts_with(kMark)) word.remove_prefix(kMark.size());
  return word;
}

class KeywordReader {
 public:
  explicit KeywordReader(TextScanner& scanner) : scanner_(scanner) {}

  LatticeHeader Read() {
    for (;;) {
      const TextPlace place = scanner_.Place();
      if (scanner_.NextWord().empty() || LooksLikeNumber(scanner_.Word())) {
        RequireAll();
        scanner_.Return(place);
        return Header();
      }
      ReadKeyword(InSmallLetters(WithoutMark(scanner_.Word())));
    }
  }

 private:
  // Where the lower-left cell lies along one axis.
  struct Position {
    std::optional<double> corner;
    std::optional<double> centre;

    bool IsKnown() const { return corner || centre; }
    double Centre(double step) const { return corner ? *corner + step / 2 : *centre; }
  };

  void ReadKeyword(const std::string& keyword) {
    if (keyword == "ncols") {
      ReadCount(columns_, "the number of columns");
    } else if (keyword == "nrows") {
      ReadCount(rows_, "the number of rows");
    } else if (keyword == "xllcorner") {
      ReadPosition(x_, x_.corner);
    } else if (keyword == "xllcenter") {
      ReadPosition(x_, x_.centre);
    } else if (keyword == "yllcorner") {
      ReadPosition(y_, y_.corner);
    } else if (keyword == "yllcenter") {
      ReadPosition(y_, y_.centre);
    } else if (keyword == "cellsize") {
      if (dx_ || dy_) FailRepeated("the size of the cells");
      ReadStep(dx_);
      dy_ = dx_;
    } else if (keyword == "dx") {
      ReadStep(dx_);
    } else if (keyword == "dy") {
      ReadStep(dy_);
    } else if (keyword == "nodata_value") {
      if (noData_) FailRepeated("the value of cells without data");
      noData_ = scanner_.ReadNumber<double>("a number for cells without data");
    } else {
      scanner_.FailExpected("a keyword of an ESRI ASCII grid or a number");
    }
  }

  [[noreturn]] void FailRepeated(std::string_view what) const {
    scanner_.Fail(Quoted(scanner_.Word()) + " tells " + std::string(what) + " a second time");
  }

  void ReadCount(std::optional<unsigned>& count, std::string_view what) {
    if (count) FailRepeated(what);
    const std::string expected = std::string(what) + ", a positive whole number";
    count = scanner_.ReadNumber<unsigned>(expected);
    if (*count == 0) scanner_.FailExpected(expected);
  }

  void ReadPosition(const Position& position, std::optional<double>& value) {
    if (position.IsKnown()) FailRepeated("where the lower-left cell lies");
    value = scanner_.ReadNumber<double>("a coordinate");
    if (!std::isfinite(*value)) scanner_.FailExpected("a finite coordinate");
  }

  void ReadStep(std::optional<double>& step) {
    if (step) FailRepeated("the size of the cells");
    constexpr std::string_view kExpected = "a positive cell size";
    step = scanner_.ReadNumber<double>(kExpected);
    if (!std::isfinite(*step) || *step <= 0) scanner_.FailExpected(kExpected);
  }

  void RequireAll() const {
    Require(columns_.has_value(), "ncols");
    Require(rows_.has_value(), "nrows");
    Require(x_.IsKnown(), "xllcorner or xllcenter");
    Require(y_.IsKnown(), "yllcorner or yllcenter");
    Require(dx_.has_value(), "cellsize or dx");
    Require(dy_.has_value(), "cellsize or dy");
  }
  void Require(bool isThere, std::string_view keyword) const {
    if (!isThere) scanner_.FailExpected(std::string(keyword) + " before the values");
  }

  LatticeHeader Header() const {
    LatticeHeader header;
    header.columns = *columns_;
    header.rows = *rows_;
    header.dataType = corvel::kDouble;
    header.origin = {x_.Centre(*dx_), y_.Centre(*dy_), 0.0};
    header.spacing = {*dx_, *dy_, 1.0};
    if (!std::isfinite(header.origin.x) || !std::isfinite(header.origin.y)) {
      scanner_.Fail("the centre of the lower-left cell is beyond the range of numbers");
    }
    header.rowOrder = RowOrder::kTopDown;
    header.voidValue = noData_;
    header.format = "ESRI ASCII grid";
    return header;
  }

  TextScanner& scanner_;
  std::optional<unsigned> columns_;
  std::optional<unsigned> rows_;
  Position x_;
  Position y_;
  std::optional<double> dx_;
  std::optional<double> dy_;
  std::optional<double> noData_;
};

}  // namespace

LatticeHeader ReadAsciiGridHeader(TextScanner& scanner) { return KeywordReader(scanner).Read(); }

}  // namespace trovan::filters
