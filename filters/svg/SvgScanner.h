// Walks over the text of an attribute.
//
//   SvgScanner scanner("10, -2.5e1.5");
//   double number;
//   scanner.ReadNumber(number);  // 10
//   scanner.SkipComma();         // true
//   scanner.ReadNumber(number);  // -25
//   scanner.ReadNumber(number);  // 0.5: a number ends where no number can go on
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace trovan::filters {

// Space, tab, line feed, carriage return, form feed.
bool IsSvgSpace(char c);

// The text without space at its ends.
std::string_view TrimSpace(std::string_view text);

// Whether the texts are equal but for the case of ASCII letters.
bool EqualsIgnoringCase(std::string_view a, std::string_view b);

// With ASCII letters in lower case.
std::string LowerCase(std::string_view text);

class SvgScanner {
 public:
  // `text` is borrowed.
  explicit SvgScanner(std::string_view text) : text_(text) {}

  bool AtEnd() const { return at_ >= text_.size(); }
  std::size_t Position() const { return at_; }
  void MoveTo(std::size_t position) { at_ = position; }

  // The next character; 0 at the end.
  char Peek() const { return AtEnd() ? '\0' : text_[at_]; }
  std::string_view Rest() const { return text_.substr(at_ < text_.size() ? at_ : text_.size()); }

  // Steps over the character if it is the next one.
  bool Skip(char c);
  void SkipSpace();
  // Space, at most one comma, space. Returns whether there was a comma.
  bool SkipComma();

  // A number: a sign, digits, a point, digits, an exponent. One that is too large for a double
  // becomes an infinity. False, without a step, where there is none.
  bool ReadNumber(double& value);

  // A single 0 or 1: what follows it may stand directly behind. False, without a step, otherwise.
  bool ReadFlag(bool& value);

  // Letters, digits, '-', '_', '\\' with the character behind it, and all beyond ASCII; may be
  // empty.
  std::string_view ReadName();

  // What stands before the first of `ends`, or all the rest.
  std::string_view ReadUntil(std::string_view ends);

 private:
  std::string_view text_;
  std::size_t at_ = 0;
};

}  // namespace trovan::filters
