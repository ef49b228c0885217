#include <climits>
#include <stdexcept>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include <corvel/BufferedFile.h>
#include <corvel/Exception.h>

#include "BufferedFileFixture.h"

namespace corvel {
namespace {

// Writing.

TEST_F(BufferedFileTest, WritesTransfersOfEverySizeAroundItsBuffer) {
  for (const std::size_t before : {std::size_t{0}, std::size_t{1}, std::size_t{4096}}) {
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, std::size_t{4096}, kBuffer - 1,
                                   kBuffer, kBuffer + 1, 3 * kBuffer}) {
      SCOPED_TRACE(testing::Message() << before << " + " << size);
      const std::string bytes = Pattern(before + size + 3);
      Open("wb");
      Write(bytes.substr(0, before));
      Write(bytes.substr(before, size));
      EXPECT_EQ(file_.GetPosition(), static_cast<long long>(before + size));
      EXPECT_EQ(file_.GetLength(), static_cast<long long>(before + size));
      Write(bytes.substr(before + size));
      file_.Close();
      EXPECT_TRUE(OnDisk() == bytes);
    }
  }
}

TEST_F(BufferedFileTest, KeepsWhatIsOutsideOfAWrite) {
  const std::string bytes = Pattern(3 * kBuffer);
  OpenWith(bytes, "r+b");
  file_.Seek(100'000, kFileBegin);
  Write("here");
  file_.Close();
  EXPECT_TRUE(OnDisk() == std::string(bytes).replace(100'000, 4, "here"));
}

TEST_F(BufferedFileTest, AppendsBehindWhatIsThere) {
  OpenWith("abc", "ab");
  Write("def");
  file_.Close();
  EXPECT_EQ(OnDisk(), "abcdef");
}

TEST_F(BufferedFileTest, AlternatesReadsAndWritesWithoutASeek) {
  OpenWith("abcdef", "r+b");
  EXPECT_EQ(Read(1), "a");
  Write("B");
  EXPECT_EQ(Read(1), "c");
  Write("DE");
  EXPECT_EQ(file_.Getc(), 'f');
  Write("g");
  EXPECT_EQ(file_.Getc(), -1);
  file_.Seek(0, kFileBegin);
  EXPECT_EQ(Read(9), "aBcDEfg");
  file_.Close();
  EXPECT_EQ(OnDisk(), "aBcDEfg");
}

TEST_F(BufferedFileTest, ReadsWhatItHasJustWritten) {
  Open("w+b");
  Write("abc");
  file_.Seek(1, kFileBegin);
  EXPECT_EQ(Read(9), "bc");
}

TEST_F(BufferedFileTest, HandsItsBytesToTheSystemByFlush) {
  Open("wb");
  Write("abc");
  file_.Flush();
  EXPECT_EQ(OnDisk(), "abc");
  EXPECT_EQ(file_.GetPosition(), 3);
  Write("d");
  file_.Close();
  EXPECT_EQ(OnDisk(), "abcd");
}

TEST_F(BufferedFileTest, PrintsTextOfAnyLength) {
  for (const int length : {0, 1, 255, 256, 257, 5'000, 100'000}) {
    Open("wb");
    EXPECT_EQ(file_.Printf("%*s", length, ""), length);
    EXPECT_EQ(file_.Printf("%d-%s", 7, "x"), 3);
    file_.Close();
    EXPECT_TRUE(OnDisk() == std::string(static_cast<std::size_t>(length), ' ') + "7-x") << length;
  }
}

TEST_F(BufferedFileTest, PrintsNulBytesAndKeepsLineFeeds) {
  Open("wb");
  EXPECT_EQ(file_.Printf("a%c\nb%%", 0), 5);
  file_.Close();
  EXPECT_EQ(OnDisk(), std::string("a\0\nb%", 5));
}

TEST_F(BufferedFileTest, RefusesToPrintWithoutAFormat) {
  Open("wb");
  const char* none = nullptr;
  EXPECT_THROW(file_.Printf(none, 1), Exception);
  EXPECT_EQ(file_.GetLength(), 0);
}

// Null buffers.

static_assert(std::is_base_of_v<std::logic_error, gsl::fail_fast>);

TEST_F(BufferedFileTest, RaisesFailFastForANullBuffer) {
  OpenWith("abc", "r+b");
  char* text = nullptr;
  const char* constant = nullptr;
  void* raw = nullptr;
  const void* constantRaw = nullptr;
  unsigned* numbers = nullptr;
  for (const std::size_t count : {std::size_t{0}, std::size_t{1}, 2 * kBuffer}) {
    EXPECT_THROW(file_.Read(nullptr, count), gsl::fail_fast);
    EXPECT_THROW(file_.Read(text, count), gsl::fail_fast);
    EXPECT_THROW(file_.Read(raw, count), gsl::fail_fast);
    EXPECT_THROW(file_.Read(numbers, count), gsl::fail_fast);
    EXPECT_THROW(file_.Write(nullptr, count), gsl::fail_fast);
    EXPECT_THROW(file_.Write(constant, count), gsl::fail_fast);
    EXPECT_THROW(file_.Write(constantRaw, count), gsl::fail_fast);
    EXPECT_THROW(file_.Write(text, count), gsl::fail_fast);
  }
  EXPECT_EQ(file_.GetPosition(), 0);
  file_.Close();
  EXPECT_EQ(OnDisk(), "abc");
}

TEST_F(BufferedFileTest, RaisesFailFastAsALogicErrorAndNotAsAReportedFailure) {
  OpenWith("abc");
  EXPECT_THROW(file_.Read(nullptr, 1), std::logic_error);
  file_.Close();
  EXPECT_THROW(file_.Read(nullptr, 1), gsl::fail_fast) << "the caller's fault comes first";
}

TEST_F(BufferedFileTest, TakesBuffersThatAreKnownNotToBeNull) {
  OpenWith("abc", "r+b");
  char bytes[2] = {};
  EXPECT_EQ(file_.Read(gsl::not_null<void*>(bytes), 2), 2U);
  file_.Write(gsl::not_null<const void*>(bytes), 1);
  file_.Close();
  EXPECT_EQ(OnDisk(), "aba");
}

// Positions.

TEST_F(BufferedFileTest, SeeksFromEachOrigin) {
  OpenWith("0123456789");
  EXPECT_EQ(file_.Seek(4, kFileBegin), 4);
  EXPECT_EQ(file_.Getc(), '4');
  EXPECT_EQ(file_.Seek(2, kFileCurrent), 7);
  EXPECT_EQ(file_.Getc(), '7');
  EXPECT_EQ(file_.Seek(-8, kFileCurrent), 0);
  EXPECT_EQ(file_.Getc(), '0');
  EXPECT_EQ(file_.Seek(-1, kFileEnd), 9);
  EXPECT_EQ(file_.Getc(), '9');
  EXPECT_EQ(file_.Seek(0, kFileEnd), 10);
  EXPECT_EQ(file_.Getc(), -1);
  static_assert(kFileBegin == 0);
}

TEST_F(BufferedFileTest, CountsUnwrittenBytesWhenItSeeksFromTheEnd) {
  Open("w+b");
  Write("abcdef");
  EXPECT_EQ(file_.Seek(-2, kFileEnd), 4);
  EXPECT_EQ(Read(9), "ef");
}

TEST_F(BufferedFileTest, RefusesANegativePositionAndMovesNothing) {
  OpenWith("0123456789");
  Read(3);
  file_.UnGetc('x');
  const struct {
    long long offset;
    FileOrigin origin;
  } cases[] = {{-1, kFileBegin},
               {-3, kFileCurrent},
               {-11, kFileEnd},
               {LLONG_MIN, kFileBegin},
               {LLONG_MIN, kFileCurrent},
               {LLONG_MIN, kFileEnd},
               {LLONG_MAX, kFileCurrent},
               {LLONG_MAX, kFileEnd},
               {0, static_cast<FileOrigin>(3)},
               {0, static_cast<FileOrigin>(-1)}};
  for (const auto& c : cases) {
    EXPECT_THROW(file_.Seek(c.offset, c.origin), Exception) << c.offset << ", " << c.origin;
    EXPECT_EQ(file_.GetPosition(), 2);
  }
  EXPECT_EQ(Read(2), "x3");
}

TEST_F(BufferedFileTest, ReadsNothingBeyondTheEnd) {
  OpenWith("abc");
  for (const long long position : {4LL, 70'000LL, 1LL << 40, LLONG_MAX}) {
    EXPECT_EQ(file_.Seek(position, kFileBegin), position);
    EXPECT_EQ(file_.GetPosition(), position);
    EXPECT_EQ(Read(10), "");
    EXPECT_EQ(Read(100'000), "");
    EXPECT_EQ(file_.Getc(), -1);
    EXPECT_EQ(file_.GetPosition(), position);
    EXPECT_EQ(file_.GetLength(), 3);
  }
}

TEST_F(BufferedFileTest, DoesNotGrowBySeekAlone) {
  OpenWith("abc", "r+b");
  file_.Seek(100, kFileBegin);
  Write("");
  file_.Close();
  EXPECT_EQ(OnDisk(), "abc");
}

TEST_F(BufferedFileTest, FillsAGapWithZeros) {
  for (const std::size_t gap : {std::size_t{1}, std::size_t{5'000}, 3 * kBuffer}) {
    for (const std::size_t size : {std::size_t{1}, 2 * kBuffer}) {
      const std::string tail(size, 'x');
      Open("w+b");
      Write("abc");
      file_.Seek(static_cast<long long>(3 + gap), kFileBegin);
      Write(tail);
      EXPECT_EQ(file_.GetLength(), static_cast<long long>(3 + gap + size));
      file_.Seek(3, kFileBegin);
      EXPECT_TRUE(Read(gap) == std::string(gap, '\0'));
      file_.Close();
      EXPECT_TRUE(OnDisk() == "abc" + std::string(gap, '\0') + tail);
    }
  }
}

TEST_F(BufferedFileTest, RefusesAWriteThatWouldLeaveTheRangeOfPositions) {
  OpenWith("abc", "r+b");
  file_.Seek(LLONG_MAX - 1, kFileBegin);
  EXPECT_THROW(Write("xyz"), Exception);
  EXPECT_EQ(file_.GetPosition(), LLONG_MAX - 1);
  file_.Close();
  EXPECT_EQ(OnDisk(), "abc");
}

TEST_F(BufferedFileTest, ReachesBeyondFourGigabytes) {
  Open("w+b");  // sparse, so that it takes no room
  const long long far = (5LL << 30) + 3;
  file_.Seek(far, kFileBegin);
  Write("far");
  EXPECT_EQ(file_.GetLength(), far + 3);
  file_.Seek(-5, kFileEnd);
  EXPECT_EQ(Read(9), std::string("\0\0far", 5));
  EXPECT_EQ(file_.GetPosition(), far + 3);
}

}  // namespace
}  // namespace corvel
