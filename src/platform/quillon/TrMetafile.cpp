#include <quillon/TrMetafile.h>

#include <utility>

#include <corvel/Text.h>

#include "Finite.h"

namespace quillon {
namespace {

constexpr const char* kFile = "TrMetafile";

}  // namespace

const corvel::CTypeInfo* TrMetafile::GetClassTypeId() {
  static const corvel::CTypeInfo record("TrMetafile", TrBase::GetClassTypeId());
  return &record;
}

TrMetafile::TrMetafile(std::vector<unsigned char> bytes, const corvel::Box2d& box)
    : bytes_(std::move(bytes)), box_(box) {}

const corvel::CTypeInfo* TrMetafile::GetTypeId() const { return GetClassTypeId(); }

std::unique_ptr<TrBase> TrMetafile::Clone() const { return std::make_unique<TrMetafile>(*this); }

void TrMetafile::AssertValid() const {
  if (!IsFinite(box_)) ThrowInvalidObject(kFile, __LINE__, "the box is not finite");
}

std::wstring TrMetafile::Description() const {
  std::wstring text;
  corvel::FormatString(text, L"Metafile, %zu bytes", bytes_.size());
  return text;
}

}  // namespace quillon
