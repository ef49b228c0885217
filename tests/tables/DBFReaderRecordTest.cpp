#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <trovan/DBFReader.h>

#include "tables/DBFReaderFixture.h"

namespace trovan::test {
namespace {

const std::string kReadError = StatusText(CDBFReader::DBF_ERR_READ);
const std::string kParamError = StatusText(CDBFReader::DBF_ERR_PARAM);

using DBFReaderRecordTest = DBFReaderTest;
using DBFReaderRecordSourceTest = DBFReaderSourceTest;
INSTANTIATE_TEST_SUITE_P(Sources, DBFReaderRecordSourceTest, BothSources(), SourceName);

DbfImage Towns() {
  return DbfImage().Field("NAME", 'C', 4).Record("Oslo").Record("Rome").Record("Bonn");
}

TEST_P(DBFReaderRecordSourceTest, DeliversEachRecordFromBehindItsDeletionFlag) {
  Open(DbfImage()
           .Field("NAME", 'C', 4)
           .RecordWithFlag('1', "Oslo")
           .RecordWithFlag('2', "Rome")
           .RecordWithFlag('3', "Bonn")
           .Tail("4"));
  EXPECT_EQ(Record(0), "Oslo2");
  EXPECT_EQ(Record(1), "Rome3");
  EXPECT_EQ(Record(2), "Bonn4");
}

TEST_P(DBFReaderRecordSourceTest, DeliversDeletedRecordsLikeOthers) {
  Open(DbfImage().Field("NAME", 'C', 4).Record("Oslo").DeletedRecord("Rome").Record("Bonn"));
  EXPECT_EQ(reader_.CountRecords(), 3U);
  EXPECT_EQ(Record(0), "Oslo*");
  EXPECT_EQ(Record(1), "Rome ");
  EXPECT_EQ(Record(2), "Bonn\x1A");
}

TEST_P(DBFReaderRecordSourceTest, PutsEachFieldAtItsOffset) {
  Open(DbfImage()
           .Field("NAME", 'C', 6)
           .Field("AREA", 'N', 7)
           .Field("DAY", 'D', 8)
           .Field("SEA", 'L', 1)
           .Record("Malm\xF6   77.06 20240229T"));
  const std::string record = Record(0);
  const char* expected[] = {"Malm\xF6 ", "  77.06", " 2024022", "9"};
  for (unsigned i = 0; i < 4; ++i) {
    EXPECT_EQ(record.substr(reader_.EnumFieldOffset(i), Field(i).length), expected[i]);
  }
}

TEST_P(DBFReaderRecordSourceTest, DeliversEveryByteAsItIsStored) {
  std::string all;
  for (int byte = 0; byte < 255; ++byte) all += static_cast<char>(255 - byte);
  Open(DbfImage().Field("RAW", 'C', 255).Record(all));
  EXPECT_EQ(Record(0), all + "\x1A");
}

TEST_P(DBFReaderRecordSourceTest, ReadsRecordsInAnyOrder) {
  Open(Towns());
  for (const unsigned index : {2U, 0U, 1U, 1U, 2U, 0U}) {
    const char* expected[] = {"Oslo ", "Rome ", "Bonn\x1A"};
    EXPECT_EQ(Record(index), expected[index]);
  }
}

TEST_P(DBFReaderRecordSourceTest, WritesTheRecordSizeAndNoMore) {
  Open(Towns());
  std::string buffer(9, kUntouched);
  EXPECT_EQ(reader_.EnumRecord(0, buffer.data(), 9), CDBFReader::DBF_OK);
  EXPECT_EQ(buffer, "Oslo " + std::string(4, kUntouched));
}

TEST_P(DBFReaderRecordSourceTest, RefusesTheIndexThatEqualsTheCount) {
  Open(Towns());
  EXPECT_EQ(Record(2), "Bonn\x1A");
  EXPECT_EQ(Record(3), kParamError);
  EXPECT_EQ(Record(0xFFFFFFFFU), kParamError);
}

TEST_P(DBFReaderRecordSourceTest, HasNoRecordInAnEmptyTable) {
  // In memory one record must fit even so.
  Open(DbfImage().Field("NAME", 'C', 4).Tail("\x1A...."));
  EXPECT_EQ(reader_.CountRecords(), 0U);
  EXPECT_EQ(Record(0), kParamError);
}

TEST_P(DBFReaderRecordSourceTest, RefusesABufferThatIsNullOrTooSmallAndLeavesIt) {
  Open(Towns());
  std::string buffer(5, kUntouched);
  EXPECT_EQ(reader_.EnumRecord(0, nullptr, 5), CDBFReader::DBF_ERR_PARAM);
  for (unsigned size = 0; size < 5; ++size) {
    EXPECT_EQ(reader_.EnumRecord(0, buffer.data(), size), CDBFReader::DBF_ERR_PARAM);
  }
  EXPECT_EQ(buffer, std::string(5, kUntouched));
  EXPECT_EQ(reader_.EnumRecord(0, buffer.data(), 5), CDBFReader::DBF_OK);
}

TEST_P(DBFReaderRecordSourceTest, AcceptsALastRecordWithoutItsTrailingByte) {
  Open(Towns().WithoutEndMark());
  EXPECT_EQ(Record(1), "Rome ");
  EXPECT_EQ(Record(2), std::string("Bonn") + kUntouched);
}

TEST_F(DBFReaderRecordTest, ReadsAShortRecordOnlyAtTheEnd) {
  // The first record begins at 65; each has 5 bytes.
  const std::string whole = Towns().Text();
  const std::string blank(1, kUntouched);
  const struct {
    std::size_t size;
    std::string records[3];
  } cases[] = {
      {81, {"Oslo ", "Rome ", "Bonn\x1A"}},
      {80, {"Oslo ", "Rome ", "Bonn" + blank}},
      {79, {"Oslo ", "Rome ", "Bon" + blank + blank}},
      {77, {"Oslo ", "Rome ", "B" + blank + blank + blank + blank}},
      {76, {"Oslo ", "Rome ", kReadError}},
      {75, {"Oslo ", kReadError, kReadError}},
      {72, {"Oslo ", kReadError, kReadError}},
      {71, {"Oslo ", kReadError, kReadError}},
      {70, {kReadError, kReadError, kReadError}},
      {65, {kReadError, kReadError, kReadError}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << "cut to " << c.size << " bytes");
    ASSERT_EQ(OpenFile(whole.substr(0, c.size)), CDBFReader::DBF_OK);
    for (unsigned i = 0; i < 3; ++i) EXPECT_EQ(Record(i), c.records[i]) << "record " << i;
  }
}

// The one record of a table may have no byte but its deletion flag; then even the mark must be
// there.
TEST_F(DBFReaderRecordTest, NeedsAByteForARecordOfOneByte) {
  ASSERT_EQ(OpenFile(DbfImage().Record("").Text()), CDBFReader::DBF_OK);
  EXPECT_EQ(reader_.RecordSize(), 1U);
  EXPECT_EQ(Record(0), "\x1A");
  ASSERT_EQ(OpenFile(DbfImage().Record("").WithoutEndMark().Text()), CDBFReader::DBF_OK);
  EXPECT_EQ(Record(0), kReadError);
}

TEST_F(DBFReaderRecordTest, ReadsNothingForARecordLengthOfZero) {
  const DbfImage image = DbfImage().Field("A", 'C', 4).Record("Oslo").RecordLength(0);
  ASSERT_EQ(OpenFile(DbfImage(image).RecordCount(7).Text()), CDBFReader::DBF_OK);
  char untouched = kUntouched;
  for (const unsigned index : {0U, 3U, 6U}) {
    EXPECT_EQ(reader_.EnumRecord(index, &untouched, 0), CDBFReader::DBF_OK);
    EXPECT_EQ(reader_.EnumRecord(index, &untouched, 1), CDBFReader::DBF_OK);
  }
  EXPECT_EQ(untouched, kUntouched);
  EXPECT_EQ(reader_.EnumRecord(7, &untouched, 1), CDBFReader::DBF_ERR_PARAM);
  EXPECT_EQ(reader_.EnumRecord(0, nullptr, 1), CDBFReader::DBF_ERR_PARAM);
}

TEST_F(DBFReaderRecordTest, ReadsFromTheFrontOfTheFileWhereTheHeaderLengthIsZero) {
  const std::string table = Towns().HeaderLength(0).Text();
  ASSERT_EQ(OpenFile(table), CDBFReader::DBF_OK);
  EXPECT_EQ(Record(0), table.substr(1, 5));
  EXPECT_EQ(Record(2), table.substr(11, 5));
}

TEST_F(DBFReaderRecordTest, CountsRecordsThatTheFileDoesNotHave) {
  ASSERT_EQ(OpenFile(Towns().WithoutEndMark().RecordCount(1000).Text()), CDBFReader::DBF_OK);
  EXPECT_EQ(reader_.CountRecords(), 1000U);
  EXPECT_EQ(Record(2), kReadError);  // one byte short, and not the last
  EXPECT_EQ(Record(999), kReadError);
  EXPECT_EQ(Record(1000), kParamError);
}

// 4,294,967,296 bytes of records of two bytes: the offset of record 2^31 + i is that of record i.
TEST_P(DBFReaderRecordSourceTest, ReadsFromAnOffsetThatWrapsToASmallOne) {
  Open(DbfImage().Field("A", 'C', 1).Record("a").Record("b").Record("c").RecordCount(0x80000003U));
  EXPECT_EQ(reader_.CountRecords(), 0x80000003U);
  EXPECT_EQ(Record(1), "b ");
  EXPECT_EQ(Record(0x80000000U), "a ");
  EXPECT_EQ(Record(0x80000001U), "b ");
  EXPECT_EQ(Record(0x80000002U), "c\x1A");
}

TEST_P(DBFReaderRecordSourceTest, CannotReadFromAnOffsetOfTwoGigabytesOrMore) {
  Open(DbfImage().Field("A", 'C', 1).Record("a").Record("b").Record("c").RecordCount(0x80000003U));
  // The offset is 66 + 2 * index: for the first index 2^31, for the other 2^32 - 2.
  EXPECT_EQ(Record(0x3FFFFFDFU), kReadError);
  EXPECT_EQ(Record(0x7FFFFFDEU), kReadError);
  EXPECT_EQ(Record(1), "b ");
}

TEST_P(DBFReaderRecordSourceTest, CannotReadFromAnOffsetBehindTheEnd) {
  Open(DbfImage().Field("A", 'C', 1).Record("a").Record("b").Record("c").RecordCount(0x80000003U));
  EXPECT_EQ(Record(3), kReadError);            // at the end mark's end: no byte there
  EXPECT_EQ(Record(4), kReadError);            // further
  EXPECT_EQ(Record(0x3FFFFFDEU), kReadError);  // two bytes in front of 2^31
}

// The record that begins with the last byte is short, which only the last record may be.
TEST_P(DBFReaderRecordSourceTest, RefusesAShortRecordInFrontOfTheLastWhateverItsOffset) {
  Open(DbfImage()
           .Field("A", 'C', 1)
           .Record("a")
           .Record("b")
           .WithoutEndMark()
           .RecordCount(0x80000002U));
  EXPECT_EQ(Record(0), "a ");
  EXPECT_EQ(Record(1), kReadError);
  EXPECT_EQ(Record(0x80000001U), std::string("b") + kUntouched);
}

// A table that a memory image cannot have: a hole of the file holds no blocks of the disk.
class DBFReaderSparseTest : public DBFReaderTest {
 protected:
  void OpenSparse(const DbfImage& image, std::uintmax_t size) {
    const std::filesystem::path path = folder_.Path() / "sparse.dbf";
    WriteBytes(path, image.Text());
    std::filesystem::resize_file(path, size);
    ASSERT_EQ(reader_.OpenFromFile(folder_.File(L"sparse.dbf")), CDBFReader::DBF_OK);
  }
  void Put(std::uintmax_t at, std::string_view bytes) {
    std::fstream file(folder_.Path() / "sparse.dbf",
                      std::ios::binary | std::ios::in | std::ios::out);
    file.seekp(static_cast<std::streamoff>(at));
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    ASSERT_TRUE(file.flush());
  }
};

constexpr std::uintmax_t kGigabyte = std::uintmax_t{1} << 30;

// Records of 32768 bytes from offset 32768 on: record i's fields begin at (i + 1) * 32768 + 1.
DbfImage LongRecords(std::uint32_t count) {
  return DbfImage().HeaderLength(32768).RecordLength(32768).RecordCount(count).Tail(
      std::string(32768, '\0'));
}

TEST_F(DBFReaderSparseTest, ReadsUpToTwoGigabytesAndNotBeyond) {
  OpenSparse(LongRecords(98303), 3 * kGigabyte);
  Put(65534 * 32768ULL + 1, "below");
  Put(65535 * 32768ULL + 1, "last");
  Put(65536 * 32768ULL + 1, "beyond");
  ASSERT_EQ(reader_.OpenFromFile(folder_.File(L"sparse.dbf")), CDBFReader::DBF_OK);
  EXPECT_EQ(Record(65533).substr(0, 5), "below");
  EXPECT_EQ(Record(65534).substr(0, 4), "last");
  EXPECT_EQ(Record(65535), kReadError);
  EXPECT_EQ(Record(98302), kReadError);
}

TEST_F(DBFReaderSparseTest, ReadsTheFrontAgainForARecordBeyondFourGigabytes) {
  OpenSparse(LongRecords(140000), 5 * kGigabyte);
  Put(1, "day");  // the date, which nobody reads
  Put(2 * 32768ULL + 1, "second");
  Put(131072 * 32768ULL + 1, "true record");
  ASSERT_EQ(reader_.OpenFromFile(folder_.File(L"sparse.dbf")), CDBFReader::DBF_OK);
  EXPECT_EQ(Record(131070), kReadError);
  EXPECT_EQ(Record(131071).substr(0, 3), "day");
  EXPECT_EQ(Record(131073).substr(0, 6), "second");
}

}  // namespace
}  // namespace trovan::test
