// The numbers and names of the Windows code pages, as constants.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace kerno {

struct CodePageRow {
  int number;
  std::wstring_view displayName;  // English, as Microsoft spells it; not unique
};

inline constexpr std::size_t kCodePageCount = 140;

// Ascending by number.
extern const std::array<CodePageRow, kCodePageCount> kCodePages;

// Positions in kCodePages, ascending by display name, letter by letter as wchar_t values; pages of
// one name ascending by number.
extern const std::array<unsigned char, kCodePageCount> kCodePagesByName;

}  // namespace kerno
