// The buffered file beside a plain model of a file in memory: whatever the order of operations,
// nobody sees the buffer.
#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <limits>
#include <random>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include <corvel/BufferedFile.h>

#include "support/TempFolder.h"

namespace corvel {
namespace {

using trovan::test::ReadBytes;
using trovan::test::TempFolder;
using trovan::test::WriteBytes;

// What a file is, without a buffer.
class Model {
 public:
  explicit Model(std::string bytes) : bytes_(std::move(bytes)) {}

  std::string Read(std::size_t count) {
    std::string got;
    const std::size_t allowed = std::min(count, readEnd_ - std::min(readEnd_, position_));
    if (pushedBack_ >= 0 && allowed > 0) {
      got += static_cast<char>(pushedBack_);
      pushedBack_ = -1;
      ++position_;
    }
    if (position_ < bytes_.size()) {
      const std::string rest = bytes_.substr(position_, allowed - got.size());
      got += rest;
      position_ += rest.size();
    }
    if (got.size() < count) end_ = true;
    return got;
  }

  bool ReadLine(std::string& line) {
    line.clear();
    for (std::string byte = Read(1); !byte.empty(); byte = Read(1)) {
      if (byte == "\n") return true;
      line += byte;
    }
    return !line.empty();
  }

  void Write(const std::string& written) {
    if (written.empty()) return;
    pushedBack_ = -1;
    if (bytes_.size() < position_ + written.size()) bytes_.resize(position_ + written.size());
    bytes_.replace(position_, written.size(), written);
    position_ += written.size();
  }

  void Seek(std::size_t position) {
    position_ = position;
    pushedBack_ = -1;
    end_ = false;
  }

  int UnGetc(int byte) {
    if (pushedBack_ >= 0 || position_ == 0) return -1;
    pushedBack_ = byte;
    --position_;
    end_ = false;
    return byte;
  }

  void SetReadEnd(std::size_t position) {
    readEnd_ = position;
    end_ = false;
  }

  void Reopen() {
    Seek(0);
    readEnd_ = kNoReadEnd;
  }

  // The byte in front of the position, or any where there is none.
  int LastByte() const {
    if (position_ == 0 || position_ > bytes_.size()) return 'x';
    return static_cast<unsigned char>(bytes_[position_ - 1]);
  }

  const std::string& Bytes() const { return bytes_; }
  std::size_t Position() const { return position_; }
  bool EndOfFile() const { return end_; }

 private:
  static constexpr std::size_t kNoReadEnd = std::numeric_limits<std::size_t>::max();

  std::string bytes_;
  std::size_t position_ = 0;  // the byte that was pushed back counted off
  int pushedBack_ = -1;
  bool end_ = false;
  std::size_t readEnd_ = kNoReadEnd;
};

class BufferedFileModelTest : public testing::TestWithParam<unsigned> {
 protected:
  static constexpr std::size_t kLargestFile = 600'000;

  BufferedFileModelTest() {
    WriteBytes(disk_, model_.Bytes());
    file_.Open(path_, "r+b", kFileExclusive, false);
  }

  std::size_t Below(std::size_t bound) { return random_() % bound; }

  // Sizes around the pages and the buffer that the file reads by, and everyday ones.
  std::size_t AnySize() {
    constexpr std::size_t kEdges[] = {0,     1,     2,     4095,    4096,   4097,
                                      65535, 65536, 65537, 131'073, 200'000};
    return Below(4) == 0 ? kEdges[Below(std::size(kEdges))] : Below(300);
  }

  std::string Text(std::size_t size) {
    std::string text(size, '\0');
    for (char& byte : text) byte = Below(100) == 0 ? '\n' : static_cast<char>(random_());
    return text;
  }

  void Read(std::size_t count) {
    std::string got(count + 1, '\0');
    got.resize(file_.Read(got.data(), count));
    ASSERT_TRUE(got == model_.Read(count)) << "read of " << count;
  }

  void Write(std::size_t count) {
    if (model_.Position() + count > kLargestFile) return;
    const std::string bytes = Text(count);
    file_.Write(bytes.data(), bytes.size());
    model_.Write(bytes);
  }

  void WriteNowAndThen() {
    if (Below(10) == 0) Write(Below(50));
  }

