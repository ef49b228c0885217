#include "DeliveryCounter.h"

#include <algorithm>
#include <vector>

#include <quillon/TrBrush.h>
#include <quillon/TrClipPath.h>
#include <quillon/TrFont.h>
#include <quillon/TrMarkerSet.h>
#include <quillon/TrPen.h>
#include <quillon/TrPolygon.h>
#include <quillon/TrPolyline.h>

namespace trovan::filters {
namespace {

using corvel::Vec3d;
using quillon::TrBase;

bool IsState(const TrBase& object) {
  const corvel::CTypeInfo* type = object.GetTypeId();
  return type == quillon::TrPen::GetClassTypeId() || type == quillon::TrBrush::GetClassTypeId() ||
         type == quillon::TrFont::GetClassTypeId() || type == quillon::TrClipPath::GetClassTypeId();
}

// Heights do not count: lines and areas lose them at the region.
bool SamePlaces(const std::vector<Vec3d>& a, const std::vector<Vec3d>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](const Vec3d& p, const Vec3d& q) { return p.x == q.x && p.y == q.y; });
}

std::vector<unsigned int> RingsOf(const quillon::TrPolygon& polygon) {
  if (!polygon.Counts().empty()) return polygon.Counts();
  return {static_cast<unsigned int>(polygon.Points().size())};
}

template <typename T>
bool HasSamePoints(const TrBase& a, const TrBase& b) {
  const auto* first = dynamic_cast<const T*>(&a);
  const auto* second = dynamic_cast<const T*>(&b);
  return first != nullptr && second != nullptr && SamePlaces(first->Points(), second->Points());
}

bool IsAsGoodAs(const TrBase& arrived, const TrBase& sent) {
  if (&arrived == &sent) return true;
  if (arrived.GetTypeId() != sent.GetTypeId()) return false;
  if (HasSamePoints<quillon::TrPolygon>(arrived, sent)) {
    return RingsOf(dynamic_cast<const quillon::TrPolygon&>(arrived)) ==
           RingsOf(dynamic_cast<const quillon::TrPolygon&>(sent));
  }
  return HasSamePoints<quillon::TrPolyline>(arrived, sent) ||
         HasSamePoints<quillon::TrMarkerSet>(arrived, sent);
}

}  // namespace

void DeliveryCounter::Begin(const TrBase& object) {
  sent_ = IsState(object) ? nullptr : &object;
  arrivals_ = 0;
  isWhole_ = false;
}

void DeliveryCounter::End() {
  if (sent_ == nullptr) return;
  sent_ = nullptr;
  if (arrivals_ == 0) {
    ++statistics_.dropped;
  } else if (arrivals_ == 1 && isWhole_) {
    ++statistics_.whole;
  } else {
    ++statistics_.clipped;
  }
}

void DeliveryCounter::ImportObject(TrBase& object) {
  if (sent_ != nullptr && !IsState(object)) {
    if (arrivals_ == 0) isWhole_ = IsAsGoodAs(object, *sent_);
    if (arrivals_ < 2) ++arrivals_;
  }
  manager_.ImportObject(object);
}

}  // namespace trovan::filters
