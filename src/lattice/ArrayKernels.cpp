#include "ArrayKernels.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

#include <hwy/cache_control.h>

#include "PlainLoops.h"

// Compiles this file once more for each kind of vectors that the compiler knows.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "ArrayKernels.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace trovan::lattice::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

// A processor without vectors takes the plain loops.
#if HWY_TARGET != HWY_SCALAR

// Vectors that are looked at together: one branch for all of them.
constexpr std::size_t kVectors = 4;

// The processor's own prefetching ends with each page of 4 KiB, which costs a third of the time
// when floats are widened; so the lines a page ahead are asked for.
constexpr std::size_t kAhead = 4096;
constexpr std::size_t kCacheLine = 64;

// Asks for what lies kAhead behind the next `size` bytes of an array that ends after `left` bytes.
HWY_INLINE void PrefetchAhead(const unsigned char* at, std::size_t size, std::size_t left) {
  if (left < kAhead + size) return;
  for (std::size_t i = 0; i < size; i += kCacheLine) hwy::Prefetch(at + kAhead + i);
}

// The bytes of as many elements as D has lanes. Read as bytes: elements lie at any alignment.
template <class D>
using Bytes = hn::Repartition<std::uint8_t, D>;

template <class D>
HWY_INLINE hn::Vec<D> LoadVector(D d, const unsigned char* at) {
  return hn::BitCast(d, hn::LoadU(Bytes<D>(), at));
}

template <class D>
HWY_INLINE void StoreVector(D, hn::Vec<D> vector, unsigned char* at) {
  hn::StoreU(hn::BitCast(Bytes<D>(), vector), Bytes<D>(), at);
}

template <typename T, class D>
HWY_INLINE hn::Vec<D> LoadAsDoubles(D d, const unsigned char* at) {
  if constexpr (sizeof(T) == sizeof(double)) {
    return LoadVector(d, at);
  } else {
    return hn::PromoteTo(d, LoadVector(hn::Rebind<T, D>(), at));
  }
}

template <class D>
HWY_INLINE hn::Mask<D> TestVector(D d, hn::Vec<D> values, NotFinite) {
  const auto largest = hn::Set(d, std::numeric_limits<hn::TFromD<D>>::max());
  return hn::Not(hn::Le(hn::Abs(values), largest));
}

template <class D, typename T>
HWY_INLINE hn::Mask<D> TestVector(D d, hn::Vec<D> values, const Outside<T>& outside) {
  return hn::Or(hn::Gt(values, hn::Set(d, outside.highest)),
                hn::Gt(hn::Set(d, outside.lowest), values));
}

template <class D>
HWY_INLINE void StoreReplaced(D d, hn::Vec<D> values, hn::Mask<D> bad, hn::Vec<D> replacement,
                              unsigned char* at) {
  StoreVector(d, hn::IfThenElse(bad, replacement, values), at);
}

template <class D>
HWY_INLINE hn::Mask<D> AnyOf(hn::Mask<D> a, hn::Mask<D> b, hn::Mask<D> c, hn::Mask<D> d) {
  return hn::Or(hn::Or(a, b), hn::Or(c, d));
}

template <typename T, class Test>
HWY_INLINE bool Replace(void* values, std::size_t n, T replacement, const Test& test) {
  auto* at = static_cast<unsigned char*>(values);
  const hn::ScalableTag<T> d;
  const std::size_t lanes = hn::Lanes(d);
  const std::size_t stride = lanes * sizeof(T);
  const auto with = hn::Set(d, replacement);
  bool replaced = false;
  for (; n >= kVectors * lanes; n -= kVectors * lanes, at += kVectors * stride) {
    PrefetchAhead(at, kVectors * stride, n * sizeof(T));
    const auto v0 = LoadVector(d, at);
    const auto v1 = LoadVector(d, at + stride);
    const auto v2 = LoadVector(d, at + 2 * stride);
    const auto v3 = LoadVector(d, at + 3 * stride);
    const auto bad0 = TestVector(d, v0, test);
    const auto bad1 = TestVector(d, v1, test);
    const auto bad2 = TestVector(d, v2, test);
    const auto bad3 = TestVector(d, v3, test);
    if (HWY_LIKELY(hn::AllFalse(d, AnyOf<decltype(d)>(bad0, bad1, bad2, bad3)))) continue;
    replaced = true;
    // All four: where bad values are frequent, a branch for each vector would cost more than the
    // stores.
    StoreReplaced(d, v0, bad0, with, at);
    StoreReplaced(d, v1, bad1, with, at + stride);
    StoreReplaced(d, v2, bad2, with, at + 2 * stride);
    StoreReplaced(d, v3, bad3, with, at + 3 * stride);
  }
  return ReplaceEach(at, n, replacement, test) || replaced;
}

