#include "DrawingFilter.h"

#include <utility>
#include <vector>

#include <quillon/TrClipPath.h>

namespace trovan::filters {

DrawingFilter::DrawingFilter(quillon::IoManager& manager)
    : CountedDelivery(manager), IoClippedImportFilter(counter_) {}

void DrawingFilter::SetRegion(const tarnis::Polygon2& region) {
  std::vector<corvel::Vec3d> points;
  points.reserve(region.Points().size());
  for (const corvel::Vec2d& point : region.Points()) points.emplace_back(point, 0.0);
  quillon::TrClipPath path(std::move(points), region.Counts());
  ImportObject(path);
  region_ = region;
}

void DrawingFilter::Send(quillon::TrBase& object) {
  counter_.Begin(object);
  ImportObject(object);
  counter_.End();
}

void DrawingFilter::ReportProgress(double fraction) {
  if (!corvel::UpdateProgress(progress_, fraction)) Throw_ABORT("DrawingFilter", __LINE__);
}

}  // namespace trovan::filters
