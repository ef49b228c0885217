#include <corvel/PrimType.h>

#include <cmath>
#include <concepts>
#include <cstdint>
#include <cstring>
#include <limits>

namespace corvel {
namespace {

static_assert(sizeof(float) == 4 && std::numeric_limits<float>::is_iec559);
static_assert(sizeof(double) == 8 && std::numeric_limits<double>::is_iec559);

template <typename T>
struct Element {
  using Type = T;
};

// Calls `use` with the Element of the C++ type, and gives its result, or `otherwise` where the type
// is no element type.
template <typename Result, typename Use>
Result WithElement(PrimType type, Result otherwise, Use use) {
  switch (type) {
    case kInt8:
      return use(Element<std::int8_t>());
    case kUInt8:
      return use(Element<std::uint8_t>());
    case kInt16:
      return use(Element<std::int16_t>());
    case kUInt16:
      return use(Element<std::uint16_t>());
    case kInt32:
      return use(Element<std::int32_t>());
    case kUInt32:
      return use(Element<std::uint32_t>());
    case kInt64:
      return use(Element<std::int64_t>());
    case kFloat:
      return use(Element<float>());
    case kDouble:
      return use(Element<double>());
  }
  return otherwise;
}

template <typename T>
T Load(const void* element) {
  T value;
  std::memcpy(&value, element, sizeof value);
  return value;
}

long long Truncated(std::integral auto value) { return value; }

long long Truncated(double value) {
  constexpr double kTwoTo63 = 9223372036854775808.0;
  const bool fits = value >= -kTwoTo63 && value < kTwoTo63;  // false for NaN
  return fits ? static_cast<long long>(value) : std::numeric_limits<long long>::min();
}

}  // namespace

int CPrimType::Size() const {
  return WithElement(type_, 0, []<typename T>(Element<T>) { return static_cast<int>(sizeof(T)); });
}

double CPrimData::GetWideReal(CPrimType type, const void* element) {
  return WithElement(type.Type(), 0.0, [element]<typename T>(Element<T>) {
    return static_cast<double>(Load<T>(element));
  });
}

long long CPrimData::GetWideInt(CPrimType type, const void* element) {
  return WithElement(type.Type(), 0LL,
                     [element]<typename T>(Element<T>) { return Truncated(Load<T>(element)); });
}

}  // namespace corvel
