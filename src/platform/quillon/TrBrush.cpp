#include <quillon/TrBrush.h>

namespace quillon {

const corvel::CTypeInfo* TrBrush::GetClassTypeId() {
  static const corvel::CTypeInfo record("TrBrush", TrBase::GetClassTypeId());
  return &record;
}

const corvel::CTypeInfo* TrBrush::GetTypeId() const { return GetClassTypeId(); }

std::unique_ptr<TrBase> TrBrush::Clone() const { return std::make_unique<TrBrush>(*this); }

void TrBrush::AssertValid() const {}

std::wstring TrBrush::Description() const {
  return Fills() ? L"Brush" : L"Brush that fills nothing";
}

}  // namespace quillon
