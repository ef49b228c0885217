#include <quillon/TrBase.h>

namespace quillon {

const corvel::CTypeInfo* TrBase::GetClassTypeId() {
  static constexpr corvel::CTypeInfo kRecord("TrBase");
  return &kRecord;
}

InvalidObject::~InvalidObject() = default;
TrBase::~TrBase() = default;

void TrBase::ThrowInvalidObject(const char* file, int line, const std::string& why) {
  throw InvalidObject("Invalid object: " + why + " (" + file + ", line " + std::to_string(line) +
                      ")");
}

}  // namespace quillon
