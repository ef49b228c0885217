#include <climits>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <corvel/BufferedFile.h>
#include <corvel/Exception.h>
#include <corvel/Path.h>

#include "support/TempFolder.h"

namespace corvel {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;
using testing::ThrowsMessage;
using trovan::test::ReadBytes;
using trovan::test::TempFolder;
using trovan::test::WriteBytes;

constexpr std::size_t kBuffer = 64 * 1024;

// Bytes whose value tells their place, with a period that divides no buffer.
std::string Pattern(std::size_t size) {
  std::string bytes(size, '\0');
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i % 251);
  return bytes;
}

class BufferedFileTest : public testing::Test {
 protected:
  // A file with `bytes`, opened.
  void OpenWith(const std::string& bytes, const char* mode = "rb") {
    WriteBytes(disk_, bytes);
    Open(mode);
  }
  void Open(const char* mode) { file_.Open(path_, mode, kFileExclusive, false); }
  bool TryOpen(const char* mode) { return file_.OpenNoThrow(path_, mode, kFileExclusive, false); }

  std::string Read(std::size_t count) {
    std::string bytes(count + 1, '\0');  // never empty
    bytes.resize(file_.Read(bytes.data(), count));
    return bytes;
  }
  void Write(const std::string& bytes) { file_.Write(bytes.data(), bytes.size()); }
  std::string OnDisk() const { return ReadBytes(disk_); }

  std::vector<std::string> Lines() {
    std::vector<std::string> lines;
    for (std::string line; file_.ReadString(line);) lines.push_back(line);
    return lines;
  }

  TempFolder folder_;
  const fs::path disk_ = folder_.Path() / "file.bin";
  const std::wstring path_ = folder_.File(L"file.bin");
  CBufferedFile file_;
};

// Opening.

TEST_F(BufferedFileTest, StartsClosed) {
  EXPECT_FALSE(file_.IsOpen());
  EXPECT_FALSE(file_.EndOfFile());
  EXPECT_EQ(file_.GetPath(), L"");
}

TEST_F(BufferedFileTest, TellsThePathItWasOpenedWith) {
  OpenWith("x");
  EXPECT_TRUE(file_.IsOpen());
  EXPECT_EQ(file_.GetPath(), path_);
}

TEST_F(BufferedFileTest, OpensByTheModesOfFopen) {
  const struct {
    const char* mode;
    bool reads;
    bool writes;
    bool empties;
    long long position;
  } cases[] = {
      {"r", true, false, false, 0},  {"rb", true, false, false, 0}, {"r+", true, true, false, 0},
      {"r+b", true, true, false, 0}, {"rb+", true, true, false, 0}, {"w", false, true, true, 0},
      {"wb", false, true, true, 0},  {"w+", true, true, true, 0},   {"w+b", true, true, true, 0},
      {"wb+", true, true, true, 0},  {"a", false, true, false, 3},  {"ab", false, true, false, 3},
      {"a+b", true, true, false, 3},
  };
  for (const bool wide : {false, true}) {
    for (const auto& c : cases) {
      SCOPED_TRACE(testing::Message() << (wide ? "wide " : "narrow ") << c.mode);
      WriteBytes(disk_, "abc");
      const std::string mode = c.mode;
      if (wide) {
        file_.Open(path_, std::wstring(mode.begin(), mode.end()).c_str(), kFileExclusive, false);
      } else {
        Open(c.mode);
      }
      EXPECT_EQ(file_.GetLength(), c.empties ? 0 : 3);
      EXPECT_EQ(file_.GetPosition(), c.position);
      EXPECT_EQ(fs::file_size(disk_), c.empties ? 0U : 3U) << "a mode empties at once";
      if (c.reads) {
        EXPECT_NO_THROW(file_.Getc());
      } else {
        EXPECT_THROW(file_.Getc(), Exception);
        EXPECT_THROW(Read(1), Exception);
        EXPECT_THROW(file_.UnGetc('x'), Exception);
        std::string line;
        EXPECT_FALSE(file_.ReadString(line));
      }
      if (c.writes) {
        EXPECT_NO_THROW(Write("z"));
      } else {
        EXPECT_THROW(Write("z"), Exception);
        EXPECT_THROW(file_.Printf("z"), Exception);
      }
      file_.Close();
    }
  }
}

