#include <quillon/TrClipPath.h>

#include <utility>

#include <corvel/Text.h>

#include "Finite.h"

namespace quillon {
namespace {

constexpr const char* kFile = "TrClipPath";

}  // namespace

const corvel::CTypeInfo* TrClipPath::GetClassTypeId() {
  static const corvel::CTypeInfo record("TrClipPath", TrBase::GetClassTypeId());
  return &record;
}

TrClipPath::TrClipPath(std::vector<corvel::Vec3d> points, std::vector<unsigned int> counts)
    : points_(std::move(points)), counts_(std::move(counts)) {}

const corvel::CTypeInfo* TrClipPath::GetTypeId() const { return GetClassTypeId(); }

std::unique_ptr<TrBase> TrClipPath::Clone() const { return std::make_unique<TrClipPath>(*this); }

void TrClipPath::AssertValid() const {
  std::string fault = FaultOf(points_);
  if (fault.empty()) fault = FaultOf(counts_, points_.size());
  if (!fault.empty()) ThrowInvalidObject(kFile, __LINE__, fault);
}

std::wstring TrClipPath::Description() const {
  std::wstring text;
  corvel::FormatString(text, L"Clip path, %zu points", points_.size());
  return text;
}

}  // namespace quillon
