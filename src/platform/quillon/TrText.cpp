#include <quillon/TrText.h>

#include <utility>

#include <corvel/Text.h>

#include "Finite.h"

namespace quillon {
namespace {

constexpr const char* kFile = "TrText";

}  // namespace

const corvel::CTypeInfo* TrText::GetClassTypeId() {
  static const corvel::CTypeInfo record("TrText", TrBase::GetClassTypeId());
  return &record;
}

TrText::TrText(std::wstring string, const corvel::Vec2d& anchor)
    : string_(std::move(string)), anchor_(anchor) {}

const corvel::CTypeInfo* TrText::GetTypeId() const { return GetClassTypeId(); }

std::unique_ptr<TrBase> TrText::Clone() const { return std::make_unique<TrText>(*this); }

void TrText::AssertValid() const {
  if (!IsFinite(anchor_)) ThrowInvalidObject(kFile, __LINE__, "the anchor is not finite");
  if (!IsFinite(bounds_)) ThrowInvalidObject(kFile, __LINE__, "the bounds are not finite");
  if (!IsFinite(transform_)) ThrowInvalidObject(kFile, __LINE__, "the transform is not finite");
}

std::wstring TrText::Description() const {
  std::wstring text;
  corvel::FormatString(text, L"Text \"%s\"", string_.c_str());
  return text;
}

void TrText::SetString(std::wstring string) { string_ = std::move(string); }

}  // namespace quillon
