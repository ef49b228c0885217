// What is refused when memory is short: this program's own operator new gives no large block.
#include <trovan/TextHelpers.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <string>

#include <gtest/gtest.h>

#include <corvel/BufferedFile.h>

#include "support/TempFolder.h"

namespace {

constexpr std::size_t kLargestBlock = std::size_t{1} << 24;
int refusals = 0;

}  // namespace

void* operator new(std::size_t size) {
  void* block = size > kLargestBlock ? nullptr : std::malloc(size == 0 ? 1 : size);
  if (block != nullptr) return block;
  ++refusals;
  throw std::bad_alloc();
}
// Not inlined: GCC 12 would see memory of operator new go to free.
[[gnu::noinline]] void operator delete(void* block) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete(void* block, std::size_t) noexcept { std::free(block); }

namespace trovan::test {
namespace {

class TextHelpersMemoryTest : public testing::Test {
 protected:
  TextHelpersMemoryTest() { WriteBytes(folder_.Path() / "file", "abc"); }

  TempFolder folder_;
  const std::wstring path_ = folder_.File(L"file");
};

TEST_F(TextHelpersMemoryTest, TheBeginningOfAFileIsEmptyThen) {
  for (const std::size_t count : {kLargestBlock + 1, SIZE_MAX / 2}) {
    const int before = refusals;
    EXPECT_TRUE(ReadCharsAtBeginningOfFile(path_, count).empty());
    EXPECT_TRUE(ReadBytesAtBeginningOfFile(path_, count).empty());
    EXPECT_EQ(refusals, before + 2);
  }
  EXPECT_EQ(ReadCharsAtBeginningOfFile(path_, kLargestBlock).size(), 3U);
}

TEST_F(TextHelpersMemoryTest, TheTestOfABinaryFileRaisesThen) {
  corvel::CBufferedFile file;
  file.Open(path_, "rb", corvel::kFileShareRead, false);
  file.Getc();
  EXPECT_THROW(IsBinary(file, 0xFFFFFFFF), std::bad_alloc);
  EXPECT_EQ(file.GetPosition(), 1);
}

}  // namespace
}  // namespace trovan::test
