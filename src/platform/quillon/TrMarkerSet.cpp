#include <quillon/TrMarkerSet.h>

#include <utility>

#include <corvel/Text.h>

#include "Finite.h"

namespace quillon {
namespace {

constexpr const char* kFile = "TrMarkerSet";

}  // namespace

const corvel::CTypeInfo* TrMarkerSet::GetClassTypeId() {
  static const corvel::CTypeInfo record("TrMarkerSet", TrBase::GetClassTypeId());
  return &record;
}

TrMarkerSet::TrMarkerSet(std::vector<corvel::Vec3d> points) : points_(std::move(points)) {}

const corvel::CTypeInfo* TrMarkerSet::GetTypeId() const { return GetClassTypeId(); }

std::unique_ptr<TrBase> TrMarkerSet::Clone() const { return std::make_unique<TrMarkerSet>(*this); }

void TrMarkerSet::AssertValid() const {
  const std::string fault = FaultOf(points_);
  if (!fault.empty()) ThrowInvalidObject(kFile, __LINE__, fault);
}

std::wstring TrMarkerSet::Description() const {
  std::wstring text;
  corvel::FormatString(text, L"Marker set, %zu points", points_.size());
  return text;
}

}  // namespace quillon
