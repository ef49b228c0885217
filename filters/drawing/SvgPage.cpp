#include "SvgPage.h"

#include <algorithm>
#include <cmath>

#include "filters/support/FilterError.h"
#include "filters/support/NumberText.h"

namespace trovan::filters {
namespace {

constexpr double kLongerSide = 1000.0;  // user units
constexpr double kMargin = 10.0;        // on each side, so that what lies on the edge can be seen
constexpr int kDecimals = 3;
constexpr double kFarthest = 1e300;  // far beyond any map; sums and differences do not overflow

// Not true of NaN either.
bool IsWithinReach(const corvel::Box2d& extent) {
  const auto isNear = [](double value) { return std::fabs(value) <= kFarthest; };
  return isNear(extent.min.x) && isNear(extent.min.y) && isNear(extent.max.x) &&
         isNear(extent.max.y);
}

}  // namespace

SvgPage MapPage(const corvel::Box2d& extent) {
  SvgPage page;
  page.decimals = kDecimals;
  if (extent.IsEmpty()) return page;
  if (!IsWithinReach(extent)) {
    throw FilterError("what lies in the region reaches beyond 1e300, too far for a page");
  }
  const double larger = std::max(extent.Width(), extent.Height());
  // A place without extent, and differences so small that dividing by them overflows, get a page
  // on which they are a point.
  page.scale = larger / (kLongerSide - 2 * kMargin);
  if (!std::isnormal(page.scale)) page.scale = 1.0;
  // Whole units, but for errors of rounding.
  const auto side = [&](double length) {
    return std::ceil(length / page.scale - 1e-6) + 2 * kMargin;
  };
  const corvel::Vec2d size(side(extent.Width()), side(extent.Height()));
  page.viewBox = corvel::Box2d(0, 0, size.x, size.y);
  page.width = ShortestText(size.x);
  page.height = ShortestText(size.y);
  page.origin = {extent.min.x - kMargin * page.scale, extent.max.y + kMargin * page.scale};
  return page;
}

}  // namespace trovan::filters
