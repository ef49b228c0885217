#include <quillon/TrRectangle.h>

#include <corvel/Text.h>

#include "Finite.h"

namespace quillon {
namespace {

constexpr const char* kFile = "TrRectangle";

}  // namespace

const corvel::CTypeInfo* TrRectangle::GetClassTypeId() {
  static const corvel::CTypeInfo record("TrRectangle", TrBase::GetClassTypeId());
  return &record;
}

const corvel::CTypeInfo* TrRectangle::GetTypeId() const { return GetClassTypeId(); }

std::unique_ptr<TrBase> TrRectangle::Clone() const { return std::make_unique<TrRectangle>(*this); }

void TrRectangle::AssertValid() const {
  if (!IsFinite(box_)) ThrowInvalidObject(kFile, __LINE__, "the box is not finite");
  if (!IsFinite(xRadius_) || !IsFinite(yRadius_)) {
    ThrowInvalidObject(kFile, __LINE__, "a radius of the corners is not finite");
  }
}

std::wstring TrRectangle::Description() const {
  std::wstring text;
  corvel::FormatString(text, L"Rectangle, %g by %g", box_.Width(), box_.Height());
  return text;
}

}  // namespace quillon
