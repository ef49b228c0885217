#include <corvel/PrimType.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <type_traits>

#include <gtest/gtest.h>

namespace corvel {
namespace {

constexpr long long kIndefinite = std::numeric_limits<long long>::min();
constexpr int kNoTypes[] = {
    9, 10, 255, 256, std::numeric_limits<int>::max(), -1, std::numeric_limits<int>::min()};

template <typename T>
double Real(PrimType type, T value) {
  return CPrimData::GetWideReal(type, &value);
}

template <typename T>
long long Int(PrimType type, T value) {
  return CPrimData::GetWideInt(type, &value);
}

TEST(PrimType, HasTheNumbersThatFilesUse) {
  const PrimType types[] = {kInt8,   kUInt8, kInt16, kUInt16, kInt32,
                            kUInt32, kInt64, kFloat, kDouble};
  for (int number = 0; number < 9; ++number) EXPECT_EQ(types[number], number);
}

TEST(CPrimType, GivesTheSizeOfAnElement) {
  const int sizes[] = {1, 1, 2, 2, 4, 4, 8, 4, 8};
  for (int number = 0; number < 9; ++number) {
    EXPECT_EQ(CPrimType(PrimType(number)).Size(), sizes[number]) << number;
  }
}

TEST(CPrimType, GivesSizeZeroForWhatIsNoElementType) {
  for (const int number : kNoTypes) EXPECT_EQ(CPrimType(PrimType(number)).Size(), 0) << number;
}

TEST(CPrimType, IsASmallValueMadeFromAPrimType) {
  static_assert(std::is_convertible_v<PrimType, CPrimType>);
  static_assert(std::is_trivially_copyable_v<CPrimType> && sizeof(CPrimType) == sizeof(PrimType));
  const CPrimType type = kInt16;
  EXPECT_EQ(type.Type(), kInt16);
  EXPECT_TRUE(type == CPrimType(kInt16));
  EXPECT_TRUE(type != CPrimType(kUInt16));
}

TEST(CPrimData, ReadsTheBoundsOfEveryIntegerType) {
  const auto check = []<typename T>(PrimType type, T) {
    SCOPED_TRACE(testing::Message() << "type " << type);
    for (const T value :
         {std::numeric_limits<T>::min(), std::numeric_limits<T>::max(), T{0}, T{1}}) {
      EXPECT_EQ(Int(type, value), static_cast<long long>(value));
      EXPECT_EQ(Real(type, value), static_cast<double>(value));
    }
  };
  check(kInt8, std::int8_t{});
  check(kUInt8, std::uint8_t{});
  check(kInt16, std::int16_t{});
  check(kUInt16, std::uint16_t{});
  check(kInt32, std::int32_t{});
  check(kUInt32, std::uint32_t{});
  check(kInt64, std::int64_t{});
}

TEST(CPrimData, ReadsEveryByteSignedAndUnsigned) {
  for (int value = 0; value < 256; ++value) {
    const auto byte = static_cast<std::uint8_t>(value);
    const int negative = value < 128 ? value : value - 256;
    EXPECT_EQ(Int(kUInt8, byte), value);
    EXPECT_EQ(Real(kUInt8, byte), value);
    EXPECT_EQ(Int(kInt8, byte), negative);
    EXPECT_EQ(Real(kInt8, byte), negative);
  }
}

TEST(CPrimData, RoundsSixtyFourBitIntegersBeyondTheDigitsOfADouble) {
  EXPECT_EQ(Real(kInt64, std::int64_t{9007199254740993}), 9007199254740992.0);
  EXPECT_EQ(Int(kInt64, std::int64_t{9007199254740993}), 9007199254740993);
}

TEST(CPrimData, ReadsRealsAsTheyAre) {
  EXPECT_EQ(Real(kFloat, 0.1F), static_cast<double>(0.1F));
  EXPECT_EQ(Real(kDouble, 0.1), 0.1);
  EXPECT_EQ(Real(kDouble, 5e-324), 5e-324);
  EXPECT_TRUE(std::signbit(Real(kDouble, -0.0)));
  EXPECT_TRUE(std::isnan(Real(kFloat, std::numeric_limits<float>::quiet_NaN())));
  EXPECT_TRUE(std::isnan(Real(kDouble, std::numeric_limits<double>::quiet_NaN())));
  EXPECT_EQ(Real(kFloat, -std::numeric_limits<float>::infinity()),
            -std::numeric_limits<double>::infinity());
}

TEST(CPrimData, TruncatesRealsTowardZero) {
  const struct {
    double value;
    long long expected;
  } cases[] = {
      {0.0, 0},
      {-0.0, 0},
      {0.99, 0},
      {-0.99, 0},
      {1.5, 1},
      {-1.5, -1},
      {300.7, 300},
      {2147483648.5, 2147483648},
      {-2147483649.5, -2147483649},
      {4294967296.5, 4294967296},
      {9223372036854774784.0, 9223372036854774784},  // the last below 2^63
      {-9223372036854775808.0, kIndefinite},         // fits: it is that value
      {9223372036854775808.0, kIndefinite},
      {-9223372036854777856.0, kIndefinite},  // the first beyond
      {1e20, kIndefinite},
      {-1e20, kIndefinite},
      {std::numeric_limits<double>::max(), kIndefinite},
      {std::numeric_limits<double>::infinity(), kIndefinite},
      {-std::numeric_limits<double>::infinity(), kIndefinite},
      {std::numeric_limits<double>::quiet_NaN(), kIndefinite},
  };
  for (const auto& c : cases) EXPECT_EQ(Int(kDouble, c.value), c.expected) << c.value;
}

TEST(CPrimData, TruncatesFloatsTowardZero) {
  const struct {
    float value;
    long long expected;
  } cases[] = {
      {-2.75F, -2},
      {16777216.0F, 16777216},
      {9223371487098961920.0F, 9223371487098961920},  // the last float below 2^63
      {9223372036854775808.0F, kIndefinite},
      {-9223372036854775808.0F, kIndefinite},
      {1e30F, kIndefinite},
      {std::numeric_limits<float>::infinity(), kIndefinite},
      {std::numeric_limits<float>::quiet_NaN(), kIndefinite},
  };
  for (const auto& c : cases) EXPECT_EQ(Int(kFloat, c.value), c.expected) << c.value;
}

TEST(CPrimData, AgreesWithTruncationForRandomDoubles) {
  std::mt19937_64 random(20240611);
  int whole = 0;
  for (int round = 0; round < 100'000; ++round) {
    const std::uint64_t bits = random();
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    if (round % 2 == 0) value = std::ldexp(std::frexp(value, &whole), round % 66);
    const double truncated = std::trunc(value);
    const long long actual = Int(kDouble, value);
    if (std::fabs(truncated) < 9223372036854775808.0) {
      ASSERT_EQ(static_cast<double>(actual), truncated) << value;
    } else {
      ASSERT_EQ(actual, kIndefinite) << value;
    }
  }
}

TEST(CPrimData, GivesZeroForWhatIsNoElementTypeAndReadsNothing) {
  for (const int number : kNoTypes) {
    EXPECT_EQ(CPrimData::GetWideReal(PrimType(number), nullptr), 0.0) << number;
    EXPECT_EQ(CPrimData::GetWideInt(PrimType(number), nullptr), 0) << number;
  }
}

TEST(CPrimData, ReadsAtAnyAlignmentAndNoFurtherThanTheElement) {
  for (int number = 0; number < 9; ++number) {
    const CPrimType type(PrimType{number});
    const auto size = static_cast<std::size_t>(type.Size());
    for (std::size_t shift = 0; shift < 8; ++shift) {
      // The element ends where the allocation does, so that a wider read is caught.
      auto* const memory = new unsigned char[shift + size]();
      memory[shift] = 1;  // the integers 1 on little-endian machines, tiny reals
      const auto real = CPrimData::GetWideReal(type, memory + shift);
      const auto integer = CPrimData::GetWideInt(type, memory + shift);
      unsigned char aligned[8] = {1};
      EXPECT_EQ(real, CPrimData::GetWideReal(type, aligned)) << number << " at " << shift;
      EXPECT_EQ(integer, CPrimData::GetWideInt(type, aligned)) << number << " at " << shift;
      delete[] memory;
    }
  }
}

TEST(CPrimData, KeepsTheTypeAndTheElement) {
  const double value = -2.5;
  const CPrimData data(kDouble, &value);
  EXPECT_EQ(data.GetWideReal(), -2.5);
  EXPECT_EQ(data.GetWideInt(), -2);
}

}  // namespace
}  // namespace corvel
