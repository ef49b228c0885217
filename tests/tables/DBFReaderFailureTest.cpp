// Tables and memo files that the system opens but does not read: the reader answers with a status
// where the file below it raises.
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "tables/DBFReaderFixture.h"

namespace trovan::test {
namespace {

namespace fs = std::filesystem;

// A process's memory as a file: every read of what is not mapped fails, and its front never is.
constexpr const char* kUnreadable = "/proc/self/mem";

// A named pipe that holds some bytes. It has no positions: each seek in it fails.
class NamedPipe {
 public:
  NamedPipe(const fs::path& path, const std::string& bytes) {
    EXPECT_EQ(::mkfifo(path.c_str(), 0600), 0);
    end_ = ::open(path.c_str(), O_RDWR | O_CLOEXEC);  // a reader need not wait for a writer
    EXPECT_EQ(::write(end_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  }
  ~NamedPipe() { ::close(end_); }
  NamedPipe(const NamedPipe&) = delete;
  NamedPipe& operator=(const NamedPipe&) = delete;

 private:
  int end_ = -1;
};

// A page of memory below 2 GiB, in reach of the reader, with nothing mapped behind it.
class LastPage {
 public:
  explicit LastPage(char filling) : size_(static_cast<std::size_t>(::sysconf(_SC_PAGESIZE))) {
    void* const wish = reinterpret_cast<void*>(0x20000000);  // NOLINT(performance-no-int-to-ptr)
    void* const got =
        ::mmap(wish, 2 * size_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    EXPECT_EQ(got, wish);
    page_ = static_cast<char*>(got);
    ::munmap(page_ + size_, size_);
    std::memset(page_, filling, size_);
  }
  ~LastPage() { ::munmap(page_, size_); }
  LastPage(const LastPage&) = delete;
  LastPage& operator=(const LastPage&) = delete;

  // Its end, as an offset in kUnreadable.
  std::size_t End() const { return reinterpret_cast<std::size_t>(page_) + size_; }

 private:
  std::size_t size_;
  char* page_ = nullptr;
};

class DBFReaderFailureTest : public DBFReaderTest {
 protected:
  static DbfImage Towns() { return DbfImage().Field("NAME", 'C', 4).Record("Oslo").Record("Rome"); }

  fs::path Table() const { return folder_.Path() / "table.dbf"; }

  CDBFReader::DBFError Open() { return reader_.OpenFromFile(folder_.File(L"table.dbf")); }
};

TEST_F(DBFReaderFailureTest, AnswersReadForAHeaderThatCannotBeRead) {
  fs::create_symlink(kUnreadable, Table());
  EXPECT_EQ(Open(), CDBFReader::DBF_ERR_READ);
  EXPECT_TRUE(reader_.IsOpen());
}

TEST_F(DBFReaderFailureTest, AnswersReadForARecordThatCannotBeSought) {
  const NamedPipe pipe(Table(), Towns().Text());
  ASSERT_EQ(Open(), CDBFReader::DBF_OK);
  EXPECT_EQ(reader_.CountRecords(), 2U);
  EXPECT_EQ(Record(0), StatusText(CDBFReader::DBF_ERR_READ));
}

TEST_F(DBFReaderFailureTest, HasNoTableInAFileWhoseLengthCannotBeTold) {
  const NamedPipe pipe(Table(), Towns().Text());
  EXPECT_EQ(CDBFReader::CheckDBFFile(folder_.File(L"table.dbf")), -1);
}

TEST_F(DBFReaderFailureTest, AnswersReadForAMemoThatCannotBeRead) {
  WriteBytes(Table(), Towns().Text());
  fs::create_symlink(kUnreadable, folder_.Path() / "table.fpt");
  ASSERT_EQ(Open(), CDBFReader::DBF_OK);
  EXPECT_EQ(MemoBuffer(1, 255), StatusText(CDBFReader::DBF_ERR_READ));
  EXPECT_EQ(Record(1), "Rome\x1A") << "the table is read all the same";
}

TEST_F(DBFReaderFailureTest, EndsAMemoAtAByteThatCannotBeRead) {
  WriteBytes(Table(), Towns().Text());
  fs::create_symlink(kUnreadable, folder_.Path() / "table.fpt");
  ASSERT_EQ(Open(), CDBFReader::DBF_OK);
  const LastPage page('x');
  const auto lastBlock = static_cast<unsigned>((page.End() - 64) / 64);
  EXPECT_EQ(Memo(lastBlock, 255), std::string(56, 'x'));
}

}  // namespace
}  // namespace trovan::test
