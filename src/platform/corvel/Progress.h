// Progress of long work, and the user's wish to stop it.
#pragma once

#include <corvel/Export.h>

namespace corvel {

// Implemented by who waits; called by who works, on the thread that works.
class CORVEL_API IProgress {
 public:
  virtual ~IProgress() = default;

  // `fraction` of the work is done: 0 to 1, never falling. False means: stop as soon as you can.
  // The work then ends as incomplete, and Update is called no more.
  virtual bool Update(double fraction) = 0;
};

// Reports to who waits, if anyone does. Returns whether to go on: always, when `progress` is null.
inline bool UpdateProgress(IProgress* progress, double fraction) {
  return progress == nullptr || progress->Update(fraction);
}

}  // namespace corvel
