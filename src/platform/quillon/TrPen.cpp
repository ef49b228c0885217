#include <quillon/TrPen.h>

#include <corvel/Text.h>

#include "Finite.h"

namespace quillon {
namespace {

constexpr const char* kFile = "TrPen";

}  // namespace

const corvel::CTypeInfo* TrPen::GetClassTypeId() {
  static const corvel::CTypeInfo record("TrPen", TrBase::GetClassTypeId());
  return &record;
}

const corvel::CTypeInfo* TrPen::GetTypeId() const { return GetClassTypeId(); }

std::unique_ptr<TrBase> TrPen::Clone() const { return std::make_unique<TrPen>(*this); }

void TrPen::AssertValid() const {
  if (!IsFinite(width_)) ThrowInvalidObject(kFile, __LINE__, "the width of a pen is not finite");
}

std::wstring TrPen::Description() const {
  if (!Draws()) return L"Pen that draws nothing";
  std::wstring text;
  corvel::FormatString(text, L"Pen, width %g", width_);
  return text;
}

}  // namespace quillon
