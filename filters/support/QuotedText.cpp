#include "QuotedText.h"

#include <cstddef>

namespace trovan::filters {

std::string Quoted(std::string_view text) {
  constexpr std::size_t kShown = 40;
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string quoted = "\"";
  for (const char c : text.substr(0, kShown)) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= ' ' && byte < 0x7F) {
      quoted += c;
    } else {
      quoted += {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 0xF]};
    }
  }
  quoted += text.size() > kShown ? "...\"" : "\"";
  return quoted;
}

}  // namespace trovan::filters
