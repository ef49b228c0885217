#include <trovan/TrHelpers.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <utility>

#include <corvel/Truncate.h>

namespace trovan {

using corvel::Vec3d;
using quillon::TrFont;
using quillon::TrPolygon;
using quillon::TrPolyline;

const float g_LS_Dash[2] = {0.1F, 0.1F};
const float g_LS_Dot[2] = {0.03F, 0.03F};
const float g_LS_DashDot[4] = {0.2F, 0.2F, 0.03F, 0.2F};
const float g_LS_DashDotDot[6] = {0.35F, 0.2F, 0.05F, 0.2F, 0.05F, 0.2F};
const float g_LS_Epsilon = 0.001F;

namespace {

constexpr LONG kHeightForProportions = -1000;
constexpr unsigned int kFewestPointsOfARing = 3;

// Half away from zero. Deliberate: adding a half and truncating is not std::round, since the sum
// may round up (0.49999999999999994 gives 1).
LONG RoundedHalfAway(double value) {
  return corvel::TruncateToInt32(value < 0.0 ? value - 0.5 : value + 0.5);
}

BYTE CharSetOf(std::uint16_t flags) {
  switch (flags & TrFont::kCharSetMask) {
    case TrFont::kCharSetDefault:
      return DEFAULT_CHARSET;
    case TrFont::kCharSetSymbol:
      return SYMBOL_CHARSET;
    case TrFont::kCharSetShiftJis:
      return SHIFTJIS_CHARSET;
    case TrFont::kCharSetOem:
      return OEM_CHARSET;
    default:
      return ANSI_CHARSET;
  }
}

// A pitch or a family that GDI does not know counts as none.
BYTE PitchAndFamilyOf(std::uint16_t word) {
  const unsigned pitch = word & TrFont::kPitchMask;
  const unsigned family = word & TrFont::kFamilyMask;
  const unsigned knownPitch = pitch <= TrFont::kPitchVariable ? pitch : DEFAULT_PITCH;
  const unsigned knownFamily = family <= FF_DECORATIVE ? family : FF_DONTCARE;
  return static_cast<BYTE>(knownPitch | knownFamily);
}

BYTE Bit(std::uint16_t flags, TrFont::Flag flag) {
  return static_cast<BYTE>((flags & flag) != 0 ? 1 : 0);
}

template <std::size_t kCount>
bool Matches(const float* dashes, const float (&pattern)[kCount]) {
  return std::equal(dashes, dashes + kCount, pattern, [](float length, float expected) {
    return std::fabs(length - expected) <= g_LS_Epsilon;  // false for NaN
  });
}

bool IsSmall(unsigned int count) { return count < kFewestPointsOfARing; }

// The rings of at least three points. A count that exceeds the points is cut to what there is.
TrPolygon LargeRings(const TrPolygon& polygon) {
  TrPolygon kept;
  const auto& points = polygon.Points();
  std::size_t start = 0;
  for (const unsigned int count : polygon.Counts()) {
    const std::size_t size = std::min<std::size_t>(count, points.size() - start);
    const auto first = points.begin() + static_cast<std::ptrdiff_t>(start);
    start += size;
    if (IsSmall(count) || size == 0) continue;
    kept.Points().insert(kept.Points().end(), first, first + static_cast<std::ptrdiff_t>(size));
    kept.Counts().push_back(static_cast<unsigned int>(size));
  }
  return kept;
}

}  // namespace

void TrFont2LogFont(const TrFont& font, LOGFONTW& logFont, bool useSize) {
  const std::uint16_t flags = font.Flags();
  logFont = {};
  logFont.lfHeight = useSize ? RoundedHalfAway(font.Size()) : kHeightForProportions;
  if (font.Aspect() != 0.0) logFont.lfWidth = RoundedHalfAway(logFont.lfHeight / font.Aspect());
  logFont.lfWeight = (flags & TrFont::kWeightMask) * 100;
  logFont.lfItalic = Bit(flags, TrFont::kItalic);
  logFont.lfUnderline = Bit(flags, TrFont::kUnderline);
  logFont.lfStrikeOut = Bit(flags, TrFont::kStrikeOut);
  logFont.lfCharSet = CharSetOf(flags);
  logFont.lfOutPrecision = OUT_TT_ONLY_PRECIS;
  logFont.lfClipPrecision = CLIP_DEFAULT_PRECIS;
  logFont.lfQuality = DEFAULT_QUALITY;
  logFont.lfPitchAndFamily = PitchAndFamilyOf(font.GetPitchAndFamily());
  // The last character stays NUL.
  font.FaceName().copy(logFont.lfFaceName, std::size(logFont.lfFaceName) - 1);
}

unsigned int MatchToGDIPenStyle(const float* dashes, unsigned int count) {
  if (dashes == nullptr) return PS_SOLID;
  switch (count) {
    case std::size(g_LS_Dash):
      if (Matches(dashes, g_LS_Dash)) return PS_DASH;
      return Matches(dashes, g_LS_Dot) ? PS_DOT : PS_SOLID;
    case std::size(g_LS_DashDot):
      return Matches(dashes, g_LS_DashDot) ? PS_DASHDOT : PS_SOLID;
    case std::size(g_LS_DashDotDot):
      return Matches(dashes, g_LS_DashDotDot) ? PS_DASHDOTDOT : PS_SOLID;
    default:
      return PS_SOLID;
  }
}

bool NormalizeTrPolyline(TrPolyline& polyline) {
  auto& points = polyline.Points();
  if (points.size() != 1) return !points.empty();
  constexpr double kStep = 0x1p-23;
  const Vec3d only = points.front();
  points.emplace_back(only.x + kStep, only.y + kStep, only.z);
  return true;
}

bool NormalizeTrPolygon(TrPolygon& polygon) {
  const auto& counts = polygon.Counts();
  if (polygon.Points().empty() || counts.empty()) return false;
  if (std::none_of(counts.begin(), counts.end(), IsSmall)) return true;
  TrPolygon kept = LargeRings(polygon);
  if (kept.Points().empty() || kept.Counts().empty()) return false;
  polygon = std::move(kept);
  return true;
}

}  // namespace trovan
