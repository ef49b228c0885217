// What is known of SRTM height tiles beside their values. See docs/formats/hgt.md.
#pragma once

#include <optional>
#include <string>

#include <corvel/Geometry.h>

namespace trovan::filters {

inline constexpr double kHgtVoid = -32768.0;

// The position in degrees (x = longitude, y = latitude) of the south-west sample by the name of the
// file, such as "N57E011.hgt" or "s05w070.SRTMGL1.hgt". Nothing when the name is none.
std::optional<corvel::Vec2d> HgtPosition(const std::wstring& path);

// The name of the tile with its south-west sample at whole degrees, such as "N57E011.hgt".
//
// REQUIRES: latitude in [-90, 90], longitude in [-180, 180].
std::string HgtName(int latitude, int longitude);

// Between neighbouring samples of a tile with `side` samples to each side, in degrees.
inline double HgtSpacing(unsigned side) { return 1.0 / (side - 1); }

}  // namespace trovan::filters
