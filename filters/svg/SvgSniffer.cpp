#include "SvgSniffer.h"

#include <cstddef>

#include "SvgScanner.h"

namespace trovan::filters {
namespace {

// UTF-16 of ASCII letters is these letters and NUL bytes.
std::string Narrowed(std::string_view head) {
  std::string narrow;
  narrow.reserve(head.size());
  for (const char c : head) {
    if (c != '\0') narrow += c;
  }
  return narrow;
}

std::size_t Behind(std::string_view text, std::string_view end, std::size_t at) {
  const std::size_t found = text.find(end, at);
  return found == std::string_view::npos ? text.size() : found + end.size();
}

// Behind a document type, whose own declarations stand between brackets.
std::size_t BehindType(std::string_view text, std::size_t at) {
  const std::size_t mark = text.find_first_of("[>", at);
  if (mark == std::string_view::npos) return text.size();
  return text[mark] == '>' ? mark + 1 : Behind(text, ">", Behind(text, "]", mark));
}

// Of the first element; the size of the text if there is none.
std::size_t StartOfRoot(std::string_view text) {
  std::size_t at = text.find('<');
  while (at < text.size()) {
    const std::string_view rest = text.substr(at);
    if (rest.starts_with("<?")) {
      at = Behind(text, "?>", at);
    } else if (rest.starts_with("<!--")) {
      at = Behind(text, "-->", at);
    } else if (rest.starts_with("<!")) {
      at = BehindType(text, at);
    } else {
      return at;
    }
    at = text.find('<', at);
  }
  return text.size();
}

// Where the start tag at `at` ends: its '>'.
std::size_t EndOfTag(std::string_view text, std::size_t at) {
  char quote = '\0';
  for (; at < text.size(); ++at) {
    const char c = text[at];
    if (quote != '\0') {
      if (c == quote) quote = '\0';
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '>') {
      break;
    }
  }
  return at;
}

}  // namespace

std::optional<std::string> RootAlone(std::string_view head) {
  const bool isWide = head.substr(0, 4).find('\0') != std::string_view::npos ||
                      head.starts_with("\xFE\xFF") || head.starts_with("\xFF\xFE");
  const std::string narrow = isWide ? Narrowed(head) : std::string();
  const std::string_view text = isWide ? std::string_view(narrow) : head;
  const std::size_t start = StartOfRoot(text);
  SvgScanner scanner(text.substr(start));
  if (!scanner.Skip('<')) return {};
  std::string_view name = scanner.ReadName();
  if (scanner.Skip(':')) name = scanner.ReadName();
  if (name != "svg") return {};
  std::size_t end = EndOfTag(text, start);
  if (end == text.size()) return {};
  if (text[end - 1] == '/') --end;
  return std::string(text.substr(start, end - start)) + "/>";
}

}  // namespace trovan::filters