  void Print() {
    if (model_.Position() + 1'000 > kLargestFile) return;
    const int width = static_cast<int>(Below(1'000));
    ASSERT_EQ(file_.Printf("%*d", width, 7), std::max(width, 1));
    model_.Write(std::string(static_cast<std::size_t>(std::max(width - 1, 0)), ' ') + "7");
  }

  void SeekTo(std::size_t position) {
    const auto target = static_cast<long long>(position);
    switch (Below(3)) {
      case 0:
        ASSERT_EQ(file_.Seek(target, kFileBegin), target);
        break;
      case 1:
        ASSERT_EQ(file_.Seek(target - file_.GetPosition(), kFileCurrent), target);
        break;
      default:
        ASSERT_EQ(file_.Seek(target - file_.GetLength(), kFileEnd), target);
        break;
    }
    model_.Seek(position);
  }

  void Getc() {
    const std::string expected = model_.Read(1);
    ASSERT_EQ(file_.Getc(), expected.empty() ? -1 : static_cast<unsigned char>(expected[0]));
  }

  // Half of the time the byte that was just read.
  void UnGetc() {
    const int byte = Below(2) == 0 ? model_.LastByte() : static_cast<int>(Below(256));
    ASSERT_EQ(file_.UnGetc(byte), model_.UnGetc(byte));
  }

  // What a scanner takes from the buffer is what a read would give.
  void TakeBuffered() {
    const auto bytes = file_.Buffered();
    const std::size_t count = Below(bytes.size() + 1);
    const std::string taken(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count));
    file_.SkipBuffered(count);
    ASSERT_TRUE(taken == model_.Read(count)) << count << " of " << bytes.size();
  }

  void SetReadEnd() {
    if (Below(2) == 0) {
      file_.SetReadEnd(CBufferedFile::kNoReadEnd);
      return model_.SetReadEnd(kLargestFile * 2);
    }
    const std::size_t near = model_.Position() + Below(2'000);
    const std::size_t end = Below(2) == 0 ? near : Below(model_.Bytes().size() + 100);
    file_.SetReadEnd(static_cast<long long>(end));
    model_.SetReadEnd(end);
  }

  void ReadLine() {
    std::string line;
    std::string expected;
    ASSERT_EQ(file_.ReadString(line), model_.ReadLine(expected));
    ASSERT_TRUE(line == expected);
  }

  void Reopen() {
    file_.Open(path_, "r+b", kFileExclusive, false);
    model_.Reopen();
  }

  void AnyOperation() {
    switch (Below(24)) {
      case 0:
      case 1:
      case 2:
      case 3:
        return Read(AnySize());
      case 4:
      case 5:
      case 6:
      case 7:
        return Write(AnySize());
      case 8:
        return SeekTo(Below(model_.Bytes().size() + 100));
      case 9:  // near
        return SeekTo(model_.Position() - std::min(model_.Position(), Below(5'000)));
      case 10:
        return SeekTo(std::min(model_.Position() + Below(5'000), kLargestFile));
      case 11:
      case 12:
      case 13:
        return Getc();
      case 14:
      case 15:
        return UnGetc();
      case 16:
        return ReadLine();
      case 17:
        return Print();
      case 18:
        return file_.Flush();
      case 19:
      case 20:
        return TakeBuffered();
      case 21:
        return UnGetc();
      case 22:
        return Below(4) == 0 ? SetReadEnd() : UnGetc();
      default:
        return Below(20) == 0 ? Reopen() : Getc();
    }
  }

  void ExpectSameState() {
    ASSERT_EQ(file_.GetPosition(), static_cast<long long>(model_.Position()));
    ASSERT_EQ(file_.GetLength(), static_cast<long long>(model_.Bytes().size()));
    ASSERT_EQ(file_.EndOfFile(), model_.EndOfFile());
  }

  void ExpectSameBytes() {
    file_.Close();
    EXPECT_TRUE(ReadBytes(disk_) == model_.Bytes());
  }

  std::mt19937 random_{GetParam()};
  TempFolder folder_;
  const std::filesystem::path disk_ = folder_.Path() / "file";
  const std::wstring path_ = folder_.File(L"file");
  CBufferedFile file_;
  Model model_{Text(300'000)};
};

TEST_P(BufferedFileModelTest, AgreesWithTheModelInAnyOrder) {
  for (int step = 0; step < 4'000; ++step) {
    SCOPED_TRACE(step);
    ASSERT_NO_FATAL_FAILURE(AnyOperation());
    ASSERT_NO_FATAL_FAILURE(ExpectSameState());
  }
  ExpectSameBytes();
}

TEST_P(BufferedFileModelTest, AgreesWithTheModelForward) {
  while (!model_.EndOfFile()) {
    ASSERT_NO_FATAL_FAILURE(Read(AnySize()));
    WriteNowAndThen();
    ASSERT_NO_FATAL_FAILURE(ExpectSameState());
  }
  ExpectSameBytes();
}

TEST_P(BufferedFileModelTest, AgreesWithTheModelBackward) {
  std::size_t at = model_.Bytes().size();
  while (at > 0) {
    const std::size_t count = std::min(AnySize(), at);
    at -= count;
    ASSERT_NO_FATAL_FAILURE(SeekTo(at));
    ASSERT_NO_FATAL_FAILURE(Read(count));
    WriteNowAndThen();
    ASSERT_NO_FATAL_FAILURE(ExpectSameState());
  }
  ExpectSameBytes();
}

TEST_P(BufferedFileModelTest, AgreesWithTheModelOfRecordsThatAreReadAndWrittenBack) {
  for (const bool backward : {false, true}) {
    const std::size_t size = 1 + Below(20'000);
    const std::size_t records = model_.Bytes().size() / size;
    for (std::size_t record = 0; record < records; ++record) {
      const std::size_t at = (backward ? records - 1 - record : record) * size;
      ASSERT_NO_FATAL_FAILURE(SeekTo(at));
      ASSERT_NO_FATAL_FAILURE(Read(size));
      ASSERT_NO_FATAL_FAILURE(SeekTo(at));
      Write(size);
      if (Below(2) == 0) file_.Flush();
      ASSERT_NO_FATAL_FAILURE(ExpectSameState());
    }
  }
  ExpectSameBytes();
}

TEST_P(BufferedFileModelTest, AgreesWithTheModelHereAndThere) {
  for (int step = 0; step < 1'000; ++step) {
    ASSERT_NO_FATAL_FAILURE(SeekTo(Below(model_.Bytes().size() + 10)));
    ASSERT_NO_FATAL_FAILURE(Read(Below(5'000)));
    WriteNowAndThen();
    ASSERT_NO_FATAL_FAILURE(ExpectSameState());
  }
  ExpectSameBytes();
}

INSTANTIATE_TEST_SUITE_P(Seeds, BufferedFileModelTest, testing::Values(1U, 2U, 3U, 20240611U));

}  // namespace
}  // namespace corvel
