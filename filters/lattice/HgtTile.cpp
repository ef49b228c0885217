#include "filters/lattice/HgtTile.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include <corvel/Path.h>

namespace trovan::filters {
namespace {

constexpr int kMostLatitude = 90;
constexpr int kMostLongitude = 180;

// The number that `digits` spells; nothing when one of them is no digit.
std::optional<int> Digits(std::wstring_view digits) {
  int number = 0;
  for (const wchar_t c : digits) {
    if (c < L'0' || c > L'9') return std::nullopt;
    number = number * 10 + static_cast<int>(c - L'0');
  }
  return number;
}

// A letter for the direction and digits for the degrees.
std::optional<double> Degrees(std::wstring_view text, wchar_t plus, wchar_t minus, int most) {
  const auto number = Digits(text.substr(1));
  if ((text[0] != plus && text[0] != minus) || !number || *number > most) return std::nullopt;
  return text[0] == plus ? *number : -*number;
}

}  // namespace

std::optional<corvel::Vec2d> HgtPosition(const std::wstring& path) {
  constexpr std::size_t kLength = 7;  // as N57E011
#ifdef _WIN32
  constexpr const wchar_t* kSeparators = L"/\\:";
#else
  constexpr const wchar_t* kSeparators = L"/";
#endif
  const std::size_t separator = path.find_last_of(kSeparators);
  const std::wstring name =
      corvel::ToLower(separator == std::wstring::npos ? path : path.substr(separator + 1));
  if (name.size() < kLength || (name.size() > kLength && name[kLength] != L'.')) {
    return std::nullopt;
  }
  const std::wstring_view text(name);
  const auto latitude = Degrees(text.substr(0, 3), L'n', L's', kMostLatitude);
  const auto longitude = Degrees(text.substr(3, 4), L'e', L'w', kMostLongitude);
  if (!latitude || !longitude) return std::nullopt;
  return corvel::Vec2d(*longitude, *latitude);
}

std::string HgtName(int latitude, int longitude) {
  char name[32];
  std::snprintf(&name[0], sizeof name, "%c%02d%c%03d.hgt", latitude < 0 ? 'S' : 'N',
                std::abs(latitude), longitude < 0 ? 'W' : 'E', std::abs(longitude));
  return &name[0];
}

}  // namespace trovan::filters
