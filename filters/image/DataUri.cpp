#include "DataUri.h"

#include <algorithm>
#include <cstddef>
#include <optional>

#include "filters/support/FilterError.h"

namespace trovan::filters {
namespace {

constexpr std::string_view kScheme = "data:";
constexpr std::string_view kBase64 = "base64";
constexpr unsigned kBitsInDigit = 6;

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool IsSameName(std::string_view text, std::string_view lowerCase) {
  return std::equal(text.begin(), text.end(), lowerCase.begin(), lowerCase.end(),
                    [](char a, char b) { return Lower(a) == b; });
}

bool IsSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

std::optional<unsigned> HexDigit(char c) {
  if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
  const char letter = Lower(c);
  if (letter >= 'a' && letter <= 'f') return static_cast<unsigned>(letter - 'a') + 10U;
  return {};
}

std::optional<unsigned> Base64Digit(char c) {
  if (c >= 'A' && c <= 'Z') return static_cast<unsigned>(c - 'A');
  if (c >= 'a' && c <= 'z') return static_cast<unsigned>(c - 'a') + 26U;
  if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0') + 52U;
  if (c == '+') return 62U;
  if (c == '/') return 63U;
  return {};
}

// Whether the last parameter of the media type says so.
bool EndsInBase64(std::string_view type) {
  while (!type.empty() && IsSpace(type.back())) type.remove_suffix(1);
  const std::size_t separator = type.rfind(';');
  if (separator == std::string_view::npos) return false;
  type.remove_prefix(separator + 1);
  while (!type.empty() && IsSpace(type.front())) type.remove_prefix(1);
  return IsSameName(type, kBase64);
}

std::string DecodeBase64(std::string_view text) {
  std::string bytes;
  bytes.reserve(text.size() / 4 * 3);
  unsigned bits = 0;   // those that are no whole byte yet, in the low positions
  unsigned count = 0;  // how many they are
  std::size_t padding = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (IsSpace(text[i])) continue;
    const auto digit = Base64Digit(text[i]);
    if (text[i] == '=' && ++padding <= 2) continue;
    if (!digit || padding > 0) {
      throw FilterError("character " + std::to_string(i + 1) + " of its data is not base64");
    }
    bits = (bits << kBitsInDigit | *digit) & 0xFFFU;
    count += kBitsInDigit;
    if (count < 8) continue;
    count -= 8;
    bytes += static_cast<char>(bits >> count & 0xFFU);
  }
  if (count == kBitsInDigit) throw FilterError("its base64 data end within a byte");
  return bytes;
}

}  // namespace

bool IsDataUri(std::string_view address) {
  return IsSameName(address.substr(0, kScheme.size()), kScheme);
}

std::string DecodeDataUri(std::string_view address) {
  const std::size_t comma = address.find(',');
  if (comma == std::string_view::npos) throw FilterError("its address has no data");
  std::string bytes = DecodePercents(address.substr(comma + 1));
  const std::string_view type = address.substr(kScheme.size(), comma - kScheme.size());
  return EndsInBase64(type) ? DecodeBase64(bytes) : bytes;
}

std::string DecodePercents(std::string_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto high = text[i] == '%' && i + 2 < text.size() ? HexDigit(text[i + 1]) : std::nullopt;
    const auto low = high ? HexDigit(text[i + 2]) : std::nullopt;
    if (low) {
      bytes += static_cast<char>(*high << 4U | *low);
      i += 2;
    } else {
      bytes += text[i];
    }
  }
  return bytes;
}

}  // namespace trovan::filters
