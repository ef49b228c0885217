// A filter whose drawing can be clipped to a region, and that counts what becomes of its objects.
//
//   class TriangleFilter : public DrawingFilter { ... Send(pen); Send(brush); Send(triangle); };
//
//   TriangleFilter filter(manager);
//   filter.SetRegion(region);
//   filter.ImportFromFile(path, false);
//   filter.Statistics().clipped;
#pragma once

#include <string>
#include <utility>

#include <corvel/Progress.h>
#include <quillon/IoManager.h>
#include <quillon/TrBase.h>
#include <tarnis/Polygon2.h>

#include <trovan/IoClippedImportFilter.h>

#include "filters/drawing/ClipStatistics.h"
#include "filters/drawing/DeliveryCounter.h"
#include "filters/support/Problems.h"

namespace trovan::filters {

// The counter must be there before the filter that delivers to it is made.
class CountedDelivery {
 protected:
  explicit CountedDelivery(quillon::IoManager& manager) : counter_(manager) {}

  DeliveryCounter counter_;
};

class DrawingFilter : private CountedDelivery, public IoClippedImportFilter {
 public:
  // Everything that is imported from now on is clipped to the region, in the units of the drawing.
  // A region without points ends the clipping; one that has points but no area leaves nothing of
  // what has an area or a length.
  void SetRegion(const tarnis::Polygon2& region);

  // Where long work reports its progress from now on; null: nowhere. It is borrowed. When it says
  // to stop, the import raises quillon::AbortError.
  void SetProgress(corvel::IProgress* progress) { progress_ = progress; }

  // What has become of the objects so far.
  const ClipStatistics& Statistics() const { return counter_.Statistics(); }

  // In words, so far: what is lost of the drawing, and what is odd or only nearly as it was.
  const Problems& Losses() const { return losses_; }
  const Problems& Remarks() const { return remarks_; }

 protected:
  // `manager` is borrowed and must outlive the filter.
  explicit DrawingFilter(quillon::IoManager& manager);

  // Hands on an object of the drawing, clipped; every object of a concrete filter goes through
  // here. It counts unless it is a pen, brush, font or clip path.
  void Send(quillon::TrBase& object);

  // What SetRegion was given last.
  const tarnis::Polygon2& Region() const { return region_; }

  void NoteLoss(std::string message) { losses_.Add(std::move(message)); }
  void Remark(std::string message) { remarks_.Add(std::move(message)); }

  // For helpers that note losses themselves.
  Problems& LossList() { return losses_; }

  // `fraction` of the work is done. Raises quillon::AbortError when the user wants to stop.
  void ReportProgress(double fraction);

 private:
  tarnis::Polygon2 region_;
  corvel::IProgress* progress_ = nullptr;
  Problems losses_;
  Problems remarks_;
};

}  // namespace trovan::filters