// Steps, and not their errors, are what is collected: the error grows with the distance from the
// mean step, also after rounding, so that the least and the greatest step have the largest errors.
// That halves the work for each step. A NaN step is passed over; without any other step the least
// remains infinity and the greatest its negative, which no steps have.
template <class V>
struct Extremes {
  V least;
  V greatest;
};

// On x86 the instructions give the second operand when either is NaN (Intel, "MINPD"); elsewhere
// NaN has other rules.
template <class V>
HWY_INLINE Extremes<V> Extend(Extremes<V> extremes, V least, V greatest) {
#if HWY_ARCH_X86
  return {hn::Min(least, extremes.least), hn::Max(greatest, extremes.greatest)};
#else
  return {hn::IfThenElse(hn::Lt(least, extremes.least), least, extremes.least),
          hn::IfThenElse(hn::Gt(greatest, extremes.greatest), greatest, extremes.greatest)};
#endif
}

template <class D>
HWY_INLINE Extremes<hn::Vec<D>> NoSteps(D d) {
  const double infinity = std::numeric_limits<double>::infinity();
  return {hn::Set(d, infinity), hn::Set(d, -infinity)};
}

// The steps to the elements of one vector, the first at `at`.
template <typename T, class D>
HWY_INLINE hn::Vec<D> Steps(D d, const unsigned char* at) {
  return hn::Sub(LoadAsDoubles<T>(d, at), LoadAsDoubles<T>(d, at - sizeof(T)));
}

// Adds the steps to `count` elements, the first at `at`; `count` is a multiple of kVectors vectors.
// The array ends after `left` bytes.
template <typename T, class D>
HWY_INLINE Extremes<hn::Vec<D>> ExtendBySteps(D d, Extremes<hn::Vec<D>> extremes,
                                              const unsigned char* at, std::size_t count,
                                              std::size_t left) {
  const std::size_t stride = hn::Lanes(d) * sizeof(T);
  const std::size_t group = kVectors * hn::Lanes(d);
  auto e0 = extremes;  // Four that do not wait for each other.
  auto e1 = extremes;
  auto e2 = extremes;
  auto e3 = extremes;
  for (; count > 0; count -= group, at += group * sizeof(T), left -= group * sizeof(T)) {
    PrefetchAhead(at, group * sizeof(T), left);
    const auto s0 = Steps<T>(d, at);
    const auto s1 = Steps<T>(d, at + stride);
    const auto s2 = Steps<T>(d, at + 2 * stride);
    const auto s3 = Steps<T>(d, at + 3 * stride);
    e0 = Extend(e0, s0, s0);
    e1 = Extend(e1, s1, s1);
    e2 = Extend(e2, s2, s2);
    e3 = Extend(e3, s3, s3);
  }
  e0 = Extend(e0, e1.least, e1.greatest);
  e2 = Extend(e2, e3.least, e3.greatest);
  return Extend(e0, e2.least, e2.greatest);
}

// The larger error of the two extremes, where that is more than `floor`; NaN is not.
template <class D>
HWY_INLINE hn::Vec<D> LargerError(D d, Extremes<hn::Vec<D>> extremes, double step, double floor) {
  const auto mean = hn::Set(d, step);
  const auto none = hn::Gt(extremes.least, extremes.greatest);
  auto larger = hn::Set(d, floor);
  for (const auto extreme : {extremes.least, extremes.greatest}) {
    const auto error = hn::Abs(hn::Sub(extreme, mean));
    larger = hn::IfThenElse(hn::AndNot(none, hn::Gt(error, larger)), error, larger);
  }
  return larger;
}

template <typename T>
HWY_INLINE bool StepsWithin(const void* values, std::size_t n, double step, double allowed) {
  constexpr std::size_t kPiece = 1024;  // Elements between two tests.
  const auto* const bytes = static_cast<const unsigned char*>(values);
  const hn::ScalableTag<double> d;
  const std::size_t group = kVectors * hn::Lanes(d);
  const auto limit = hn::Set(d, allowed);
  auto extremes = NoSteps(d);
  std::size_t i = 1;
  while (n - i >= group) {
    const std::size_t piece = std::min(std::max(kPiece, group), n - i) / group * group;
    extremes = ExtendBySteps<T>(d, extremes, bytes + i * sizeof(T), piece, (n - i) * sizeof(T));
    if (!hn::AllFalse(d, hn::Gt(LargerError(d, extremes, step, allowed), limit))) return false;
    i += piece;
  }
  return EachStepWithin<T>(bytes, i, n, step, allowed);
}

