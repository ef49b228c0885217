#include <quillon/TrBase.h>

#include <corvel/Exception.h>

namespace quillon {

const corvel::CTypeInfo* TrBase::GetClassTypeId() {
  static constexpr corvel::CTypeInfo kRecord("TrBase");
  return &kRecord;
}

TrBase::~TrBase() = default;

void TrBase::ThrowInvalidObject(const char* file, int line, const std::string& why) {
  throw corvel::Exception("quillon", file, line, "Invalid object: " + why, false);
}

}  // namespace quillon
