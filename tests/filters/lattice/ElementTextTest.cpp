#include "filters/lattice/ElementText.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "AnyLattice.h"
#include "support/TempFolder.h"

namespace trovan::filters {
namespace {

TEST(ElementText, GivesEveryElementBack) {
  std::mt19937 random(20240611);
  for (const corvel::PrimType type : test::kElementTypes) {
    const auto size = static_cast<std::size_t>(corvel::CPrimType(type).Size());
    const auto elements = test::AnyElements(random, type, 1000);
    for (std::size_t i = 0; i < 1000; ++i) {
      std::string text;
      AppendNumber(text, type, &elements[i * size]);
      unsigned char back[8] = {};
      ASSERT_EQ(ParseNumber(text, type, back), NumberStatus::kNumber) << text;
      EXPECT_EQ(std::memcmp(back, &elements[i * size], size), 0) << "type " << type << ' ' << text;
    }
  }
}

TEST(ElementText, WritesLongLinesWhole) {
  const test::TempFolder folder;
  corvel::CBufferedFile file;
  file.Open(folder.File(L"line"), "wb", corvel::kFileExclusive, true);
  const std::vector<std::int32_t> numbers(50'000, -1234567);
  WriteLineOfNumbers(file, corvel::kInt32, numbers.data(), numbers.size());
  file.Close();
  std::string expected;
  for (std::size_t i = 0; i < numbers.size(); ++i) expected += i > 0 ? " -1234567" : "-1234567";
  EXPECT_EQ(test::ReadBytes(folder.Path() / "line"), expected + '\n');
}

}  // namespace
}  // namespace trovan::filters
