// What the tests of TextCodec share.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include <kerno/CodePageInfo.h>
#include <kerno/TextCodec.h>

namespace kerno {

inline std::vector<int> ListedPages() {
  const CodePageInfo list(CodePageInfo::kByNumber);
  std::vector<int> pages;
  for (std::size_t i = 0; i < list.Count(); ++i) {
    pages.push_back(static_cast<int>(list.GetPageNumberByIndex(i)));
  }
  return pages;
}

// The listed pages that can be converted, and the coding of symbol fonts.
inline std::vector<int> ConvertiblePages() {
  std::vector<int> pages = {42};
  for (const int page : ListedPages()) {
    if (TextCodec::IsConvertible(page)) pages.push_back(page);
  }
  return pages;
}

inline std::string Byte(int value) { return std::string(1, static_cast<char>(value)); }

inline std::string AsUtf8(TextCodec& codec, std::string_view bytes,
                          std::size_t* malformed = nullptr) {
  std::string utf8;
  const std::size_t count = codec.AppendUtf8(bytes, utf8);
  if (malformed != nullptr) *malformed = count;
  return utf8;
}

}  // namespace kerno
