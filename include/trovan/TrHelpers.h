// Drawing objects in the terms of GDI, and objects that are too small to be drawn.
//
//   LOGFONTW font;
//   TrFont2LogFont(TrFont(L"Arial"), font, true);  // lfHeight 12, lfWeight 400, ...
//   const float dashes[] = {0.1F, 0.1F};
//   MatchToGDIPenStyle(dashes, 2);                 // PS_DASH
//   NormalizeTrPolygon(polygon);                   // without its rings of one or two points
#pragma once

#include <quillon/TrFont.h>
#include <quillon/TrPolygon.h>
#include <quillon/TrPolyline.h>
#include <win32/WinTypes.h>

#include <trovan/Export.h>

namespace trovan {

// The dash patterns that have a pen style of their own: lengths of dash, gap, dash, gap, ...
TROVAN_API extern const float g_LS_Dash[2];
TROVAN_API extern const float g_LS_Dot[2];
TROVAN_API extern const float g_LS_DashDot[4];
TROVAN_API extern const float g_LS_DashDotDot[6];

// By how much a length may differ from that of a pattern.
TROVAN_API extern const float g_LS_Epsilon;

// Describes a font to GDI. With `useSize` its height is the font's size, rounded; without, it is
// 1000 units of character height, which is enough where only the proportions matter.
//
// A name of more than 31 characters is cut. A height or width that no LONG can hold becomes the
// most negative one.
TROVAN_API void TrFont2LogFont(const quillon::TrFont& font, LOGFONTW& logFont, bool useSize);

// The GDI style of a pen with these lengths of dashes and gaps: PS_DASH, PS_DOT, PS_DASHDOT or
// PS_DASHDOTDOT; PS_SOLID for every other pattern and for a null pointer.
//
// REQUIRES: `dashes` is null or points to `count` lengths.
TROVAN_API unsigned int MatchToGDIPenStyle(const float* dashes, unsigned int count);

// Makes a line of a single point drawable: it gets a second one, 2^-23 further along x and y.
// Returns whether the line can be drawn, that is whether it has points.
TROVAN_API bool NormalizeTrPolyline(quillon::TrPolyline& polyline);

// Takes out the rings that have fewer than three points. Returns whether the polygon can be drawn;
// if not, it has no counts, or no ring that could stay, and is left as it was.
//
// A polygon from which a ring is taken out loses its parameters: a new one takes its place.
TROVAN_API bool NormalizeTrPolygon(quillon::TrPolygon& polygon);

}  // namespace trovan
