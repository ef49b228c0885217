// What the functions on typed arrays do, one element at a time and by way of the platform's own
// accessors; and numbers that make trouble.
#pragma once

#include <cstddef>
#include <random>

#include <corvel/PrimType.h>

namespace trovan::test {

inline constexpr int kElementTypes = 9;

// Numbers that are no element types.
inline constexpr int kUnknownTypes[] = {9, 10, 255, 2147483647, -1};

// Writes the element; nothing for unknown types.
void ModelStore(corvel::CPrimType type, void* dst, double value);

void ModelConvert(corvel::CPrimType from, corvel::CPrimType to, const void* src, void* dst);
void ModelScale(corvel::CPrimType type, void* dst, double value, double minValue, double maxValue);
bool ModelIsEquallySpaced(corvel::CPrimType type, std::size_t n, const void* values,
                          double tolerancePercent);
double ModelMaxDeviation(corvel::CPrimType type, std::size_t n, const void* values);
bool ModelFilterInvalid(void* data, corvel::PrimType type, std::size_t n, double replacement);
bool ModelFilterOutOfRange(void* data, corvel::PrimType type, std::size_t n, double replacement,
                           double minValue, double maxValue);

// NaN, infinities, zeros of both signs, the least and the greatest numbers, the bounds of all types
// and their neighbours, numbers of every magnitude, small whole and half ones.
double TroubleDouble(std::mt19937& random);

// Fills the element with any bytes or with a number of the kind above.
void SetToTrouble(std::mt19937& random, corvel::CPrimType type, void* element);

}  // namespace trovan::test
