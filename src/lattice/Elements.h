// The elements of packed arrays as C++ values: reading and writing them at any alignment, and
// calling a template with the element type that a number stands for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include <corvel/PrimType.h>

namespace trovan::lattice {

template <typename T>
T Load(const void* element) {
  T value;
  std::memcpy(&value, element, sizeof value);
  return value;
}

template <typename T>
void Store(void* element, T value) {
  std::memcpy(element, &value, sizeof value);
}

// Stands for the type T where only a value can be passed.
template <typename T>
struct Element {
  using Type = T;
};

// The result of `use` for the Element of the type; `otherwise` where the type is no element type.
template <typename Result, typename Use>
Result WithElementType(corvel::CPrimType type, Result otherwise, Use use) {
  switch (type.Type()) {
    case corvel::kInt8:
      return use(Element<std::int8_t>());
    case corvel::kUInt8:
      return use(Element<std::uint8_t>());
    case corvel::kInt16:
      return use(Element<std::int16_t>());
    case corvel::kUInt16:
      return use(Element<std::uint16_t>());
    case corvel::kInt32:
      return use(Element<std::int32_t>());
    case corvel::kUInt32:
      return use(Element<std::uint32_t>());
    case corvel::kInt64:
      return use(Element<std::int64_t>());
    case corvel::kFloat:
      return use(Element<float>());
    case corvel::kDouble:
      return use(Element<double>());
  }
  return otherwise;
}

// The same for work without a result.
template <typename Use>
void WithElementType(corvel::CPrimType type, Use use) {
  (void)WithElementType(type, false, [&use](auto element) {
    use(element);
    return true;
  });
}

}  // namespace trovan::lattice
