#include "WktPolygon.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <utility>

#include "filters/support/FilterError.h"
#include "filters/support/NumberText.h"
#include "filters/support/QuotedText.h"

namespace trovan::filters {
namespace {

using corvel::Vec2d;
using tarnis::Polygon2;

constexpr std::string_view kBlanks = " \t\r\n\v\f";
constexpr std::string_view kEndsOfWords = " \t\r\n\v\f(),;";

std::string Upper(std::string_view text) {
  std::string upper(text);
  for (char& c : upper) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return upper;
}

// In upper case: the word with which a geometry of polygons begins.
struct GeometryName {
  bool isMulti = false;
  bool isPolygon = false;
  bool tellsDimensions = false;  // POLYGONZ: the letters for heights and measures belong to it

  explicit GeometryName(std::string_view name) : isMulti(name.starts_with("MULTI")) {
    if (isMulti) name.remove_prefix(5);
    isPolygon =
        name == "POLYGON" || name == "POLYGONZ" || name == "POLYGONM" || name == "POLYGONZM";
    tellsDimensions = isPolygon && name != "POLYGON";
  }
};

class WktParser {
 public:
  explicit WktParser(std::string_view text) : text_(text) { SkipBlanks(); }

  std::vector<Polygon2> Parse() {
    std::vector<Polygon2> polygons;
    const bool isMulti = ReadGeometryName();
    if (!ReadEmpty()) {
      if (isMulti) {
        ReadList([&] {
          if (!ReadEmpty()) polygons.push_back(ReadPolygon());
        });
      } else {
        polygons.push_back(ReadPolygon());
      }
    }
    if (at_ < text_.size()) Fail("the end of the text");
    return polygons;
  }

 private:
  void SkipBlanks() { at_ = std::min(text_.find_first_not_of(kBlanks, at_), text_.size()); }

  // What comes next, up to a blank or a sign; empty in front of a sign.
  std::string_view Word() const {
    return text_.substr(at_, std::min(text_.find_first_of(kEndsOfWords, at_), text_.size()) - at_);
  }

  void Skip(std::size_t count) {
    at_ += count;
    SkipBlanks();
  }

  bool ReadWord(std::string_view word) {
    if (Upper(Word()) != word) return false;
    Skip(word.size());
    return true;
  }

  // Whether it is a MULTIPOLYGON. The letters for heights and measures may be a word of their own.
  bool ReadGeometryName() {
    const GeometryName name(Upper(Word()));
    if (!name.isPolygon) Fail("POLYGON or MULTIPOLYGON");
    Skip(Word().size());
    if (!name.tellsDimensions && !ReadWord("Z") && !ReadWord("M")) ReadWord("ZM");
    return name.isMulti;
  }

  bool ReadEmpty() { return ReadWord("EMPTY"); }

  template <typename ReadItem>
  void ReadList(const ReadItem& readItem) {
    ReadSign('(');
    do {
      readItem();
    } while (ReadSeparator());
  }

  void ReadSign(char sign) {
    if (at_ == text_.size() || text_[at_] != sign) Fail(std::string("\"") + sign + '"');
    Skip(1);
  }

  // Behind an item: whether there is another one.
  bool ReadSeparator() {
    if (at_ < text_.size() && (text_[at_] == ',' || text_[at_] == ')')) {
      const bool goesOn = text_[at_] == ',';
      Skip(1);
      return goesOn;
    }
    Fail("\",\" or \")\"");
  }

  Polygon2 ReadPolygon() {
    std::vector<Vec2d> points;
    std::vector<unsigned int> counts;
    ReadList([&] {
      const std::size_t before = points.size();
      if (!ReadEmpty()) ReadList([&] { points.push_back(ReadPoint()); });
      counts.push_back(static_cast<unsigned int>(points.size() - before));
    });
    return {std::move(points), std::move(counts)};
  }

  Vec2d ReadPoint() {
    const double x = ReadNumber("a coordinate");
    const double y = ReadNumber("a second coordinate");
    // Height and measure.
    for (int i = 0; i < 2 && !Word().empty(); ++i) ReadNumber("a coordinate");
    return {x, y};
  }

  double ReadNumber(const char* what) {
    const std::string_view word = Word();
    double value = 0.0;
    if (ParseNumber(word, value) != NumberStatus::kNumber || !std::isfinite(value)) Fail(what);
    Skip(word.size());
    return value;
  }

  [[noreturn]] void Fail(const std::string& expected) const {
    std::string found = "the end of the text";
    if (at_ < text_.size()) {
      const std::string_view word = Word();
      found = Quoted(word.empty() ? text_.substr(at_, 1) : word);
    }
    throw FilterError("well-known text, column " + std::to_string(at_ + 1) + ": " + expected +
                      " expected, " + found + " found");
  }

  std::string_view text_;
  std::size_t at_ = 0;
};

}  // namespace

bool LooksLikeWktPolygon(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  return GeometryName(Upper(text.substr(0, text.find_first_of(kEndsOfWords)))).isPolygon;
}

std::vector<Polygon2> ParseWktPolygon(std::string_view text) { return WktParser(text).Parse(); }

}  // namespace trovan::filters
