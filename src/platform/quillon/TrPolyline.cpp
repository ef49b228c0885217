#include <quillon/TrPolyline.h>

#include <utility>

#include <corvel/Text.h>

#include "Finite.h"

namespace quillon {
namespace {

constexpr const char* kFile = "TrPolyline";

}  // namespace

const corvel::CTypeInfo* TrPolyline::GetClassTypeId() {
  static const corvel::CTypeInfo record("TrPolyline", TrBase::GetClassTypeId());
  return &record;
}

TrPolyline::TrPolyline(std::vector<corvel::Vec3d> points) : points_(std::move(points)) {}

const corvel::CTypeInfo* TrPolyline::GetTypeId() const { return GetClassTypeId(); }

std::unique_ptr<TrBase> TrPolyline::Clone() const { return std::make_unique<TrPolyline>(*this); }

void TrPolyline::AssertValid() const {
  const std::string fault = FaultOf(points_);
  if (!fault.empty()) ThrowInvalidObject(kFile, __LINE__, fault);
}

std::wstring TrPolyline::Description() const {
  std::wstring text;
  corvel::FormatString(text, L"Polyline, %zu points", points_.size());
  return text;
}

}  // namespace quillon
