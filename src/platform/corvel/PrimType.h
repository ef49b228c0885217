// Packed arrays whose element type is known only when the program runs: the type's number, its
// size, and reading one element as the widest real or whole number.
//
//   const std::int16_t value = -7;
//   CPrimType(kInt16).Size();                  // 2
//   CPrimData::GetWideReal(kInt16, &value);    // -7.0
#pragma once

#include <corvel/Export.h>

namespace corvel {

// The element type of a packed array. Files and callers hand in any number: those beyond the names
// can be held, and are no element types.
enum PrimType : int {
  kInt8 = 0,
  kUInt8 = 1,
  kInt16 = 2,
  kUInt16 = 3,
  kInt32 = 4,
  kUInt32 = 5,
  kInt64 = 6,
  kFloat = 7,   // 32 bits
  kDouble = 8,  // 64 bits
};

// One PrimType, with what is known of it.
class CORVEL_API CPrimType {
 public:
  constexpr CPrimType(PrimType type) : type_(type) {}  // NOLINT: each is the other's value

  constexpr PrimType Type() const { return type_; }

  // The size of one element in bytes; 0 if this is no element type.
  int Size() const;

  friend constexpr bool operator==(CPrimType, CPrimType) = default;

 private:
  PrimType type_;
};

// One element of a packed array. Refers to the element, which the caller keeps alive.
class CORVEL_API CPrimData {
 public:
  // REQUIRES: `element` points to one element of the type, in the machine's byte order and at any
  // alignment. It is never read when the type is no element type.
  constexpr CPrimData(CPrimType type, const void* element) : type_(type), element_(element) {}

  double GetWideReal() const { return GetWideReal(type_, element_); }
  long long GetWideInt() const { return GetWideInt(type_, element_); }

  // The element as a double: exact, but for 64-bit integers beyond 2^53, which are rounded. 0 if
  // the type is no element type.
  static double GetWideReal(CPrimType type, const void* element);

  // The element as a signed 64-bit integer, truncated toward zero. What does not fit, NaN included,
  // gives the most negative value, as the hardware's conversion does. 0 if the type is no element
  // type.
  static long long GetWideInt(CPrimType type, const void* element);

 private:
  CPrimType type_;
  const void* element_;
};

}  // namespace corvel
