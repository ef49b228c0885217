// Whether packed elements came through a file as they were.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstring>
#include <vector>

#include <corvel/PrimType.h>

namespace trovan::fuzz {

// Bit for bit, but for NaNs: text keeps no more of one than its sign.
inline bool AreSameNumbers(corvel::PrimType type, const std::vector<unsigned char>& a,
                           const std::vector<unsigned char>& b) {
  if (a.size() != b.size()) return false;
  const auto size = static_cast<std::size_t>(corvel::CPrimType(type).Size());
  for (std::size_t at = 0; at < a.size(); at += size) {
    const bool areNaNs = std::isnan(corvel::CPrimData::GetWideReal(type, &a[at])) &&
                         std::isnan(corvel::CPrimData::GetWideReal(type, &b[at]));
    if (!areNaNs && std::memcmp(&a[at], &b[at], size) != 0) return false;
  }
  return true;
}

}  // namespace trovan::fuzz
