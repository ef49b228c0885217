#include <trovan/InvalidNodes.h>

#include <cmath>
#include <cstdint>
#include <limits>

#include <corvel/Text.h>

#include "ArrayKernels.h"
#include "PlainLoops.h"
#include "Truncate.h"

namespace trovan {
namespace {

// A float is above a double exactly when it is above the largest float that is not. So a bound that
// is moved to that float lets whole vectors of floats be compared without widening them.
float LargestFloatNotAbove(double bound) {
  const float nearest = lattice::NearestFloat(bound);
  constexpr float kDown = -std::numeric_limits<float>::infinity();
  return static_cast<double>(nearest) > bound ? std::nextafter(nearest, kDown) : nearest;
}

float SmallestFloatNotBelow(double bound) { return -LargestFloatNotAbove(-bound); }

// For integer types.
template <typename T>
bool ReplaceIntegersOutside(void* data, std::size_t n, double replacement,
                            const lattice::Outside<double>& outside) {
  return lattice::ReplaceEach(static_cast<unsigned char*>(data), n,
                              lattice::FromDouble<T>(replacement),
                              [&outside](T value) { return outside(value); });
}

}  // namespace

bool FilterInvalidNodes(void* data, corvel::PrimType type, std::size_t n, double replacement) {
  switch (type) {
    case corvel::kDouble:
      return lattice::ReplaceNotFinite<double>(data, n, replacement);
    case corvel::kFloat:
      return lattice::ReplaceNotFinite<float>(data, n, lattice::NearestFloat(replacement));
    default:
      return false;
  }
}

bool FilterOutOfRangeNodes(void* data, corvel::PrimType type, std::size_t n, double replacement,
                           double minValue, double maxValue) {
  const lattice::Outside<double> outside{minValue, maxValue};
  switch (type) {
    case corvel::kDouble:
      return lattice::ReplaceOutside<double>(data, n, replacement, minValue, maxValue);
    case corvel::kFloat:
      return lattice::ReplaceOutside<float>(data, n, lattice::NearestFloat(replacement),
                                            SmallestFloatNotBelow(minValue),
                                            LargestFloatNotAbove(maxValue));
    case corvel::kInt16:
      return ReplaceIntegersOutside<std::int16_t>(data, n, replacement, outside);
    case corvel::kUInt16:
      return ReplaceIntegersOutside<std::uint16_t>(data, n, replacement, outside);
    case corvel::kInt32:
      return ReplaceIntegersOutside<std::int32_t>(data, n, replacement, outside);
    case corvel::kUInt32:
      return ReplaceIntegersOutside<std::uint32_t>(data, n, replacement, outside);
    default:
      return false;
  }
}

InvalidNodesReplacer::InvalidNodesReplacer(const std::wstring& fileName, corvel::PrimType type,
                                           double replacement, std::size_t nodeCount)
    : fileName_(fileName), type_(type), replacement_(replacement), nodeCount_(nodeCount) {}

std::wstring InvalidNodesReplacer::PromptText() const {
  std::wstring text;
  corvel::FormatString(text,
                       L"%s:  One or more data nodes contain invalid floating-point data.  Do you "
                       L"want to replace these nodes with %14G and continue importing?",
                       fileName_.c_str(), replacement_);
  return text;
}

bool InvalidNodesReplacer::ReplaceInvalidNodes(void* data, std::size_t n) {
  const bool replaced = FilterInvalidNodes(data, type_, n != 0 ? n : nodeCount_, replacement_);
  if (!replaced || reported_) return true;
  reported_ = true;
  return false;
}

}  // namespace trovan
