// Stands between a filter and the application's manager, and tells what arrives there of each
// object that the filter sends.
#pragma once

#include <quillon/IoManager.h>
#include <quillon/TrBase.h>

#include "filters/drawing/ClipStatistics.h"

namespace trovan::filters {

class DeliveryCounter : public quillon::IoManager {
 public:
  // `manager` is borrowed and must outlive the counter.
  explicit DeliveryCounter(quillon::IoManager& manager) : manager_(manager) {}

  // What arrives from now on, up to the next Begin or End, was made of `object`, which stays alive
  // and as it is until then.
  void Begin(const quillon::TrBase& object);

  // Counts the object by what has arrived of it. It is whole when it has come itself, or when the
  // only thing that has come is of the same class and has the same points.
  void End();

  // Passes the object on to the manager.
  void ImportObject(quillon::TrBase& object) override;

  const ClipStatistics& Statistics() const { return statistics_; }

 private:
  quillon::IoManager& manager_;
  const quillon::TrBase* sent_ = nullptr;  // null: nothing that counts
  unsigned arrivals_ = 0;                  // 2 stands for all above
  bool isWhole_ = false;                   // the first arrival was the object, or is as good as it
  ClipStatistics statistics_;
};

}  // namespace trovan::filters
