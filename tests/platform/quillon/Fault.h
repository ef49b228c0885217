// What AssertValid says of an object.
#pragma once

#include <string>

#include <quillon/TrBase.h>

namespace quillon {

// The text of its error, empty when the object is valid.
inline std::string Fault(const TrBase& object) {
  try {
    object.AssertValid();
    return {};
  } catch (const InvalidObject& error) {
    return error.what();
  }
}

}  // namespace quillon