TEST_F(BufferedFileTest, RefusesAModeThatItDoesNotKnow) {
  WriteBytes(disk_, "abc");
  const char* const narrow[] = {"", "b", "+", "x", "rt", "R", "rw", "r b", " r", nullptr};
  for (const char* mode : narrow) {
    SCOPED_TRACE(mode == nullptr ? "null" : mode);
    EXPECT_THROW(Open(mode), Exception);
    EXPECT_FALSE(TryOpen(mode));
    EXPECT_FALSE(file_.IsOpen());
  }
  const wchar_t* const wide[] = {L"", L"q", L"r\x2B2", L"\x172", nullptr};
  for (const wchar_t* mode : wide) {
    EXPECT_THROW(file_.Open(path_, mode, kFileExclusive, false), Exception);
    EXPECT_FALSE(file_.OpenNoThrow(path_, mode, kFileExclusive, false));
  }
  EXPECT_EQ(OnDisk(), "abc");
}

TEST_F(BufferedFileTest, OpensWithEverySharing) {
  WriteBytes(disk_, "abc");
  for (const FileSharing sharing : {kFileExclusive, kFileShareRead, kFileShareAll}) {
    EXPECT_TRUE(file_.OpenNoThrow(path_, "rb", sharing, false));
    EXPECT_TRUE(file_.OpenNoThrow(path_, L"rb", sharing, false));
  }
}

TEST_F(BufferedFileTest, NamesThePathAndTheReasonOfAMissingFile) {
  EXPECT_THAT(
      [&] { Open("rb"); },
      ThrowsMessage<Exception>(AllOf(HasSubstr("corvel::BufferedFile("), HasSubstr(disk_.string()),
                                     HasSubstr("No such file or directory"))));
  EXPECT_FALSE(file_.IsOpen());
}

TEST_F(BufferedFileTest, ReturnsFalseForAMissingFileWhereNothingIsRaised) {
  EXPECT_FALSE(TryOpen("rb"));
  EXPECT_FALSE(TryOpen("r+b"));
  EXPECT_FALSE(file_.OpenNoThrow(path_, L"rb", kFileShareRead, false));
  EXPECT_FALSE(file_.IsOpen());
  EXPECT_FALSE(fs::exists(disk_));
}

TEST_F(BufferedFileTest, RefusesAFolder) {
  for (const char* mode : {"rb", "r+b", "wb", "w+b", "ab"}) {
    EXPECT_THAT([&] { file_.Open(folder_.Path().wstring(), mode, kFileExclusive, false); },
                ThrowsMessage<Exception>(HasSubstr("Is a directory")))
        << mode;
    EXPECT_FALSE(file_.IsOpen());
  }
}

TEST_F(BufferedFileTest, RefusesToReplaceAFileThatMustBeNew) {
  WriteBytes(disk_, "abc");
  EXPECT_THROW(file_.Open(path_, "wb", kFileExclusive, true), Exception);
  EXPECT_FALSE(file_.OpenNoThrow(path_, L"w+b", kFileExclusive, true));
  EXPECT_EQ(OnDisk(), "abc");
  EXPECT_TRUE(file_.OpenNoThrow(path_, "rb", kFileExclusive, true)) << "reading creates nothing";
  file_.Close();
  fs::remove(disk_);
  EXPECT_TRUE(file_.OpenNoThrow(path_, "wb", kFileExclusive, true));
}

TEST_F(BufferedFileTest, ClosesTheFileThatIsOpenBeforeItOpensAnother) {
  Open("wb");
  Write("first");
  file_.Open(folder_.File(L"second"), "wb", kFileExclusive, false);
  EXPECT_EQ(OnDisk(), "first");
  EXPECT_EQ(file_.GetPosition(), 0);
  EXPECT_EQ(file_.GetPath(), folder_.File(L"second"));
}

TEST_F(BufferedFileTest, ReadsBackWhatItWroteWhenItOpensItsOwnFileAgain) {
  Open("wb");
  Write("bytes");
  file_.Open(file_.GetPath(), "rb", kFileShareRead, false);
  EXPECT_EQ(Read(9), "bytes");
}

TEST_F(BufferedFileTest, ClosesTheFileThatIsOpenEvenIfTheOtherCannotBeOpened) {
  for (const char* mode : {"rb", "no mode"}) {
    Open("wb");
    Write("first");
    EXPECT_FALSE(file_.OpenNoThrow(folder_.File(L"missing"), mode, kFileShareRead, false));
    EXPECT_FALSE(file_.IsOpen()) << mode;
    EXPECT_EQ(OnDisk(), "first") << mode;
  }
}

TEST_F(BufferedFileTest, ForgetsAllOfTheFormerFile) {
  OpenWith("abc");
  Read(10);
  file_.UnGetc('x');
  Read(10);
  ASSERT_TRUE(file_.EndOfFile());
  WriteBytes(folder_.Path() / "second", "12");
  file_.Open(folder_.File(L"second"), "rb", kFileShareRead, false);
  EXPECT_FALSE(file_.EndOfFile());
  EXPECT_EQ(file_.GetPosition(), 0);
  EXPECT_EQ(Read(10), "12");
}

