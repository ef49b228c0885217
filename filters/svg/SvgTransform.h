// Lists of transforms, as the attribute "transform" has them.
//
//   ParseTransform("translate(10) scale(2)");  // (1, 1) goes to (12, 2)
#pragma once

#include <optional>
#include <string_view>

#include <corvel/Matrix.h>

namespace trovan::filters {

// The map that applies the last transform of the list first, as SVG has it; the identity for an
// empty list. Nothing when the text is no list of transforms, or the map is not finite.
std::optional<corvel::Mat3d> ParseTransform(std::string_view text);

// By which factor the map makes areas larger; 0 for a map onto a line or a point. Negative when it
// mirrors.
double Determinant(const corvel::Mat3d& map);

// The mean factor by which lengths change: the root of that of areas.
double MeanScale(const corvel::Mat3d& map);

// Of a map without a factor for areas of 0.
corvel::Mat3d Inverted(const corvel::Mat3d& map);

bool IsFinite(const corvel::Mat3d& map);

corvel::Vec2d Mapped(const corvel::Vec2d& point, const corvel::Mat3d& map);

}  // namespace trovan::filters