template <typename T>
HWY_INLINE double WorstStep(const void* values, std::size_t n, double step) {
  const auto* const bytes = static_cast<const unsigned char*>(values);
  const hn::ScalableTag<double> d;
  const std::size_t group = kVectors * hn::Lanes(d);
  const std::size_t whole = (n - 1) / group * group;
  const auto extremes =
      ExtendBySteps<T>(d, NoSteps(d), bytes + sizeof(T), whole, (n - 1) * sizeof(T));
  const double worst = hn::GetLane(hn::MaxOfLanes(d, LargerError(d, extremes, step, 0.0)));
  return WorstOfEachStep<T>(bytes, 1 + whole, n, step, worst);
}

#else

template <typename T, class Test>
bool Replace(void* values, std::size_t n, T replacement, const Test& test) {
  return ReplaceEach(static_cast<unsigned char*>(values), n, replacement, test);
}

template <typename T>
bool StepsWithin(const void* values, std::size_t n, double step, double allowed) {
  return EachStepWithin<T>(static_cast<const unsigned char*>(values), 1, n, step, allowed);
}

template <typename T>
double WorstStep(const void* values, std::size_t n, double step) {
  return WorstOfEachStep<T>(static_cast<const unsigned char*>(values), 1, n, step, 0.0);
}

#endif

// What the table of the targets is made of: functions that are no templates.

bool ReplaceNotFiniteFloat(void* values, std::size_t n, float replacement) {
  return Replace(values, n, replacement, NotFinite());
}

bool ReplaceNotFiniteDouble(void* values, std::size_t n, double replacement) {
  return Replace(values, n, replacement, NotFinite());
}

bool ReplaceOutsideFloat(void* values, std::size_t n, float replacement, float lowest,
                         float highest) {
  return Replace(values, n, replacement, Outside<float>{lowest, highest});
}

bool ReplaceOutsideDouble(void* values, std::size_t n, double replacement, double lowest,
                          double highest) {
  return Replace(values, n, replacement, Outside<double>{lowest, highest});
}

bool StepsWithinFloat(const void* values, std::size_t n, double step, double allowed) {
  return StepsWithin<float>(values, n, step, allowed);
}

bool StepsWithinDouble(const void* values, std::size_t n, double step, double allowed) {
  return StepsWithin<double>(values, n, step, allowed);
}

double WorstStepFloat(const void* values, std::size_t n, double step) {
  return WorstStep<float>(values, n, step);
}

double WorstStepDouble(const void* values, std::size_t n, double step) {
  return WorstStep<double>(values, n, step);
}

}  // namespace trovan::lattice::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace trovan::lattice {

HWY_EXPORT(ReplaceNotFiniteFloat);
HWY_EXPORT(ReplaceNotFiniteDouble);
HWY_EXPORT(ReplaceOutsideFloat);
HWY_EXPORT(ReplaceOutsideDouble);
HWY_EXPORT(StepsWithinFloat);
HWY_EXPORT(StepsWithinDouble);
HWY_EXPORT(WorstStepFloat);
HWY_EXPORT(WorstStepDouble);

template <>
bool ReplaceNotFinite<float>(void* values, std::size_t n, float replacement) {
  return HWY_DYNAMIC_DISPATCH(ReplaceNotFiniteFloat)(values, n, replacement);
}

template <>
bool ReplaceNotFinite<double>(void* values, std::size_t n, double replacement) {
  return HWY_DYNAMIC_DISPATCH(ReplaceNotFiniteDouble)(values, n, replacement);
}

template <>
bool ReplaceOutside<float>(void* values, std::size_t n, float replacement, float lowest,
                           float highest) {
  return HWY_DYNAMIC_DISPATCH(ReplaceOutsideFloat)(values, n, replacement, lowest, highest);
}

template <>
bool ReplaceOutside<double>(void* values, std::size_t n, double replacement, double lowest,
                            double highest) {
  return HWY_DYNAMIC_DISPATCH(ReplaceOutsideDouble)(values, n, replacement, lowest, highest);
}

template <>
bool AllStepsWithin<float>(const void* values, std::size_t n, double step, double allowed) {
  return HWY_DYNAMIC_DISPATCH(StepsWithinFloat)(values, n, step, allowed);
}

template <>
bool AllStepsWithin<double>(const void* values, std::size_t n, double step, double allowed) {
  return HWY_DYNAMIC_DISPATCH(StepsWithinDouble)(values, n, step, allowed);
}

template <>
double WorstStepError<float>(const void* values, std::size_t n, double step) {
  return HWY_DYNAMIC_DISPATCH(WorstStepFloat)(values, n, step);
}

template <>
double WorstStepError<double>(const void* values, std::size_t n, double step) {
  return HWY_DYNAMIC_DISPATCH(WorstStepDouble)(values, n, step);
}

}  // namespace trovan::lattice

#endif
