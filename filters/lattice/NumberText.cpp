#include "NumberText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <system_error>
#include <type_traits>

#include "filters/lattice/NodeTypes.h"

namespace trovan::filters {
namespace {

// Whether a decimal number that does not fit its real type is too small, not too large: tells the
// power of ten of its first digit.
bool IsTiny(std::string_view number) {
  const std::size_t exponentAt = std::min(number.find_first_of("eE"), number.size());
  const std::string_view mantissa = number.substr(0, exponentAt);
  int exponent = 0;
  if (exponentAt < number.size()) {
    std::string_view text = number.substr(exponentAt + 1);
    if (text.starts_with('+')) text.remove_prefix(1);
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), exponent);
    if (parsed.ec == std::errc::result_out_of_range) return text.starts_with('-');
  }
  const auto point = static_cast<long long>(std::min(mantissa.find('.'), mantissa.size()));
  const auto digit = static_cast<long long>(mantissa.find_first_of("123456789"));
  return exponent + point - digit < 0;
}

constexpr std::size_t kLongestNumber = 32;  // a 64-bit integer takes 20, a double 24

}  // namespace

template <typename T>
NumberStatus ParseNumber(std::string_view text, T& value) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return NumberStatus::kNotANumber;
  }
  T parsed{};
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, parsed);
  if (result.ec == std::errc::invalid_argument || result.ptr != end) {
    return NumberStatus::kNotANumber;
  }
  if (result.ec == std::errc::result_out_of_range) {
    if constexpr (std::is_floating_point_v<T>) {
      if (IsTiny(text)) {
        value = std::copysign(T{0}, text.starts_with('-') ? T{-1} : T{1});
        return NumberStatus::kNumber;
      }
    }
    return NumberStatus::kOutOfRange;
  }
  value = parsed;
  return NumberStatus::kNumber;
}

template NumberStatus ParseNumber(std::string_view, std::int8_t&);
template NumberStatus ParseNumber(std::string_view, std::uint8_t&);
template NumberStatus ParseNumber(std::string_view, std::int16_t&);
template NumberStatus ParseNumber(std::string_view, std::uint16_t&);
template NumberStatus ParseNumber(std::string_view, std::int32_t&);
template NumberStatus ParseNumber(std::string_view, std::uint32_t&);
template NumberStatus ParseNumber(std::string_view, std::int64_t&);
template NumberStatus ParseNumber(std::string_view, std::uint64_t&);
template NumberStatus ParseNumber(std::string_view, float&);
template NumberStatus ParseNumber(std::string_view, double&);

NumberStatus ParseNumber(std::string_view text, corvel::PrimType type, void* element) {
  return VisitElementType(type, [&](auto value) {
    const NumberStatus status = ParseNumber(text, value);
    if (status == NumberStatus::kNumber) std::memcpy(element, &value, sizeof value);
    return status;
  });
}

void AppendNumber(std::string& text, corvel::PrimType type, const void* element) {
  VisitElementType(type, [&](auto value) {
    std::memcpy(&value, element, sizeof value);
    char number[kLongestNumber];
    const auto result = std::to_chars(number, number + sizeof number, value);
    text.append(number, result.ptr);
  });
}

void AppendNumber(std::string& text, double value) { AppendNumber(text, corvel::kDouble, &value); }

std::string ShortestText(double value) {
  std::string text;
  AppendNumber(text, value);
  return text;
}

void WriteLineOfNumbers(corvel::CBufferedFile& file, corvel::PrimType type, const void* elements,
                        std::size_t count) {
  constexpr std::size_t kPiece = std::size_t{64} * 1024;
  const auto size = static_cast<std::size_t>(corvel::CPrimType(type).Size());
  const auto* element = static_cast<const unsigned char*>(elements);
  std::string text;
  text.reserve(kPiece + 64);
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0) text += ' ';
    AppendNumber(text, type, element + i * size);
    if (text.size() >= kPiece) {
      file.Write(text.data(), text.size());
      text.clear();
    }
  }
  text += '\n';
  file.Write(text.data(), text.size());
}

}  // namespace trovan::filters
