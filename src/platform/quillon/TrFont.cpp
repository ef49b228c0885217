#include <quillon/TrFont.h>

#include <utility>

#include <corvel/Text.h>

#include "Finite.h"

namespace quillon {
namespace {

constexpr const char* kFile = "TrFont";

}  // namespace

const corvel::CTypeInfo* TrFont::GetClassTypeId() {
  static const corvel::CTypeInfo record("TrFont", TrBase::GetClassTypeId());
  return &record;
}

TrFont::TrFont(std::wstring faceName) : faceName_(std::move(faceName)) {}

const corvel::CTypeInfo* TrFont::GetTypeId() const { return GetClassTypeId(); }

std::unique_ptr<TrBase> TrFont::Clone() const { return std::make_unique<TrFont>(*this); }

void TrFont::AssertValid() const {
  if (!IsFinite(size_)) ThrowInvalidObject(kFile, __LINE__, "the size of a font is not finite");
  if (!IsFinite(aspect_)) ThrowInvalidObject(kFile, __LINE__, "the aspect of a font is not finite");
}

std::wstring TrFont::Description() const {
  std::wstring text;
  corvel::FormatString(text, L"Font \"%s\", size %g", faceName_.c_str(), size_);
  return text;
}

void TrFont::SetFaceName(std::wstring name) { faceName_ = std::move(name); }

}  // namespace quillon
