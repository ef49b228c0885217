#include "filters/table/RecordReader.h"

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "TableFixture.h"
#include "filters/support/FilterError.h"

namespace trovan::filters {
namespace {

class RecordReaderTest : public TableFixture {
 protected:
  void Open() {
    layout_ = ReadTableLayout(Path());
    reader_ = std::make_unique<RecordReader>(Path(), layout_);
  }
  void Open(const DbfImage& image) {
    Save(image);
    Open();
  }

  // Flag and fields of a record; "none" when it is not there.
  std::string Read(std::uint32_t index) {
    Record record;
    if (!reader_->Read(index, record)) return "none";
    present_ = record.present;
    return static_cast<char>(record.flag) +
           std::string(reinterpret_cast<const char*>(record.data), layout_.DataLength());
  }

  // Puts bytes somewhere into the table; what lies between stays a hole of the file.
  void Put(long long offset, const std::string& bytes) {
    std::fstream file(folder_.Path() / "t.dbf", std::ios::binary | std::ios::in | std::ios::out);
    file.seekp(offset);
    file << bytes;
  }

  TableLayout layout_;
  std::unique_ptr<RecordReader> reader_;
  std::size_t present_ = 0;
};

TEST_F(RecordReaderTest, ReadsRecordsWithTheirFlags) {
  Open(DbfImage().Field("A", 'C', 2).Record("aa").DeletedRecord("bb").RecordWithFlag('?', "cc"));
  EXPECT_EQ(Read(0), " aa");
  EXPECT_EQ(Read(1), "*bb");
  EXPECT_EQ(Read(2), "?cc");
  EXPECT_EQ(reader_->CountPresent(), 3U);
}

TEST_F(RecordReaderTest, ReadsRecordsInAnyOrder) {
  DbfImage image;
  image.Field("A", 'C', 3);
  for (int i = 0; i < 50; ++i) {
    image.RecordWithFlag(i % 3 == 0 ? '*' : ' ', std::to_string(100 + i));
  }
  Open(image);
  unsigned index = 0;
  for (int step = 0; step < 500; ++step) {
    // Neighbours, repetitions, and jumps both ways.
    index = (index + (step % 4 == 0 ? 1U : step % 4 == 1 ? 0U : 17U)) % 50;
    EXPECT_EQ(Read(index), (index % 3 == 0 ? "*" : " ") + std::to_string(100 + index)) << step;
  }
}

TEST_F(RecordReaderTest, ReadsTheLastRecordWithAndWithoutEndMark) {
  for (const char* tail : {"\x1A", "", "\x1A\x1A", "more than a record"}) {
    Open(DbfImage().Field("A", 'C', 2).Record("aa").DeletedRecord("bb").Tail(tail));
    EXPECT_EQ(Read(1), "*bb");
    EXPECT_EQ(Read(0), " aa");
    EXPECT_EQ(reader_->CountPresent(), 2U);
  }
}

TEST_F(RecordReaderTest, PadsARecordThatIsCutOff) {
  const std::string whole = DbfImage().Field("A", 'C', 3).Record("aaa").DeletedRecord("bbb").Text();
  for (std::size_t kept = 0; kept < 3; ++kept) {
    Save(std::string_view(whole).substr(0, 65 + 4 + 1 + kept));
    Open();
    EXPECT_EQ(Read(1), "*" + std::string(kept, 'b') + std::string(3 - kept, ' '));
    EXPECT_EQ(present_, kept);
    EXPECT_EQ(reader_->CountPresent(), 2U);
    EXPECT_EQ(Read(0), " aaa");
    EXPECT_EQ(present_, 3U);
  }
}

TEST_F(RecordReaderTest, EndsWithTheFile) {
  Open(DbfImage().Field("A", 'C', 2).Record("aa").RecordCount(0xFFFF'FFFFU).WithoutEndMark());
  EXPECT_EQ(Read(0), " aa");
  EXPECT_EQ(Read(1), "none");
  EXPECT_EQ(Read(0xFFFF'FFFEU), "none");
  EXPECT_EQ(reader_->CountPresent(), 1U);
}

TEST_F(RecordReaderTest, TakesAnEndMarkInPlaceOfARecordForTheEnd) {
  Open(DbfImage().Field("A", 'C', 2).Record("aa").RecordCount(5));
  EXPECT_EQ(Read(0), " aa");
  EXPECT_EQ(Read(1), "none");
  EXPECT_EQ(reader_->CountPresent(), 1U);
}

TEST_F(RecordReaderTest, ReadsARecordWhoseFlagIsTheEndMark) {
  Open(DbfImage().Field("A", 'C', 2).RecordWithFlag('\x1A', "aa").Record("bb"));
  EXPECT_EQ(Read(0),
            "\x1A"
            "aa");
  EXPECT_EQ(Read(1), " bb");
  EXPECT_EQ(reader_->CountPresent(), 2U);
}

TEST_F(RecordReaderTest, ReadsRecordsOfAFlagAndNothingElse) {
  Open(DbfImage()
           .Field("A", 'C', 0)
           .Record("")
           .DeletedRecord("")
           .RecordWithFlag('\x1A', "")
           .Record(""));
  EXPECT_EQ(Read(0), " ");
  EXPECT_EQ(Read(1), "*");
  EXPECT_EQ(Read(2), "\x1A");
  EXPECT_EQ(Read(3), " ");
  EXPECT_EQ(reader_->CountPresent(), 4U);
}

TEST_F(RecordReaderTest, TakesAnEndMarkThatIsAWholeRecordForOne) {
  Open(DbfImage().Record("").RecordCount(2));
  EXPECT_EQ(Read(1), "\x1A");
  EXPECT_EQ(reader_->CountPresent(), 2U);
}

TEST_F(RecordReaderTest, CountsNothingInATableWithoutRecords) {
  Open(DbfImage().Field("A", 'C', 2));
  EXPECT_EQ(reader_->CountPresent(), 0U);
  Open(DbfImage().Field("A", 'C', 2).WithoutEndMark().RecordCount(3));
  EXPECT_EQ(reader_->CountPresent(), 0U);
  EXPECT_EQ(Read(0), "none");
}

TEST_F(RecordReaderTest, RefusesATableThatIsNotNamedLikeOne) {
  Save("t.txt", DbfImage().Field("A", 'C', 2).Text());
  const std::wstring path = folder_.File(L"t.txt");
  const TableLayout layout = ReadTableLayout(path);
  EXPECT_THROW(RecordReader(path, layout), FilterError);
}

// The reader forms offsets in 32 bits: from 2 GiB on it refuses, from 4 GiB on it would deliver
// records of the beginning.
TEST_F(RecordReaderTest, ReadsRecordsBeyondTheReach) {
  constexpr long long kRecordLength = 50'001;
  constexpr std::uint32_t kCount = 90'000;  // 4.5 GB
  Save(DbfImage()
           .Field("A", 'C', 4)
           .RecordLength(kRecordLength)
           .RecordCount(kCount)
           .WithoutEndMark());
  const auto begin = [](std::uint32_t index) { return 65 + index * kRecordLength; };
  std::filesystem::resize_file(folder_.Path() / "t.dbf",
                               static_cast<std::uintmax_t>(begin(kCount)));
  const std::uint32_t at2GiB = (1LL << 31) / kRecordLength;
  const std::uint32_t at4GiB = (1LL << 32) / kRecordLength;
  for (const std::uint32_t middle : {at2GiB, at4GiB}) {
    for (std::uint32_t index = middle - 3; index <= middle + 3; ++index) {
      Put(begin(index), (index % 2 == 0 ? "*" : " ") + std::to_string(index));
    }
  }
  Put(begin(0), " zero");
  Put(begin(kCount - 1), "*last");
  Open();
  EXPECT_EQ(reader_->CountPresent(), kCount);
  const auto head = [&](std::uint32_t index) { return Read(index).substr(0, 6); };
  for (const std::uint32_t middle : {at2GiB, at4GiB}) {
    for (std::uint32_t index = middle - 3; index <= middle + 3; ++index) {
      EXPECT_EQ(head(index), (index % 2 == 0 ? "*" : " ") + std::to_string(index));
    }
    for (std::uint32_t index = middle + 3; index >= middle - 3; --index) {
      EXPECT_EQ(head(index), (index % 2 == 0 ? "*" : " ") + std::to_string(index));
    }
  }
  EXPECT_EQ(head(kCount - 1), "*last" + std::string(1, '\0'));
  EXPECT_EQ(present_, kRecordLength - 1);
  EXPECT_EQ(head(0), " zero" + std::string(1, '\0'));
}

}  // namespace
}  // namespace trovan::filters
