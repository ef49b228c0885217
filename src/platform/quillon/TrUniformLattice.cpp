#include <quillon/TrUniformLattice.h>

#include <cmath>

#include <corvel/Text.h>

namespace quillon {

const corvel::CTypeInfo* TrUniformLattice::GetClassTypeId() {
  static const corvel::CTypeInfo record("TrUniformLattice", TrBase::GetClassTypeId());
  return &record;
}

const corvel::CTypeInfo* TrUniformLattice::GetTypeId() const { return GetClassTypeId(); }

std::unique_ptr<TrBase> TrUniformLattice::Clone() const {
  return std::make_unique<TrUniformLattice>(*this);
}

void TrUniformLattice::AssertValid() const {
  if (columns_ == 0 || rows_ == 0 || planes_ == 0) {
    ThrowInvalidObject("TrUniformLattice", __LINE__, "a lattice without nodes");
  }
  for (const double value : {xMin_, yMin_, xSpacing_, ySpacing_, zSpacing_}) {
    if (!std::isfinite(value)) {
      ThrowInvalidObject("TrUniformLattice", __LINE__, "an origin or a spacing is not finite");
    }
  }
}

std::wstring TrUniformLattice::Description() const {
  std::wstring text;
  corvel::FormatString(text, L"Uniform lattice, %u x %u x %u nodes", columns_, rows_, planes_);
  return text;
}

}  // namespace quillon
