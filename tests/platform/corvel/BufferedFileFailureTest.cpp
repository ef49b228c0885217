// What happens when the system refuses, and on what is no file on a disk.
#include <fcntl.h>
#include <random>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <corvel/BufferedFile.h>
#include <corvel/Exception.h>

#include "support/CapturedLog.h"
#include "support/FileSizeLimit.h"
#include "support/TempFolder.h"

namespace corvel {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::ThrowsMessage;
using trovan::test::CapturedLog;
using trovan::test::FileSizeLimit;
using trovan::test::IgnoredSignal;
using trovan::test::ReadBytes;
using trovan::test::TempFolder;

constexpr std::size_t kBuffer = 64 * 1024;
// Takes every byte into the buffer and none beyond it, as a full disk.
constexpr const wchar_t* kFullDisk = L"/dev/full";
// This program's memory; none is at the start, where a read fails.
constexpr const wchar_t* kUnreadable = L"/proc/self/mem";

// A pipe. Each Put arrives by itself: no read gives more than one of them.
class Pipe {
 public:
  Pipe() {
    if (::pipe2(ends_, O_CLOEXEC | O_DIRECT) != 0) throw std::runtime_error("no pipe");
    ::fcntl(ends_[1], F_SETPIPE_SZ, 1 << 20);
  }
  ~Pipe() {
    CloseReadEnd();
    CloseWriteEnd();
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  void Put(const std::string& bytes) {
    if (::write(ends_[1], bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) {
      throw std::runtime_error("the pipe is full");
    }
  }
  std::string TakeAll() {
    std::string all;
    char part[4096];
    for (ssize_t got; (got = ::read(ends_[0], part, sizeof part)) > 0;) {
      all.append(part, static_cast<std::size_t>(got));
    }
    return all;
  }
  void CloseReadEnd() { CloseEnd(ends_[0]); }
  void CloseWriteEnd() { CloseEnd(ends_[1]); }
  std::wstring ReadPath() const { return L"/dev/fd/" + std::to_wstring(ends_[0]); }
  std::wstring WritePath() const { return L"/dev/fd/" + std::to_wstring(ends_[1]); }

 private:
  static void CloseEnd(int& end) {
    if (end >= 0) ::close(end);
    end = -1;
  }

  int ends_[2] = {-1, -1};
};

class BufferedFileFailureTest : public testing::Test {
 protected:
  void Open(const std::wstring& path, const char* mode) {
    file_.Open(path, mode, kFileExclusive, false);
  }
  std::string Read(std::size_t count) {
    std::string bytes(count + 1, '\0');
    bytes.resize(file_.Read(bytes.data(), count));
    return bytes;
  }
  void Write(const std::string& bytes) { file_.Write(bytes.data(), bytes.size()); }

  CBufferedFile file_;
};

const auto kSaysThatTheDiskIsFull =
    ThrowsMessage<Exception>(AllOf(HasSubstr("/dev/full"), HasSubstr("No space left on device")));

// A write that fails.

TEST_F(BufferedFileFailureTest, RaisesWhenABufferedWriteFailsLater) {
  Open(kFullDisk, "wb");
  EXPECT_NO_THROW(Write("abc"));
  EXPECT_THAT([&] { file_.Flush(); }, kSaysThatTheDiskIsFull);
  EXPECT_TRUE(file_.IsOpen());
  EXPECT_TRUE(file_.CloseNoThrow(true));
}

TEST_F(BufferedFileFailureTest, RaisesWhenALargeWriteFails) {
  Open(kFullDisk, "wb");
  EXPECT_THAT([&] { Write(std::string(3 * kBuffer, 'x')); }, kSaysThatTheDiskIsFull);
  EXPECT_EQ(file_.GetPosition(), 0);
  EXPECT_NO_THROW(file_.Close()) << "nothing rests in the buffer";
}

TEST_F(BufferedFileFailureTest, RaisesWhenTheBufferOverflows) {
  Open(kFullDisk, "wb");
  const std::string part(1'000, 'x');
  EXPECT_THAT(
      [&] {
        for (std::size_t written = 0; written <= kBuffer; written += part.size()) Write(part);
      },
      kSaysThatTheDiskIsFull);
  EXPECT_FALSE(file_.CloseNoThrow(false));
}

TEST_F(BufferedFileFailureTest, RaisesTheLateFailureOfPrintf) {
  Open(kFullDisk, "wb");
  file_.Printf("%d", 1);
  EXPECT_THAT([&] { file_.Flush(); }, kSaysThatTheDiskIsFull);
  EXPECT_FALSE(file_.CloseNoThrow(false));
}

TEST_F(BufferedFileFailureTest, ClosesAndDropsItsBytesThoughCloseRaises) {
  Open(kFullDisk, "wb");
  Write("abc");
  EXPECT_THAT([&] { file_.Close(); }, kSaysThatTheDiskIsFull);
  EXPECT_FALSE(file_.IsOpen());
  EXPECT_NO_THROW(file_.Close()) << "the bytes are gone";
  TempFolder folder;
  Open(folder.File(L"next"), "wb");
  Write("x");
  file_.Close();
  EXPECT_EQ(ReadBytes(folder.Path() / "next"), "x");
}

TEST_F(BufferedFileFailureTest, ReturnsFalseWhereCloseMayNotRaise) {
  Open(kFullDisk, "wb");
  Write("abc");
  EXPECT_FALSE(file_.CloseNoThrow(false));
  EXPECT_FALSE(file_.IsOpen());
}

TEST_F(BufferedFileFailureTest, ClosesWellWhenTheBytesAreDroppedOnPurpose) {
  Open(kFullDisk, "wb");
  Write("abc");
  EXPECT_TRUE(file_.CloseNoThrow(true));
}

TEST_F(BufferedFileFailureTest, RaisesTheFailureOfTheFormerFileWhenItOpensAnother) {
  TempFolder folder;
  Open(kFullDisk, "wb");
  Write("abc");
  EXPECT_THAT([&] { Open(folder.File(L"next"), "wb"); }, kSaysThatTheDiskIsFull);
  EXPECT_FALSE(file_.IsOpen());
  EXPECT_FALSE(std::filesystem::exists(folder.Path() / "next"));
}

TEST_F(BufferedFileFailureTest, LogsWhatItsDestructorCannotWrite) {
  const CapturedLog log;
  {
    CBufferedFile file;
    file.Open(kFullDisk, "wb", kFileExclusive, false);
    file.Write("abc", 3);
  }
  ASSERT_EQ(log.Messages().size(), 1U);
  EXPECT_THAT(log.Messages()[0].text,
              AllOf(HasSubstr(L"/dev/full"), HasSubstr(L"No space left on device")));
}

TEST_F(BufferedFileFailureTest, SaysNothingWhenItsDestructorWritesAll) {
  const CapturedLog log;
  TempFolder folder;
  {
    CBufferedFile file;
    file.Open(folder.File(L"file"), "wb", kFileExclusive, false);
    file.Write("abc", 3);
  }
  EXPECT_TRUE(log.Messages().empty());
}

// A write of which the system takes only a part.

TEST_F(BufferedFileFailureTest, RaisesAfterThePartThatALargeWriteGotThrough) {
  TempFolder folder;
  const std::wstring path = folder.File(L"limited");
  std::string message;
  long long position = -1;
  {
    const FileSizeLimit limit(100'000);
    Open(path, "wb");
    try {
      Write(std::string(3 * kBuffer, 'x'));
    } catch (const Exception& error) {
      message = error.what();
    }
    position = file_.GetPosition();
  }
  EXPECT_THAT(message, AllOf(HasSubstr("limited"), HasSubstr("File too large")));
  EXPECT_EQ(position, 100'000);
  Write("end");  // goes on where the system stopped
  file_.Close();
  EXPECT_TRUE(ReadBytes(folder.Path() / "limited") == std::string(100'000, 'x') + "end");
}

TEST_F(BufferedFileFailureTest, WritesTheRestOfItsBufferWhenTheSystemTakesItAgain) {
  TempFolder folder;
  Open(folder.File(L"limited"), "w+b");
  std::string bytes;
  for (int i = 0; i < 5'000; ++i) bytes += std::to_string(i);
  Write(bytes);
  std::string message;
  {
    const FileSizeLimit limit(10'001);
    try {
      file_.Flush();
    } catch (const Exception& error) {
      message = error.what();
    }
  }
  EXPECT_THAT(message, HasSubstr("File too large"));
  EXPECT_EQ(file_.GetPosition(), static_cast<long long>(bytes.size()));
  EXPECT_EQ(file_.GetLength(), static_cast<long long>(bytes.size()));
  file_.Seek(0, kFileBegin);
  EXPECT_TRUE(Read(bytes.size()) == bytes);
  file_.Close();
  EXPECT_TRUE(ReadBytes(folder.Path() / "limited") == bytes);
}

TEST_F(BufferedFileFailureTest, MovesNothingWhenASeekCannotWriteTheBuffer) {
  TempFolder folder;
  Open(folder.File(L"limited"), "w+b");
  Write("abcdef");
  bool raised = false;
  {
    const FileSizeLimit limit(2);
    try {
      file_.Seek(1'000'000, kFileBegin);
    } catch (const Exception&) {
      raised = true;
    }
  }
  EXPECT_TRUE(raised);
  EXPECT_EQ(file_.GetPosition(), 6);
  file_.Close();
  EXPECT_EQ(ReadBytes(folder.Path() / "limited"), "abcdef");
}

// A read that fails.

TEST_F(BufferedFileFailureTest, RaisesWhenAReadFails) {
  Open(kUnreadable, "rb");
  const auto saysWhy =
      ThrowsMessage<Exception>(AllOf(HasSubstr("/proc/self/mem"), HasSubstr("Input/output error")));
  EXPECT_THAT([&] { Read(1); }, saysWhy);
  EXPECT_THAT([&] { Read(2 * kBuffer); }, saysWhy);
  EXPECT_THAT([&] { file_.Getc(); }, saysWhy);
  EXPECT_FALSE(file_.EndOfFile());
  EXPECT_EQ(file_.GetPosition(), 0);
}

TEST_F(BufferedFileFailureTest, EndsALineThatCannotBeRead) {
  Open(kUnreadable, "rb");
  std::string line = "old";
  EXPECT_FALSE(file_.ReadString(line));
  EXPECT_TRUE(file_.IsOpen());
}

// Pipes.

TEST_F(BufferedFileFailureTest, ReadsAPipeToItsEndThoughTheSystemGivesItInParts) {
  std::mt19937 random(20240611);
  for (const std::size_t transfer :
       {std::size_t{1}, std::size_t{100}, std::size_t{5'000}, kBuffer, 10 * kBuffer}) {
    Pipe pipe;
    std::string all;
    for (int i = 0; i < 150; ++i) {
      const std::string part(1 + random() % 4'000, static_cast<char>(i));
      pipe.Put(part);
      all += part;
    }
    Open(pipe.ReadPath(), "rb");
    pipe.CloseWriteEnd();
    std::string got;
    do {
      const std::string part = Read(transfer);
      EXPECT_TRUE(part.size() == transfer || file_.EndOfFile()) << "short before the end";
      got += part;
      EXPECT_EQ(file_.GetPosition(), static_cast<long long>(got.size()));
    } while (!file_.EndOfFile());
    EXPECT_TRUE(got == all) << transfer;
  }
}

TEST_F(BufferedFileFailureTest, ReadsLinesAndPushedBackBytesOfAPipe) {
  Pipe pipe;
  for (const char* part : {"on", "e\ntw", "o", "\n", "three"}) pipe.Put(part);
  Open(pipe.ReadPath(), "rb");
  pipe.CloseWriteEnd();
  std::string line;
  EXPECT_TRUE(file_.ReadString(line));
  EXPECT_EQ(line, "one");
  EXPECT_EQ(file_.Getc(), 't');
  EXPECT_EQ(file_.UnGetc('T'), 'T');
  EXPECT_TRUE(file_.ReadString(line));
  EXPECT_EQ(line, "Two");
  EXPECT_TRUE(file_.ReadString(line));
  EXPECT_EQ(line, "three");
  EXPECT_FALSE(file_.ReadString(line));
}

TEST_F(BufferedFileFailureTest, ReadsANamedPipe) {
  TempFolder folder;
  const std::string name = (folder.Path() / "pipe").string();
  ASSERT_EQ(::mkfifo(name.c_str(), 0600), 0);
  const int other = ::open(name.c_str(), O_RDWR | O_CLOEXEC);  // both ways: waits for nobody
  ASSERT_GE(other, 0);
  ASSERT_EQ(::write(other, "abc", 3), 3);
  Open(folder.File(L"pipe"), "rb");
  ::close(other);
  EXPECT_EQ(Read(9), "abc");
}

TEST_F(BufferedFileFailureTest, WritesAPipe) {
  for (const char* mode : {"wb", "ab"}) {
    Pipe pipe;
    Open(pipe.WritePath(), mode);
    pipe.CloseWriteEnd();
    Write("abc");
    file_.Flush();
    const std::string large(2 * kBuffer, 'x');
    Write(large);
    file_.Printf("%d", 7);
    EXPECT_EQ(file_.GetPosition(), static_cast<long long>(4 + large.size()));
    file_.Close();
    EXPECT_TRUE(pipe.TakeAll() == "abc" + large + "7") << mode;
  }
}

TEST_F(BufferedFileFailureTest, RaisesWhenNobodyReadsThePipe) {
  const IgnoredSignal brokenPipe(SIGPIPE);
  Pipe pipe;
  Open(pipe.WritePath(), "wb");
  pipe.CloseReadEnd();
  Write("abc");
  EXPECT_THAT([&] { file_.Close(); }, ThrowsMessage<Exception>(HasSubstr("Broken pipe")));
}

TEST_F(BufferedFileFailureTest, RefusesToSeekInAPipe) {
  Pipe pipe;
  pipe.Put("abc");
  Open(pipe.ReadPath(), "rb");
  pipe.CloseWriteEnd();
  EXPECT_EQ(file_.Getc(), 'a');
  EXPECT_THROW(file_.Seek(0, kFileBegin), Exception);
  EXPECT_THROW(file_.GetLength(), Exception);
  EXPECT_EQ(Read(9), "bc");
}

TEST_F(BufferedFileFailureTest, RefusesToOpenAPipeForBothDirections) {
  Pipe pipe;
  EXPECT_THROW(Open(pipe.ReadPath(), "r+b"), Exception);
  EXPECT_THROW(Open(pipe.ReadPath(), "w+b"), Exception);
  EXPECT_FALSE(file_.IsOpen());
}

TEST_F(BufferedFileFailureTest, ReadsADeviceThatHasNoEnd) {
  Open(L"/dev/zero", "rb");
  EXPECT_TRUE(Read(3 * kBuffer + 1) == std::string(3 * kBuffer + 1, '\0'));
  EXPECT_FALSE(file_.EndOfFile());
}

}  // namespace
}  // namespace corvel
