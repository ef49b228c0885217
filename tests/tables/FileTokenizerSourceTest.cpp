// Sources that are no plain files: such as fail, at once or in the middle of a token, and pipes.
#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <corvel/BufferedFile.h>
#include <corvel/Exception.h>
#include <trovan/FileTokenizer.h>

#include "tables/FileTokenizerFixture.h"

namespace trovan::test {
namespace {

using testing::HasSubstr;
using testing::ThrowsMessage;

// Sources that fail.

class FileTokenizerFailureTest : public FileTokenizerTest {
 protected:
  // Each way to read raises what the source does.
  void ExpectEachCallRaises(const char* reason) {
    const auto saysWhy = ThrowsMessage<corvel::Exception>(HasSubstr(reason));
    tokens_.SetSource(&file_);
    std::string token;
    int number = 5;
    double real = 5;
    bool flag = true;
    EXPECT_THAT([&] { tokens_.Parse(token, false); }, saysWhy);
    EXPECT_THAT([&] { tokens_.Parse(token, true); }, saysWhy);
    EXPECT_THAT([&] { tokens_.Parse(number); }, saysWhy);
    EXPECT_THAT([&] { tokens_.Parse(real); }, saysWhy);
    EXPECT_THAT([&] { tokens_.Parse(flag); }, saysWhy);
    EXPECT_EQ(number, 5);
    EXPECT_EQ(real, 5);
    EXPECT_TRUE(flag);
    EXPECT_FALSE(tokens_.LastTokenQuoted());
    EXPECT_EQ(tokens_.LastTokenTermChar(), '\0');
    EXPECT_EQ(tokens_.GetNumTokensParsed(), 0U);
    EXPECT_EQ(tokens_.GetNumLinesParsed(), 0U);
  }
};

TEST_F(FileTokenizerFailureTest, RaisesWhatAClosedFileDoes) {
  ExpectEachCallRaises("not open");
  EXPECT_THROW(static_cast<void>(tokens_.GetFilePosition()), corvel::Exception);
  EXPECT_FALSE(tokens_.EndOfFile());
}

TEST_F(FileTokenizerFailureTest, RaisesWhatAFileForWritingDoes) {
  file_.Open(folder_.File(L"text.txt"), "wb", corvel::kFileShareRead, false);
  file_.Write("a,b", 3);
  file_.Seek(0, corvel::kFileBegin);
  ExpectEachCallRaises("writing only");
}

TEST_F(FileTokenizerFailureTest, RaisesWhatAReadErrorDoes) {
  file_.Open(L"/proc/self/mem", "rb", corvel::kFileShareRead, false);
  ExpectEachCallRaises("Input/output error");
}

// A text in this program's memory, behind which a page follows that cannot be read: the program's
// memory as a file gives the text, and then no end but an error. The text fills the only page of a
// file, of which two are mapped.
class TextBeforeAnError {
 public:
  TextBeforeAnError(const std::filesystem::path& file, std::string_view text) {
    std::string page(size_ - text.size(), ' ');
    WriteBytes(file, page.append(text));
    const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    void* pages = ::mmap(nullptr, 2 * size_, PROT_READ, MAP_PRIVATE, descriptor, 0);
    ::close(descriptor);
    if (pages == MAP_FAILED) return;
    pages_ = static_cast<char*>(pages);
    text_ = pages_ + size_ - text.size();
  }
  ~TextBeforeAnError() {
    if (pages_ != nullptr) ::munmap(pages_, 2 * size_);
  }
  TextBeforeAnError(const TextBeforeAnError&) = delete;
  TextBeforeAnError& operator=(const TextBeforeAnError&) = delete;

  bool IsMade() const { return pages_ != nullptr; }
  long long Position() const {
    return static_cast<long long>(reinterpret_cast<std::uintptr_t>(text_));
  }

