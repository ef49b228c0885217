#include "SvgScanner.h"

#include <algorithm>
#include <limits>

#include "filters/support/NumberText.h"

namespace trovan::filters {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool IsNameCharacter(char c) {
  const char lower = Lower(c);
  return (lower >= 'a' && lower <= 'z') || IsDigit(c) || c == '-' || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}

std::size_t SkipDigits(std::string_view text, std::size_t at) {
  while (at < text.size() && IsDigit(text[at])) ++at;
  return at;
}

std::size_t SkipSign(std::string_view text, std::size_t at) {
  return at < text.size() && (text[at] == '+' || text[at] == '-') ? at + 1 : at;
}

// Where the number at `at` ends; `at` itself if there is none.
std::size_t EndOfNumber(std::string_view text, std::size_t at) {
  const std::size_t whole = SkipSign(text, at);
  std::size_t end = SkipDigits(text, whole);
  std::size_t digits = end - whole;
  if (end < text.size() && text[end] == '.') {
    const std::size_t fraction = end + 1;
    end = SkipDigits(text, fraction);
    digits += end - fraction;
  }
  if (digits == 0) return at;
  // An 'e' without digits belongs to what follows: "2em".
  if (end < text.size() && Lower(text[end]) == 'e') {
    const std::size_t exponent = SkipSign(text, end + 1);
    const std::size_t exponentEnd = SkipDigits(text, exponent);
    if (exponentEnd > exponent) end = exponentEnd;
  }
  return end;
}

}  // namespace

bool IsSvgSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f'; }

std::string_view TrimSpace(std::string_view text) {
  while (!text.empty() && IsSvgSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsSvgSpace(text.back())) text.remove_suffix(1);
  return text;
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char left, char right) { return Lower(left) == Lower(right); });
}

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), Lower);
  return lower;
}

bool SvgScanner::Skip(char c) {
  if (AtEnd() || text_[at_] != c) return false;
  ++at_;
  return true;
}

void SvgScanner::SkipSpace() {
  while (!AtEnd() && IsSvgSpace(text_[at_])) ++at_;
}

bool SvgScanner::SkipComma() {
  SkipSpace();
  if (!Skip(',')) return false;
  SkipSpace();
  return true;
}

bool SvgScanner::ReadNumber(double& value) {
  const std::size_t end = EndOfNumber(text_, at_);
  if (AtEnd() || end == at_) return false;
  const std::string_view number = text_.substr(at_, end - at_);
  at_ = end;
  if (ParseNumber(number, value) == NumberStatus::kOutOfRange) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    value = number.starts_with('-') ? -kInfinity : kInfinity;
  }
  return true;
}

bool SvgScanner::ReadFlag(bool& value) {
  if (Peek() != '0' && Peek() != '1') return false;
  value = text_[at_++] == '1';
  return true;
}

std::string_view SvgScanner::ReadName() {
  const std::size_t start = at_;
  while (!AtEnd() && (IsNameCharacter(text_[at_]) || text_[at_] == '\\')) {
    at_ = std::min(at_ + (text_[at_] == '\\' ? 2U : 1U), text_.size());
  }
  return text_.substr(start, at_ - start);
}

std::string_view SvgScanner::ReadUntil(std::string_view ends) {
  const std::size_t start = std::min(at_, text_.size());
  at_ = std::min(text_.find_first_of(ends, start), text_.size());
  return text_.substr(start, at_ - start);
}

}  // namespace trovan::filters
