// What scanners use: the bytes in the buffer, an end of their own, and the byte that they return.
#include <climits>
#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include <corvel/BufferedFile.h>
#include <corvel/Exception.h>

#include "BufferedFileFixture.h"

namespace corvel {
namespace {

class BufferedFileScanTest : public BufferedFileTest {
 protected:
  std::string Buffered() const {
    const auto bytes = file_.Buffered();
    return {bytes.begin(), bytes.end()};
  }
};

// The bytes in the buffer.

TEST_F(BufferedFileScanTest, ShowsNothingBeforeAnythingIsRead) {
  EXPECT_EQ(Buffered(), "") << "closed";
  OpenWith("abc");
  EXPECT_EQ(Buffered(), "");
  EXPECT_FALSE(file_.EndOfFile());
}

TEST_F(BufferedFileScanTest, ShowsWhatIsInMemoryAlready) {
  OpenWith("abcdef");
  file_.Getc();
  EXPECT_EQ(Buffered(), "bcdef");
  EXPECT_EQ(Buffered(), "bcdef") << "looking takes nothing";
  EXPECT_EQ(file_.GetPosition(), 1);
  file_.SkipBuffered(3);
  EXPECT_EQ(file_.GetPosition(), 4);
  EXPECT_EQ(Buffered(), "ef");
  file_.SkipBuffered(0);
  EXPECT_EQ(file_.Getc(), 'e');
  file_.SkipBuffered(1);
  EXPECT_EQ(Buffered(), "");
  EXPECT_FALSE(file_.EndOfFile()) << "nothing came short yet";
  EXPECT_EQ(file_.Getc(), -1);
  EXPECT_TRUE(file_.EndOfFile());
  EXPECT_EQ(Buffered(), "");
}

TEST_F(BufferedFileScanTest, CanBeScannedFromStartToEnd) {
  const std::string bytes = Pattern(3 * kBuffer + 17);
  OpenWith(bytes);
  std::string all;
  for (int byte = file_.Getc(); byte >= 0; byte = file_.Getc()) {
    all += static_cast<char>(byte);
    const std::string more = Buffered();
    all += more;
    file_.SkipBuffered(more.size());
    ASSERT_EQ(file_.GetPosition(), static_cast<long long>(all.size()));
  }
  EXPECT_TRUE(all == bytes);
}

TEST_F(BufferedFileScanTest, ShowsNothingWhileAnotherByteThanTheFilesWaits) {
  OpenWith("abcd");
  Read(2);
  file_.UnGetc('x');
  EXPECT_EQ(Buffered(), "");
  EXPECT_EQ(file_.Getc(), 'x');
  EXPECT_EQ(Buffered(), "cd");
}

TEST_F(BufferedFileScanTest, ShowsTheFilesByteThatWasPushedBack) {
  OpenWith("abcd");
  Read(2);
  file_.UnGetc('b');
  EXPECT_EQ(Buffered(), "bcd");
  file_.SkipBuffered(2);
  EXPECT_EQ(file_.Getc(), 'd');
}

TEST_F(BufferedFileScanTest, TakesAByteBackBehindWhatWasSkipped) {
  OpenWith("abcd");
  file_.Getc();
  file_.SkipBuffered(2);
  EXPECT_EQ(file_.UnGetc('c'), 'c');
  EXPECT_EQ(file_.UnGetc('b'), -1);
  EXPECT_EQ(Read(9), "cd");
}

TEST_F(BufferedFileScanTest, ShowsNothingOfAFileForWriting) {
  OpenWith("", "wb");
  Write("abc");
  file_.Seek(0, kFileBegin);
  EXPECT_EQ(Buffered(), "");
}

TEST_F(BufferedFileScanTest, ShowsWhatWasWrittenAndRestsInTheBuffer) {
  OpenWith("abcdef", "r+b");
  file_.Getc();
  Write("XY");
  EXPECT_EQ(Buffered(), "def");
  file_.Seek(0, kFileBegin);
  EXPECT_EQ(Buffered(), "aXYdef");
  file_.SkipBuffered(6);
  Write("!");
  file_.Close();
  EXPECT_EQ(OnDisk(), "aXYdef!");
}

// An end for reads.

TEST_F(BufferedFileScanTest, ReadsFindTheEndThatWasSet) {
  OpenWith("abcdef");
  file_.SetReadEnd(4);
  EXPECT_EQ(Read(3), "abc");
  EXPECT_FALSE(file_.EndOfFile());
  EXPECT_EQ(Read(3), "d");
  EXPECT_TRUE(file_.EndOfFile());
  EXPECT_EQ(Read(3), "");
  EXPECT_EQ(file_.GetPosition(), 4);
}

TEST_F(BufferedFileScanTest, GetcFindsTheEndThatWasSet) {
  OpenWith("abcdef");
  file_.SetReadEnd(2);
  EXPECT_EQ(file_.Getc(), 'a');
  EXPECT_EQ(file_.Getc(), 'b');
  EXPECT_FALSE(file_.EndOfFile());
  EXPECT_EQ(file_.Getc(), -1);
  EXPECT_EQ(file_.Getc(), -1);
  EXPECT_TRUE(file_.EndOfFile());
  EXPECT_EQ(file_.GetPosition(), 2);
}

TEST_F(BufferedFileScanTest, LinesAndTheBufferStopAtTheEndThatWasSet) {
  OpenWith("one\ntwo\nthree\n");
  file_.SetReadEnd(6);
  std::string line;
  EXPECT_TRUE(file_.ReadString(line));
  EXPECT_EQ(line, "one");
  EXPECT_EQ(Buffered(), "tw");
  EXPECT_TRUE(file_.ReadString(line));
  EXPECT_EQ(line, "tw");
  EXPECT_TRUE(file_.EndOfFile());
  EXPECT_FALSE(file_.ReadString(line));
  EXPECT_EQ(file_.GetPosition(), 6);
}

TEST_F(BufferedFileScanTest, AnEndMayBeSetInsideAndBehindTheBuffer) {
  const std::string bytes = Pattern(4 * kBuffer);
  OpenWith(bytes);
  for (const std::size_t end :
       {std::size_t{0}, std::size_t{1}, std::size_t{511}, std::size_t{512}, std::size_t{513},
        kBuffer - 1, kBuffer, kBuffer + 1, 3 * kBuffer, 4 * kBuffer, 5 * kBuffer}) {
    const std::string expected = bytes.substr(0, end);
    file_.SetReadEnd(static_cast<long long>(end));
    for (const std::size_t transfer : {std::size_t{1'000}, kBuffer, 6 * kBuffer}) {
      SCOPED_TRACE(testing::Message() << transfer << " at a time up to " << end);
      file_.Seek(0, kFileBegin);
      std::string all;
      do all += Read(transfer);
      while (!file_.EndOfFile());
      EXPECT_TRUE(all == expected);
      EXPECT_EQ(file_.GetPosition(), static_cast<long long>(expected.size()));
    }
  }
}

TEST_F(BufferedFileScanTest, AnEndInFrontOfThePositionLeavesNothingToRead) {
  OpenWith("abcdef\n");
  Read(4);
  for (const long long end : {4LL, 2LL, 0LL, -1LL, LLONG_MIN}) {
    file_.SetReadEnd(end);
    EXPECT_FALSE(file_.EndOfFile()) << "it forgets the end mark";
    EXPECT_EQ(Buffered(), "");
    EXPECT_EQ(file_.Getc(), -1);
    EXPECT_TRUE(file_.EndOfFile());
    EXPECT_EQ(Read(3), "");
    std::string line;
    EXPECT_FALSE(file_.ReadString(line));
    EXPECT_EQ(file_.GetPosition(), 4);
  }
  file_.Seek(0, kFileBegin);
  EXPECT_EQ(file_.Getc(), -1) << "what is negative is the start";
}

TEST_F(BufferedFileScanTest, AnEndBehindThatOfTheFileChangesNothing) {
  OpenWith("abc");
  file_.SetReadEnd(10);
  EXPECT_EQ(Read(20), "abc");
  EXPECT_TRUE(file_.EndOfFile());
}

TEST_F(BufferedFileScanTest, TheEndCanBeTakenBack) {
  OpenWith("abcdef");
  file_.SetReadEnd(2);
  EXPECT_EQ(Read(5), "ab");
  file_.SetReadEnd(CBufferedFile::kNoReadEnd);
  EXPECT_FALSE(file_.EndOfFile());
  EXPECT_EQ(Buffered(), "cdef");
  EXPECT_EQ(Read(5), "cdef");
}

TEST_F(BufferedFileScanTest, OpenTakesTheEndBack) {
  OpenWith("abcdef");
  file_.SetReadEnd(2);
  Open("rb");
  EXPECT_EQ(Read(9), "abcdef");
}

TEST_F(BufferedFileScanTest, WritesSeeksAndTheLengthKnowNothingOfTheEnd) {
  OpenWith("abcdef", "r+b");
  file_.SetReadEnd(2);
  EXPECT_EQ(file_.GetLength(), 6);
  EXPECT_EQ(file_.Seek(-1, kFileEnd), 5);
  Write("XYZ");
  EXPECT_EQ(file_.GetPosition(), 8);
  EXPECT_EQ(file_.GetLength(), 8);
  file_.Seek(0, kFileBegin);
  EXPECT_EQ(Read(9), "ab") << "the end is still there";
  file_.Close();
  EXPECT_EQ(OnDisk(), "abcdeXYZ");
}

TEST_F(BufferedFileScanTest, APushedBackByteIsGivenInFrontOfTheEndAlone) {
  for (const int byte : {'b', 'x'}) {  // the file's and another
    OpenWith("abcdef");
    file_.SetReadEnd(2);
    Read(5);
    EXPECT_EQ(file_.UnGetc(byte), byte);
    EXPECT_FALSE(file_.EndOfFile());
    EXPECT_EQ(Read(5), std::string(1, static_cast<char>(byte)));
    EXPECT_EQ(file_.UnGetc(byte), byte);
    file_.SetReadEnd(1);
    EXPECT_EQ(file_.Getc(), -1);
    file_.SetReadEnd(3);
    EXPECT_EQ(Read(5), static_cast<char>(byte) + std::string("c"));
  }
}

TEST_F(BufferedFileScanTest, RefusesAnEndWhereNothingCanBeRead) {
  EXPECT_THROW(file_.SetReadEnd(2), Exception) << "closed";
  OpenWith("abc", "wb");
  EXPECT_THROW(file_.SetReadEnd(2), Exception) << "for writing only";
}

// The byte that was just read, pushed back.

TEST_F(BufferedFileScanTest, TakesTheFilesByteBackOnceAtOnePlace) {
  OpenWith("abcd");
  Read(3);
  EXPECT_EQ(file_.UnGetc('c'), 'c');
  EXPECT_EQ(file_.UnGetc('b'), -1);
  EXPECT_EQ(file_.UnGetc('x'), -1);
  EXPECT_EQ(file_.Getc(), 'c');
  EXPECT_EQ(file_.UnGetc('c'), 'c') << "again, when it was read again";
  EXPECT_EQ(file_.GetPosition(), 2);
  EXPECT_EQ(Read(0), "");
  EXPECT_EQ(file_.UnGetc('b'), -1) << "reading nothing takes nothing";
  EXPECT_EQ(Read(9), "cd");
}

TEST_F(BufferedFileScanTest, TakesAByteBackAnewAfterASeekToTheSamePlace) {
  OpenWith("abcd");
  Read(3);
  EXPECT_EQ(file_.UnGetc('c'), 'c');
  file_.Seek(2, kFileBegin);
  EXPECT_EQ(file_.UnGetc('b'), 'b');
  file_.Seek(0, kFileCurrent);
  EXPECT_EQ(file_.UnGetc('a'), 'a');
  EXPECT_EQ(file_.UnGetc('x'), -1) << "the start of the file";
  EXPECT_EQ(Read(9), "abcd");
}

TEST_F(BufferedFileScanTest, TakesAByteBackAtEveryPlaceAroundItsBuffer) {
  const std::string bytes = Pattern(2 * kBuffer);
  OpenWith(bytes);
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    const int byte = file_.Getc();
    ASSERT_EQ(byte, static_cast<unsigned char>(bytes[at]));
    if (at % 5 == 0) {
      ASSERT_EQ(file_.UnGetc(byte ^ 1), byte ^ 1) << at;
      ASSERT_EQ(file_.UnGetc(byte), -1) << at;
      ASSERT_EQ(file_.Getc(), byte ^ 1) << at;
      continue;
    }
    ASSERT_EQ(file_.UnGetc(byte), byte) << at;
    ASSERT_EQ(file_.GetPosition(), static_cast<long long>(at));
    ASSERT_EQ(file_.Getc(), byte) << at;
  }
  EXPECT_EQ(file_.Getc(), -1);
  const int last = static_cast<unsigned char>(bytes.back());
  EXPECT_EQ(file_.UnGetc(last), last);
  EXPECT_FALSE(file_.EndOfFile());
  EXPECT_EQ(Read(9), std::string(1, bytes.back()));
}

TEST_F(BufferedFileScanTest, TakesAByteBackWhereAWindowBegins) {
  OpenWith(Pattern(3 * kBuffer));
  file_.Seek(100'000, kFileBegin);
  const int before = 99'999 % 251;
  EXPECT_EQ(file_.UnGetc(before), before);
  EXPECT_EQ(file_.GetPosition(), 99'999);
  EXPECT_EQ(file_.Getc(), before);
  EXPECT_EQ(file_.Getc(), 100'000 % 251);
}

TEST_F(BufferedFileScanTest, OverwritesThePlaceOfTheFilesByteThatWasPushedBack) {
  OpenWith("abcd", "r+b");
  Read(2);
  file_.UnGetc('b');
  Write("Y");
  EXPECT_EQ(file_.GetPosition(), 2);
  EXPECT_EQ(file_.UnGetc('Y'), 'Y') << "a written byte counts as read";
  EXPECT_EQ(Read(9), "Ycd");
  file_.Close();
  EXPECT_EQ(OnDisk(), "aYcd");
}

TEST_F(BufferedFileScanTest, KeepsTheFilesByteThatWasPushedBackWhenItsBufferIsWritten) {
  OpenWith("abcd", "r+b");
  Write("XY");
  file_.Seek(0, kFileBegin);
  Read(1);
  file_.UnGetc('X');
  file_.Flush();
  EXPECT_EQ(OnDisk(), "XYcd");
  EXPECT_EQ(file_.UnGetc('x'), -1);
  EXPECT_EQ(Read(9), "XYcd");
}

TEST_F(BufferedFileScanTest, TakesNothingBackWhereNothingCanBeRead) {
  EXPECT_THROW(file_.UnGetc('x'), Exception) << "closed";
  OpenWith("", "wb");
  Write("abc");
  EXPECT_THROW(file_.UnGetc('c'), Exception) << "for writing only";
}

}  // namespace
}  // namespace corvel
