// The application's side of an import: it receives what a filter reads, object by object.
//
//   class Drawing : public IoManager {
//     void ImportObject(TrBase& object) override { objects_.push_back(object.Clone()); }
//     ...
#pragma once

#include <quillon/Export.h>
#include <quillon/TrBase.h>

namespace quillon {

class QUILLON_API IoManager {
 public:
  IoManager() = default;
  IoManager(const IoManager&) = delete;
  IoManager& operator=(const IoManager&) = delete;
  virtual ~IoManager();

  // Takes the next object of the drawing. It is valid during the call only: what is to stay is
  // cloned.
  virtual void ImportObject(TrBase& object) = 0;
};

}  // namespace quillon
