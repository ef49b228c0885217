#include <quillon/TrEllipse.h>

#include <corvel/Text.h>

#include "Finite.h"

namespace quillon {
namespace {

constexpr const char* kFile = "TrEllipse";

}  // namespace

const corvel::CTypeInfo* TrEllipse::GetClassTypeId() {
  static const corvel::CTypeInfo record("TrEllipse", TrBase::GetClassTypeId());
  return &record;
}

const corvel::CTypeInfo* TrEllipse::GetTypeId() const { return GetClassTypeId(); }

std::unique_ptr<TrBase> TrEllipse::Clone() const { return std::make_unique<TrEllipse>(*this); }

void TrEllipse::AssertValid() const {
  if (!IsFinite(box_)) ThrowInvalidObject(kFile, __LINE__, "the box is not finite");
  if (!IsFinite(angle_)) ThrowInvalidObject(kFile, __LINE__, "the angle is not finite");
}

std::wstring TrEllipse::Description() const {
  std::wstring text;
  corvel::FormatString(text, L"Ellipse, %g by %g", box_.Width(), box_.Height());
  return text;
}

}  // namespace quillon
