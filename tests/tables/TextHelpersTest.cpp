#include <trovan/TextHelpers.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include <corvel/BufferedFile.h>
#include <corvel/Exception.h>
#include <corvel/FailFast.h>
#include <corvel/SystemInfo.h>

#include "support/TempFolder.h"

namespace trovan::test {
namespace {

using corvel::CBufferedFile;
using corvel::CSystemInfo;
using corvel::Singleton;
using std::string_view_literals::operator""sv;

// Text or binary.

class IsBinaryTest : public testing::Test {
 protected:
  void Open(std::string_view bytes, const char* mode = "rb") {
    WriteBytes(folder_.Path() / "file", bytes);
    file_.Open(folder_.File(L"file"), mode, corvel::kFileShareRead, false);
  }

  TempFolder folder_;
  CBufferedFile file_;
};

TEST_F(IsBinaryTest, LooksForANulByteInTheNextBytesAlone) {
  for (std::size_t at = 0; at < 8; ++at) {
    std::string bytes = "abcdefgh";
    bytes[at] = '\0';
    Open(bytes);
    for (std::size_t position = 0; position <= 8; ++position) {
      for (unsigned count = 1; count <= 10; ++count) {
        file_.Seek(static_cast<long long>(position), corvel::kFileBegin);
        EXPECT_EQ(IsBinary(file_, count), at >= position && at < position + count)
            << "NUL at " << at << ", " << count << " from " << position;
        EXPECT_EQ(file_.GetPosition(), static_cast<long long>(position));
      }
    }
  }
}

TEST_F(IsBinaryTest, TakesEveryOtherByteForText) {
  std::string bytes;
  for (int byte = 1; byte < 256; ++byte) bytes += static_cast<char>(byte);
  Open(bytes);
  EXPECT_FALSE(IsBinary(file_, 255));
  EXPECT_FALSE(IsBinary(file_, 256)) << "what the file does not have is no NUL byte";
}

TEST_F(IsBinaryTest, TakesUtf16ForBinary) {
  Open("\xFF\xFEO\0s\0"sv);
  EXPECT_TRUE(IsBinary(file_, 6));
}

TEST_F(IsBinaryTest, TakesAFileWithoutBytesForText) {
  Open("");
  EXPECT_FALSE(IsBinary(file_, 100));
  EXPECT_EQ(file_.GetPosition(), 0);
}

TEST_F(IsBinaryTest, StaysAtTheEnd) {
  Open("a\0"sv);
  file_.Seek(0, corvel::kFileEnd);
  EXPECT_FALSE(IsBinary(file_, 100));
  EXPECT_EQ(file_.GetPosition(), 2);
  file_.Seek(50, corvel::kFileBegin);
  EXPECT_FALSE(IsBinary(file_, 100));
  EXPECT_EQ(file_.GetPosition(), 50);
}

TEST_F(IsBinaryTest, LetsTheCallerReadOn) {
  Open("abc\0"sv);
  file_.Getc();
  EXPECT_TRUE(IsBinary(file_, 100));
  EXPECT_FALSE(file_.EndOfFile());
  EXPECT_EQ(file_.Getc(), 'b');
}

TEST_F(IsBinaryTest, LooksBeyondTheFilesBuffer) {
  std::string bytes(300'000, 'x');
  bytes.back() = '\0';
  Open(bytes);
  EXPECT_FALSE(IsBinary(file_, 299'999));
  EXPECT_TRUE(IsBinary(file_, 300'000));
  EXPECT_TRUE(IsBinary(file_, 10'000'000));
}

TEST_F(IsBinaryTest, RefusesACountOfZero) {
  Open("abc");
  file_.Getc();
  EXPECT_THROW(IsBinary(file_, 0), gsl::fail_fast);
  EXPECT_EQ(file_.GetPosition(), 1);
}

TEST_F(IsBinaryTest, RaisesWhatTheFileDoes) {
  EXPECT_THROW(IsBinary(file_, 10), corvel::Exception) << "closed";
  Open("abc", "wb");
  EXPECT_THROW(IsBinary(file_, 10), corvel::Exception) << "for writing only";
  file_.Open(L"/proc/self/mem", "rb", corvel::kFileShareRead, false);
  EXPECT_THROW(IsBinary(file_, 10), corvel::Exception) << "a read error";
}

// The first bytes.

// Both readers, which differ in their elements alone, as one text.
std::string Beginning(const std::wstring& path, std::size_t count) {
  const std::vector<char> chars = ReadCharsAtBeginningOfFile(path, count);
  const std::vector<unsigned char> bytes = ReadBytesAtBeginningOfFile(path, count);
  std::string text(chars.begin(), chars.end());
  EXPECT_EQ(text, std::string(bytes.begin(), bytes.end()));
  return text;
}

TEST(ReadAtBeginningOfFile, GivesAsManyBytesAsTheFileHas) {
  const TempFolder folder;
  const std::string bytes(
      "01\0\xFF\r\n\xEF\xBB\xBF"
      "9",
      10);
  WriteBytes(folder.Path() / "file", bytes);
  const std::wstring path = folder.File(L"file");
  for (std::size_t count = 0; count <= 12; ++count) {
    EXPECT_EQ(Beginning(path, count), bytes.substr(0, count)) << count;
  }
  EXPECT_EQ(Beginning(path, 4096), bytes);
  WriteBytes(folder.Path() / "file", "");
  EXPECT_EQ(Beginning(path, 10), "");
}

TEST(ReadAtBeginningOfFile, ReadsMoreThanTheFilesBuffer) {
  const TempFolder folder;
  std::string bytes(300'000, '\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i % 251);
  WriteBytes(folder.Path() / "file", bytes);
  for (const std::size_t count : {65'536U, 65'537U, 299'999U, 300'000U, 300'001U}) {
    EXPECT_TRUE(Beginning(folder.File(L"file"), count) == bytes.substr(0, count)) << count;
  }
}

TEST(ReadAtBeginningOfFile, GivesNothingWhereThereIsNoFile) {
  const TempFolder folder;
  EXPECT_EQ(Beginning(folder.File(L"missing"), 10), "");
  EXPECT_EQ(Beginning(folder.Path().wstring(), 10), "") << "a folder";
  EXPECT_EQ(Beginning(L"", 10), "");
  EXPECT_FALSE(std::filesystem::exists(folder.Path() / "missing"));
}

TEST(ReadAtBeginningOfFile, GivesNothingOfAFileThatCannotBeRead) {
  EXPECT_EQ(Beginning(L"/proc/self/mem", 10), "");
}

// Opening a pipe that nobody writes to would wait for ever; reading one would take its bytes.
TEST(ReadAtBeginningOfFile, OpensNothingForACountOfZero) {
  const TempFolder folder;
  const std::string name = (folder.Path() / "pipe").string();
  ASSERT_EQ(::mkfifo(name.c_str(), 0600), 0);
  EXPECT_EQ(Beginning(folder.File(L"pipe"), 0), "");
}

TEST(ReadAtBeginningOfFile, GivesNothingForACountThatNoVectorHas) {
  const TempFolder folder;
  WriteBytes(folder.Path() / "file", "abc");
  EXPECT_EQ(Beginning(folder.File(L"file"), SIZE_MAX), "");
}

TEST(ReadAtBeginningOfFile, DiffersInTheElementsAlone) {
  static_assert(std::is_same_v<decltype(ReadCharsAtBeginningOfFile(L"", 0)), std::vector<char>>);
  static_assert(
      std::is_same_v<decltype(ReadBytesAtBeginningOfFile(L"", 0)), std::vector<unsigned char>>);
}

TEST(ReadAtBeginningOfFile, ClosesTheFile) {
  const TempFolder folder;
  WriteBytes(folder.Path() / "file", "abc");
  const auto openFiles = [] {
    std::ptrdiff_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
      count += entry.path().empty() ? 0 : 1;
    }
    return count;
  };
  const auto before = openFiles();
  Beginning(folder.File(L"file"), 2);
  Beginning(folder.File(L"file"), SIZE_MAX);
  EXPECT_EQ(openFiles(), before);
}

// Numbers in the user's notation.

// The user's decimal character while the object lives.
class ScopedDecimal {
 public:
  explicit ScopedDecimal(wchar_t decimal) { Info().SetDefDecimalChar(decimal); }
  ~ScopedDecimal() { Info().SetDefDecimalChar(before_); }
  ScopedDecimal(const ScopedDecimal&) = delete;
  ScopedDecimal& operator=(const ScopedDecimal&) = delete;

 private:
  static CSystemInfo& Info() { return Singleton<CSystemInfo>::Instance(); }

  wchar_t before_ = Info().DefDecimalChar();
};

std::wstring AllAscii() {
  std::wstring all;
  for (wchar_t c = 0; c < 128; ++c) all += c;
  return all;
}

// The text with each character of `from` replaced by that of `to` at the same place.
std::wstring Translated(std::wstring text, std::wstring_view from, std::wstring_view to) {
  for (wchar_t& c : text) {
    const std::size_t at = from.find(c);
    if (at != from.npos) c = to[at];
  }
  return text;
}

TEST(ConvertNumeric, ChangesNothingWhereTheUserWritesAPoint) {
  const ScopedDecimal decimal(L'.');
  EXPECT_EQ(ConvertNumericToAppLocale(AllAscii()), AllAscii());
  EXPECT_EQ(ConvertNumericFromAppLocale(AllAscii()), AllAscii());
  EXPECT_EQ(ConvertNumericToAppLocale(L"1.5,2.5"), L"1.5,2.5");
}

TEST(ConvertNumeric, WritesDecimalCommasAndSemicolons) {
  const ScopedDecimal decimal(L',');
  EXPECT_EQ(ConvertNumericToAppLocale(L"1.5,2.5"), L"1,5;2,5");
  EXPECT_EQ(ConvertNumericFromAppLocale(L"1,5;2,5"), L"1.5,2.5");
  EXPECT_EQ(ConvertNumericToAppLocale(L"-1.5e+3, .5,,7."), L"-1,5e+3; ,5;;7,");
  EXPECT_EQ(ConvertNumericFromAppLocale(L"-1,5e+3; ,5;;7,"), L"-1.5e+3, .5,,7.");
  EXPECT_EQ(ConvertNumericToAppLocale(L""), L"");
  EXPECT_EQ(ConvertNumericFromAppLocale(L""), L"");
}

TEST(ConvertNumeric, ChangesSeparatorsAndDecimalCharactersAlone) {
  const std::wstring all = AllAscii() + L"\u00A0\u066B\u066C\u2019";
  for (const wchar_t d : {L',', L'\u066B', L'\'', L'_', L';'}) {
    const ScopedDecimal decimal(d);
    EXPECT_EQ(ConvertNumericToAppLocale(all), Translated(all, L",.", std::wstring{L';', d}))
        << static_cast<int>(d);
    // A semicolon that is the decimal character too is a separator first.
    EXPECT_EQ(ConvertNumericFromAppLocale(all), Translated(all, std::wstring{L';', d}, L",."))
        << static_cast<int>(d);
  }
}

TEST(ConvertNumeric, ComesBack) {
  for (const wchar_t d : {L',', L'\u066B', L'.'}) {
    const ScopedDecimal decimal(d);
    for (const wchar_t* text : {L"1.5,2.5", L"", L".,.,", L"1e-5 , 2"}) {
      EXPECT_EQ(ConvertNumericFromAppLocale(ConvertNumericToAppLocale(text)), text);
    }
  }
}

TEST(ConvertNumeric, KeepsNulCharacters) {
  const ScopedDecimal decimal(L',');
  const std::wstring text(L"1.5\0.5", 6);
  EXPECT_EQ(ConvertNumericToAppLocale(text), std::wstring(L"1,5\0,5", 6));
  EXPECT_EQ(ConvertNumericFromAppLocale(ConvertNumericToAppLocale(text)), text);
}

// Awkward characters.

TEST(ReplaceCertainCharsInString, ReplacesTheDefaultSetForANullPointer) {
  EXPECT_EQ(ReplaceCertainCharsInString("\"a\",'b',c\r\n", nullptr, ' '), " a   b  c  ");
  EXPECT_EQ(ReplaceCertainCharsInString(L"\"a\",'b',c\r\n", nullptr, L' '), L" a   b  c  ");
}

TEST(ReplaceCertainCharsInString, HasFiveCharactersInTheDefaultSet) {
  for (int code = 0; code < 256; ++code) {
    const char c = static_cast<char>(code);
    const bool isAwkward = "\r\n,\"'"sv.find(c) != std::string_view::npos;
    EXPECT_EQ(ReplaceCertainCharsInString(std::string(1, c), nullptr, '#'),
              std::string(1, isAwkward ? '#' : c))
        << code;
    const wchar_t wide = static_cast<wchar_t>(code);
    EXPECT_EQ(ReplaceCertainCharsInString(std::wstring(1, wide), nullptr, L'#'),
              std::wstring(1, isAwkward ? L'#' : wide))
        << code;
  }
}

TEST(ReplaceCertainCharsInString, ReplacesTheGivenSetAlone) {
  EXPECT_EQ(ReplaceCertainCharsInString("a,b;c\"d", ";a", '_'), "_,b_c\"d");
  EXPECT_EQ(ReplaceCertainCharsInString(L"a,b;c\"d\u20AC", L";a\u20AC", L'_'), L"_,b_c\"d_");
  EXPECT_EQ(ReplaceCertainCharsInString("\x80\xFF", "\xFF", '_'), "\x80_");
}

TEST(ReplaceCertainCharsInString, ReplacesNothingForAnEmptySet) {
  EXPECT_EQ(ReplaceCertainCharsInString("\"a\",\r\n", "", '_'), "\"a\",\r\n");
  EXPECT_EQ(ReplaceCertainCharsInString(L"\"a\",\r\n", L"", L'_'), L"\"a\",\r\n");
}

TEST(ReplaceCertainCharsInString, KeepsNulCharactersAndTheLength) {
  EXPECT_EQ(ReplaceCertainCharsInString(std::string("a\0,", 3), nullptr, '_'),
            std::string("a\0_", 3));
  EXPECT_EQ(ReplaceCertainCharsInString(std::wstring(L"a\0,", 3), nullptr, L'_'),
            std::wstring(L"a\0_", 3));
  EXPECT_EQ(ReplaceCertainCharsInString("a,b", ",", '\0'), std::string("a\0b", 3));
  EXPECT_EQ(ReplaceCertainCharsInString(L"a,b", L",", L'\0'), std::wstring(L"a\0b", 3));
  EXPECT_EQ(ReplaceCertainCharsInString("", nullptr, '_'), "");
  EXPECT_EQ(ReplaceCertainCharsInString(L"", nullptr, L'_'), L"");
}

TEST(ReplaceCertainCharsInString, ReplacesEachCharacterOnce) {
  EXPECT_EQ(ReplaceCertainCharsInString("abab", "ab", 'a'), "aaaa");
  EXPECT_EQ(ReplaceCertainCharsInString(L"abab", L"ab", L'b'), L"bbbb");
}

}  // namespace
}  // namespace trovan::test