// Names.

TEST_F(BufferedFileTest, GivesTheSystemItsPathsAsUtf8) {
  const std::string name = "Größe-Ελλάς-東京-\xF0\x9F\x97\xBA.dbf";
  WriteBytes(folder_.Path() / name, "abc");
  const std::wstring path = folder_.Path().wstring() +
                            L"/Gr\u00F6\u00DFe-\u0395\u03BB\u03BB\u03AC"
                            L"\u03C2-\u6771\u4EAC-\U0001F5FA.dbf";
  file_.Open(path, "rb", kFileShareRead, false);
  EXPECT_EQ(Read(10), "abc");
}

TEST_F(BufferedFileTest, OpensANameThatIsNoUtf8) {
  const std::string name =
      "stra\xDF"
      "e-\xFF\x80.dbf";
  const fs::path disk = folder_.Path() / name;
  WriteBytes(disk, "abc");
  file_.Open(PathFromSystem(disk.native()), "rb", kFileShareRead, false);
  EXPECT_EQ(Read(10), "abc");
}

TEST_F(BufferedFileTest, RefusesANameThatHoldsANul) {
  WriteBytes(disk_, "abc");
  const std::wstring path = path_ + std::wstring(1, L'\0') + L".bak";
  EXPECT_THROW(file_.Open(path, "wb", kFileExclusive, false), Exception);
  EXPECT_FALSE(file_.OpenNoThrow(path, "rb", kFileShareRead, false));
  EXPECT_EQ(OnDisk(), "abc");
}

TEST_F(BufferedFileTest, RefusesAnEmptyName) {
  EXPECT_FALSE(file_.OpenNoThrow(L"", "wb", kFileExclusive, false));
  EXPECT_FALSE(file_.OpenNoThrow(L"", "rb", kFileShareRead, false));
}

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

// Closing.

TEST_F(BufferedFileTest, WritesWhatRestsWhenItIsDestroyed) {
  {
    CBufferedFile file;
    file.Open(path_, "wb", kFileExclusive, false);
    file.Write("abc", 3);
  }
  EXPECT_EQ(OnDisk(), "abc");
}

TEST_F(BufferedFileTest, WritesWhatRestsWhenItIsClosed) {
  Open("wb");
  Write("abc");
  EXPECT_TRUE(file_.CloseNoThrow(false));
  EXPECT_FALSE(file_.IsOpen());
  EXPECT_EQ(OnDisk(), "abc");
}

TEST_F(BufferedFileTest, DropsWhatRestsWhenItIsToldTo) {
  Open("wb");
  Write("abc");
  EXPECT_TRUE(file_.CloseNoThrow(true));
  EXPECT_FALSE(file_.IsOpen());
  EXPECT_EQ(OnDisk(), "");
}

TEST_F(BufferedFileTest, KeepsItsPathWhenItIsClosed) {
  OpenWith("abc");
  Read(9);
  file_.Close();
  EXPECT_EQ(file_.GetPath(), path_);
  EXPECT_FALSE(file_.EndOfFile());
}

TEST_F(BufferedFileTest, RaisesForAnOperationOnAClosedFile) {
  OpenWith("abc", "r+b");
  for (const bool opened : {true, false}) {
    CBufferedFile never;
    CBufferedFile& file = opened ? file_ : never;
    file.Close();
    char byte = 0;
    std::string line;
    EXPECT_THROW(file.Read(&byte, 1), Exception);
    EXPECT_THROW(file.Read(&byte, 0), Exception);
    EXPECT_THROW(file.Write(&byte, 1), Exception);
    EXPECT_THROW(file.Write(&byte, 0), Exception);
    EXPECT_THROW(file.Seek(0, kFileBegin), Exception);
    EXPECT_THROW(file.GetPosition(), Exception);
    EXPECT_THROW(file.GetLength(), Exception);
    EXPECT_THROW(file.Getc(), Exception);
    EXPECT_THROW(file.UnGetc('a'), Exception);
    EXPECT_THROW(file.ReadString(line), Exception);
    EXPECT_THROW(file.Printf("a"), Exception);
    EXPECT_THROW(file.Flush(), Exception);
  }
}

TEST_F(BufferedFileTest, AnswersACloseOnAClosedFile) {
  EXPECT_NO_THROW(file_.Close());
  EXPECT_TRUE(file_.CloseNoThrow(false));
  EXPECT_TRUE(file_.CloseNoThrow(true));
  EXPECT_FALSE(file_.IsOpen());
  EXPECT_FALSE(file_.EndOfFile());
}

}  // namespace
}  // namespace corvel
