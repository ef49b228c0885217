#include <climits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <corvel/BufferedFile.h>
#include <corvel/Exception.h>

#include "BufferedFileFixture.h"

namespace corvel {
namespace {

// Reading.

TEST_F(BufferedFileTest, ReadsFewerBytesOnlyAtTheEnd) {
  OpenWith("abcdef");
  EXPECT_EQ(Read(4), "abcd");
  EXPECT_EQ(Read(4), "ef");
  EXPECT_EQ(Read(4), "");
}

TEST_F(BufferedFileTest, ReadsTransfersOfEverySizeAroundItsBuffer) {
  const std::string bytes = Pattern(4 * kBuffer);
  WriteBytes(disk_, bytes);
  for (const std::size_t before : {std::size_t{0}, std::size_t{1}, std::size_t{4095}}) {
    for (const std::size_t size :
         {std::size_t{1}, std::size_t{4095}, std::size_t{4096}, std::size_t{4097}, kBuffer - 1,
          kBuffer, kBuffer + 1, 2 * kBuffer + 17, 4 * kBuffer, 5 * kBuffer}) {
      SCOPED_TRACE(testing::Message() << before << " + " << size);
      Open("rb");
      Read(before);
      const std::string expected = bytes.substr(before, size);
      EXPECT_TRUE(Read(size) == expected);
      EXPECT_EQ(file_.EndOfFile(), expected.size() < size);
      EXPECT_EQ(file_.GetPosition(), static_cast<long long>(before + expected.size()));
      EXPECT_TRUE(Read(100) == bytes.substr(before + expected.size(), 100));
    }
  }
}

TEST_F(BufferedFileTest, ReadsNothingWhenNothingIsAskedFor) {
  OpenWith("a");
  EXPECT_EQ(Read(0), "");
  Read(1);
  EXPECT_EQ(Read(0), "");
  EXPECT_FALSE(file_.EndOfFile());
}

TEST_F(BufferedFileTest, GetcGivesEachByteAndThenMinusOne) {
  std::string all(256, '\0');
  for (int byte = 0; byte < 256; ++byte)
    all[static_cast<std::size_t>(byte)] = static_cast<char>(byte);
  OpenWith(all);
  for (int byte = 0; byte < 256; ++byte) {
    EXPECT_EQ(file_.GetPosition(), byte);
    EXPECT_EQ(file_.Getc(), byte);
  }
  EXPECT_EQ(file_.Getc(), -1);
  EXPECT_EQ(file_.Getc(), -1);
  EXPECT_EQ(file_.GetPosition(), 256);
}

TEST_F(BufferedFileTest, ReadsAFileThatWasDeletedWhileOpen) {
  OpenWith(Pattern(200'000));
  Read(10);
  fs::remove(disk_);
  EXPECT_TRUE(Read(300'000) == Pattern(200'000).substr(10));
}

TEST_F(BufferedFileTest, MeetsTheEndOfAFileThatShrankWhileOpen) {
  OpenWith(Pattern(200'000));
  file_.Seek(150'000, kFileBegin);
  Read(10);
  fs::resize_file(disk_, 1'000);
  file_.Seek(140'000, kFileBegin);  // backward, so that the read begins far in front
  EXPECT_EQ(file_.Getc(), -1);
  EXPECT_EQ(file_.GetPosition(), 140'000);
  file_.Seek(990, kFileBegin);
  EXPECT_EQ(Read(100), Pattern(1'000).substr(990));
  EXPECT_EQ(file_.GetLength(), 1'000);
}

TEST_F(BufferedFileTest, ReadsOnWhenTheFileHasGrown) {
  OpenWith("abc");
  Read(10);
  WriteBytes(disk_, "abcdef");
  EXPECT_EQ(file_.GetLength(), 6);
  EXPECT_EQ(Read(10), "def");
}

// The system gives less than a page of such a file at a time, wherever the buffer would begin.
TEST_F(BufferedFileTest, ReadsBackwardThoughTheSystemGivesLessThanAskedFor) {
  const std::wstring listing = L"/proc/kallsyms";
  if (!file_.OpenNoThrow(listing, "rb", kFileShareRead, false)) {
    GTEST_SKIP() << "the system has no such file";
  }
  constexpr std::size_t kSize = 40'000;
  const std::string forward = Read(kSize);
  if (forward.size() < kSize) GTEST_SKIP() << "the system hides its symbols";
  constexpr std::size_t kStep = 100;
  for (std::size_t at = kSize; at >= kStep; at -= kStep) {
    file_.Seek(static_cast<long long>(at - kStep), kFileBegin);
    ASSERT_EQ(Read(kStep), forward.substr(at - kStep, kStep)) << at;
  }
}

// The end mark.

TEST_F(BufferedFileTest, HasNoEndMarkUntilAReadFallsShort) {
  OpenWith("abc");
  EXPECT_FALSE(file_.EndOfFile());
  Read(3);
  EXPECT_FALSE(file_.EndOfFile()) << "the read got all that it wanted";
  Read(1);
  EXPECT_TRUE(file_.EndOfFile());
}

TEST_F(BufferedFileTest, SetsTheEndMarkWhenGetcFallsShort) {
  OpenWith("a");
  file_.Getc();
  EXPECT_FALSE(file_.EndOfFile());
  file_.Getc();
  EXPECT_TRUE(file_.EndOfFile());
}

TEST_F(BufferedFileTest, SetsTheEndMarkWhenALineIsEndedByTheFile) {
  OpenWith("a\nb");
  std::string line;
  file_.ReadString(line);
  EXPECT_FALSE(file_.EndOfFile());
  file_.ReadString(line);
  EXPECT_TRUE(file_.EndOfFile());
}

TEST_F(BufferedFileTest, ClearsTheEndMarkBySeekUnGetcAndOpen) {
  OpenWith("abc");
  Read(9);
  file_.Seek(0, kFileCurrent);
  EXPECT_FALSE(file_.EndOfFile());
  Read(9);
  file_.UnGetc('c');
  EXPECT_FALSE(file_.EndOfFile());
  Read(9);
  ASSERT_TRUE(file_.EndOfFile());
  Open("rb");
  EXPECT_FALSE(file_.EndOfFile());
}

TEST_F(BufferedFileTest, KeepsTheEndMarkWhenASeekOrAnUnGetcIsRefused) {
  OpenWith("abc");
  Read(9);
  EXPECT_THROW(file_.Seek(-1, kFileBegin), Exception);
  EXPECT_TRUE(file_.EndOfFile());
  EXPECT_EQ(file_.UnGetc(-1), -1);
  EXPECT_TRUE(file_.EndOfFile());
}

// Pushing back.

TEST_F(BufferedFileTest, GivesAPushedBackByteNext) {
  OpenWith("ab");
  for (int byte = 0; byte < 256; ++byte) {  // most of them others than the one that was read
    file_.Seek(1, kFileBegin);
    EXPECT_EQ(file_.UnGetc(byte), byte);
    EXPECT_EQ(file_.GetPosition(), 0);
    EXPECT_EQ(file_.Getc(), byte);
    EXPECT_EQ(file_.GetPosition(), 1);
    EXPECT_EQ(file_.Getc(), 'b');
  }
}

TEST_F(BufferedFileTest, ReadsAPushedBackByteFirst) {
  const std::string bytes = Pattern(3 * kBuffer);
  for (const std::size_t count : {std::size_t{1}, std::size_t{3}, kBuffer, 2 * kBuffer}) {
    OpenWith(bytes);
    Read(5);
    file_.UnGetc('x');
    EXPECT_TRUE(Read(count) == "x" + bytes.substr(5, count - 1)) << count;
    EXPECT_EQ(file_.GetPosition(), static_cast<long long>(4 + count));
  }
}

TEST_F(BufferedFileTest, KeepsAPushedBackByteWhenNothingIsAskedFor) {
  OpenWith("ab", "r+b");
  file_.Getc();
  file_.UnGetc('x');
  Read(0);
  Write("");
  EXPECT_EQ(file_.GetPosition(), 0);
  EXPECT_EQ(file_.Getc(), 'x');
}

TEST_F(BufferedFileTest, GivesAPushedBackByteAtTheEnd) {
  OpenWith("a");
  Read(5);
  EXPECT_EQ(file_.UnGetc('z'), 'z');
  EXPECT_EQ(Read(5), "z");
  EXPECT_TRUE(file_.EndOfFile());
}

TEST_F(BufferedFileTest, ForgetsAPushedBackByteBySeek) {
  OpenWith("abc");
  Read(2);
  file_.UnGetc('x');
  EXPECT_EQ(file_.Seek(0, kFileCurrent), 1) << "counted from the position with the byte";
  EXPECT_EQ(file_.Getc(), 'b');
}

TEST_F(BufferedFileTest, OverwritesThePlaceOfAPushedBackByte) {
  OpenWith("abcd", "r+b");
  Read(2);
  file_.UnGetc('x');
  Write("Y");
  EXPECT_EQ(file_.GetPosition(), 2);
  EXPECT_EQ(file_.Getc(), 'c');
  file_.Close();
  EXPECT_EQ(OnDisk(), "aYcd");
}

TEST_F(BufferedFileTest, DoesNotWriteAPushedBackByte) {
  OpenWith("abcd", "r+b");
  Read(2);
  file_.UnGetc('x');
  file_.Close();
  EXPECT_EQ(OnDisk(), "abcd");
}

TEST_F(BufferedFileTest, TakesOnlyOneByteBack) {
  OpenWith("abc");
  Read(2);
  EXPECT_EQ(file_.UnGetc('b'), 'b');  // the very byte that was read
  EXPECT_EQ(file_.UnGetc('a'), -1);
  EXPECT_EQ(file_.GetPosition(), 1);
  EXPECT_EQ(Read(2), "bc");
}

TEST_F(BufferedFileTest, TakesNothingBackAtTheStart) {
  OpenWith("abc");
  EXPECT_EQ(file_.UnGetc('x'), -1);
  EXPECT_EQ(file_.GetPosition(), 0);
  EXPECT_EQ(file_.Getc(), 'a');
}

TEST_F(BufferedFileTest, TakesBackNoValueThatIsNoByte) {
  OpenWith("abc");
  Read(1);
  for (const int value : {-1, -2, 256, INT_MIN, INT_MAX}) EXPECT_EQ(file_.UnGetc(value), -1);
  EXPECT_EQ(Read(2), "bc");
}

// Lines.

TEST_F(BufferedFileTest, EndsALineAtTheLineFeedAlone) {
  using Strings = std::vector<std::string>;
  const struct {
    std::string bytes;
    Strings lines;
  } cases[] = {
      {"", {}},
      {"\n", {""}},
      {"a\nb\n", {"a", "b"}},
      {"a\nb", {"a", "b"}},
      {"a\r\nb\r\n", {"a\r", "b\r"}},
      {"a\rb", {"a\rb"}},
      {"\n\na\n\n", {"", "", "a", ""}},
      {std::string("a\0b\n\0", 5), {std::string("a\0b", 3), std::string(1, '\0')}},
      {"\xFF\xFE\n", {"\xFF\xFE"}},
  };
  for (const auto& c : cases) {
    OpenWith(c.bytes);
    EXPECT_EQ(Lines(), c.lines) << testing::PrintToString(c.bytes);
  }
}

TEST_F(BufferedFileTest, ReadsLinesAcrossTheEdgesOfItsBuffer) {
  std::vector<std::string> lines;
  std::string bytes;
  for (const std::size_t length :
       {std::size_t{4094}, std::size_t{4095}, std::size_t{4096}, std::size_t{4097}, std::size_t{0},
        kBuffer - 1, kBuffer, kBuffer + 1, 3 * kBuffer, std::size_t{5}}) {
    lines.emplace_back(length, static_cast<char>('a' + lines.size()));
    bytes += lines.back() + "\n";
  }
  OpenWith(bytes);
  EXPECT_TRUE(Lines() == lines);
}

TEST_F(BufferedFileTest, BeginsALineWithAPushedBackByte) {
  OpenWith("ab\ncd");
  file_.Getc();
  file_.UnGetc('X');
  std::string line;
  EXPECT_TRUE(file_.ReadString(line));
  EXPECT_EQ(line, "Xb");
  EXPECT_EQ(file_.GetPosition(), 3);
}

TEST_F(BufferedFileTest, EndsALineAtAPushedBackLineFeed) {
  OpenWith("ab");
  Read(2);
  file_.UnGetc('\n');
  std::string line = "old";
  EXPECT_TRUE(file_.ReadString(line));
  EXPECT_EQ(line, "");
  EXPECT_FALSE(file_.EndOfFile());
  EXPECT_FALSE(file_.ReadString(line));
}

TEST_F(BufferedFileTest, MixesLinesWithOtherReads) {
  OpenWith("one\ntwo\nthree");
  std::string line;
  file_.ReadString(line);
  EXPECT_EQ(file_.Getc(), 't');
  file_.ReadString(line);
  EXPECT_EQ(line, "wo");
  EXPECT_EQ(Read(2), "th");
}

}  // namespace
}  // namespace corvel
