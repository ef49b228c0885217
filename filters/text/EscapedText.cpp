#include "EscapedText.h"

#include <algorithm>
#include <charconv>
#include <span>
#include <utility>

#include "filters/text/Utf8Check.h"

namespace trovan::filters {
namespace {

// The letter behind the backslash, and what it stands for.
constexpr std::pair<char, char> kLetters[] = {
    {'\\', '\\'}, {'n', '\n'}, {'r', '\r'}, {'t', '\t'}, {'f', '\f'}};

// How many bytes the character at the start of the text has; 0: it is no UTF-8.
std::size_t CharacterLength(std::string_view text) {
  constexpr std::size_t kLongest = 4;
  for (std::size_t length = 1; length <= std::min(kLongest, text.size()); ++length) {
    Utf8Check check;
    check.Take({reinterpret_cast<const unsigned char*>(text.data()), length});
    check.Finish();
    if (check.FirstBad() == Utf8Check::kNowhere) return length;
  }
  return 0;
}

// U+0000 to U+001F and U+007F to U+009F.
bool IsControl(std::string_view character) {
  const auto first = static_cast<unsigned char>(character[0]);
  if (character.size() == 1) return first < 0x20 || first == 0x7F;
  return first == 0xC2 && static_cast<unsigned char>(character[1]) < 0xA0;
}

void AppendEscape(std::string& text, char byte) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  text += '\\';
  for (const auto& [letter, meaning] : kLetters) {
    if (meaning != byte) continue;
    text += letter;
    return;
  }
  const auto value = static_cast<unsigned char>(byte);
  text += {'x', kDigits[value >> 4], kDigits[value & 0xF]};
}

// Takes the escape at the start of the text, without its backslash.
std::optional<char> TakeEscape(std::string_view& text) {
  for (const auto& [letter, meaning] : kLetters) {
    if (!text.starts_with(letter)) continue;
    text.remove_prefix(1);
    return meaning;
  }
  unsigned char value = 0;
  if (text.size() < 3 || text[0] != 'x') return std::nullopt;
  const auto parsed = std::from_chars(text.data() + 1, text.data() + 3, value, 16);
  if (parsed.ec != std::errc() || parsed.ptr != text.data() + 3) return std::nullopt;
  text.remove_prefix(3);
  return static_cast<char>(value);
}

}  // namespace

std::string Escaped(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  while (!bytes.empty()) {
    const std::size_t length = std::max<std::size_t>(CharacterLength(bytes), 1);
    const std::string_view character = bytes.substr(0, length);
    const bool isBad = length == 1 && static_cast<unsigned char>(character[0]) >= 0x80;
    if (isBad || character == "\\" || IsControl(character)) {
      for (const char byte : character) AppendEscape(text, byte);
    } else {
      text += character;
    }
    bytes.remove_prefix(length);
  }
  return text;
}

std::optional<std::string> Unescaped(std::string_view text) {
  std::string bytes;
  while (!text.empty()) {
    const char c = text.front();
    text.remove_prefix(1);
    const auto byte = c == '\\' ? TakeEscape(text) : std::optional(c);
    if (!byte) return std::nullopt;
    bytes += *byte;
  }
  return bytes;
}

}  // namespace trovan::filters
