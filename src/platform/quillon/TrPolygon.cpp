#include <quillon/TrPolygon.h>

#include <utility>

#include <corvel/Text.h>

#include "Finite.h"

namespace quillon {
namespace {

constexpr const char* kFile = "TrPolygon";

}  // namespace

const corvel::CTypeInfo* TrPolygon::GetClassTypeId() {
  static const corvel::CTypeInfo record("TrPolygon", TrBase::GetClassTypeId());
  return &record;
}

TrPolygon::TrPolygon(std::vector<corvel::Vec3d> points, std::vector<unsigned int> counts)
    : points_(std::move(points)), counts_(std::move(counts)) {}

const corvel::CTypeInfo* TrPolygon::GetTypeId() const { return GetClassTypeId(); }

std::unique_ptr<TrBase> TrPolygon::Clone() const { return std::make_unique<TrPolygon>(*this); }

void TrPolygon::AssertValid() const {
  std::string fault = FaultOf(points_);
  if (fault.empty()) fault = FaultOf(counts_, points_.size());
  if (!fault.empty()) ThrowInvalidObject(kFile, __LINE__, fault);
}

std::wstring TrPolygon::Description() const {
  std::wstring text;
  corvel::FormatString(text, L"Polygon, %zu points", points_.size());
  return text;
}

}  // namespace quillon
