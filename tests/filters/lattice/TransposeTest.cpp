#include "filters/lattice/Transpose.h"

#include <cstring>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "support/Random.h"

namespace trovan::filters {
namespace {

unsigned char* At(std::string& bytes, std::size_t offset) {
  return reinterpret_cast<unsigned char*>(bytes.data()) + offset;
}

// With gaps of that many bytes after the rows of both places, which must stay as they are.
void ExpectTransposed(std::size_t rows, std::size_t columns, std::size_t size, std::size_t gap) {
  SCOPED_TRACE(testing::Message() << rows << " x " << columns << " elements of " << size << ", gap "
                                  << gap);
  std::mt19937 random(static_cast<unsigned>(rows * 1000 + columns));
  const std::size_t fromStride = columns * size + gap;
  const std::size_t toStride = rows * size + gap;
  std::string from(rows * fromStride, '\0');
  for (char& byte : from) byte = static_cast<char>(test::Below(random, 256));
  std::string to(columns * toStride, '#');
  std::string expected = to;
  for (std::size_t row = 0; row < rows; ++row) {
    for (std::size_t column = 0; column < columns; ++column) {
      expected.replace(column * toStride + row * size, size, from, row * fromStride + column * size,
                       size);
    }
  }
  Transpose({At(from, 0), fromStride}, {At(to, 0), toStride}, rows, columns, size);
  EXPECT_TRUE(to == expected);
}

TEST(Transpose, MakesRowsOfColumnsInEveryShapeAndSize) {
  for (const std::size_t size : {1U, 2U, 4U, 8U}) {
    for (const std::size_t rows : {1U, 2U, 3U, 4U, 5U, 15U, 16U, 17U, 65U, 700U}) {
      for (const std::size_t columns : {1U, 2U, 3U, 4U, 5U, 32U, 33U, 513U, 1025U}) {
        for (const std::size_t gap : {0U, 3U}) ExpectTransposed(rows, columns, size, gap);
      }
    }
  }
}

TEST(Transpose, OfNothingTouchesNothing) {
  std::string bytes = "abcd";
  Transpose({At(bytes, 0), 1}, {At(bytes, 2), 1}, 0, 2, 1);
  Transpose({At(bytes, 0), 1}, {At(bytes, 2), 1}, 2, 0, 1);
  EXPECT_EQ(bytes, "abcd");
}

}  // namespace
}  // namespace trovan::filters