 private:
  std::size_t size_ = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  char* pages_ = nullptr;
  const char* text_ = nullptr;
};

TEST_F(FileTokenizerFailureTest, RaisesAReadErrorInTheMiddleOfAToken) {
  for (const char* rest : {"12", "12 ", "12\r", "'12", "'12'", " ", ""}) {
    const TextBeforeAnError text(folder_.Path() / "page", std::string("a\nb,") + rest);
    ASSERT_TRUE(text.IsMade());
    file_.Open(L"/proc/self/mem", "rb", corvel::kFileShareRead, false);
    file_.Seek(text.Position(), corvel::kFileBegin);
    tokens_.SetSource(&file_);
    tokens_.SetQuotes("'");
    EXPECT_EQ(Next(true), "a|\n") << rest;
    EXPECT_EQ(Next(true), "b|,") << rest;
    std::string token;
    EXPECT_THROW(tokens_.Parse(token, true), corvel::Exception) << rest;
    EXPECT_EQ(tokens_.LastTokenTermChar(), ',') << rest;
    EXPECT_EQ(tokens_.GetNumTokensParsed(), 2U) << rest;
    EXPECT_EQ(tokens_.GetNumLinesParsed(), 1U) << rest;
    file_.Seek(text.Position() + 4, corvel::kFileBegin);
    double value = 5;
    EXPECT_THROW(tokens_.Parse(value), corvel::Exception) << rest;
    EXPECT_EQ(value, 5) << rest;
    EXPECT_EQ(tokens_.GetNumTokensParsed(), 2U) << rest;
  }
}

// A pipe that gives one byte with each read, so that no two lie in the file's buffer together.
class SlowPipe {
 public:
  static constexpr std::size_t kCapacity = 16;

  explicit SlowPipe(std::string_view text) {
    if (::pipe2(ends_, O_DIRECT | O_CLOEXEC) != 0) return;  // each write is a packet
    for (const char c : text) written_ += ::write(ends_[1], &c, 1) == 1 ? 1 : 0;
  }
  ~SlowPipe() {
    CloseEnd(ends_[0]);
    CloseEnd(ends_[1]);
  }
  SlowPipe(const SlowPipe&) = delete;
  SlowPipe& operator=(const SlowPipe&) = delete;

  std::size_t Written() const { return written_; }
  std::wstring Path() const { return L"/dev/fd/" + std::to_wstring(ends_[0]); }
  void EndWriting() { CloseEnd(ends_[1]); }

 private:
  static void CloseEnd(int& end) {
    if (end >= 0) ::close(end);
    end = -1;
  }

  int ends_[2] = {-1, -1};
  std::size_t written_ = 0;
};

TEST_F(FileTokenizerTest, ReadsAPipeAsAFile) {
  using std::string_view_literals::operator""sv;
  constexpr std::string_view kTexts[] = {
      "a b,\"c\"d  e\n,"sv, "\"a\"\"b\" \"c\"\n"sv, "a\r \rb\r\n\fc"sv,
      "a\0 \0,\0 \xFF\n"sv, "a \n\n b"sv,           "\"a\nb\"c ,,d \t"sv,
  };
  for (const std::string_view text : kTexts) {
    ASSERT_LE(text.size(), SlowPipe::kCapacity);
    const Strings expected = AllQuoted(text);
    const unsigned lines = tokens_.GetNumLinesParsed();
    SlowPipe pipe(text);
    ASSERT_EQ(pipe.Written(), text.size());
    file_.Open(pipe.Path(), "rb", corvel::kFileShareRead, false);
    pipe.EndWriting();
    tokens_.SetSource(&file_);
    Strings all;
    do all.push_back(Next(true));
    while (all.back().compare(0, 4, "EOF ") != 0);
    EXPECT_EQ(all, expected);
    EXPECT_EQ(tokens_.GetNumLinesParsed(), lines);
    EXPECT_EQ(tokens_.GetFilePosition(), static_cast<long long>(text.size()));
    EXPECT_TRUE(tokens_.EndOfFile());
  }
}

}  // namespace
}  // namespace trovan::test
