#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include <trovan/DBFReader.h>

#include "support/DbfImage.h"
#include "support/TempFolder.h"

namespace trovan::test {
namespace {

constexpr int kNoTable = -1;
constexpr int kEmptyFile = 0;
constexpr int kTable = 1;
constexpr std::uintmax_t kGigabyte = std::uintmax_t{1} << 30;

// A header alone: the test reads no further.
struct Header {
  std::uint32_t records = 1;
  std::uint16_t headerLength = 65;
  std::uint16_t recordLength = 10;

  std::string Bytes() const {
    return DbfImage()
        .WithoutTerminator()
        .WithoutEndMark()
        .RecordCount(records)
        .HeaderLength(headerLength)
        .RecordLength(recordLength)
        .Text();
  }
  // What is said about a block of `size` bytes with this header. No block has so many bytes here,
  // which shows that only the first 32 are looked at.
  bool IsTable(unsigned size) const { return CDBFReader::IsDBFData(Bytes().data(), size); }
};

TEST(IsDBFData, AcceptsTheTableOfAGoodProgram) {
  const std::string table = DbfImage().Field("A", 'C', 9).Record("x").Record("y").Text();
  EXPECT_TRUE(CDBFReader::IsDBFData(table.data(), static_cast<unsigned>(table.size())));
}

TEST(IsDBFData, WantsARecordLengthOf2To16384) {
  for (std::uint32_t length = 0; length <= 0xFFFF; ++length) {
    const Header header{0, 65, static_cast<std::uint16_t>(length)};
    // Without records the one that must fit counts as slack, up to 512 bytes.
    const Header full{1, 65, static_cast<std::uint16_t>(length)};
    EXPECT_EQ(full.IsTable(65 + length), length >= 2 && length <= 16384) << length;
    EXPECT_EQ(header.IsTable(65 + length), length >= 2 && length <= 512) << length;
  }
}

TEST(IsDBFData, WantsAHeaderOf64BytesOrMore) {
  for (std::uint32_t length = 0; length <= 0xFFFF; ++length) {
    const Header header{1, static_cast<std::uint16_t>(length), 10};
    EXPECT_EQ(header.IsTable(length + 10), length >= 64) << length;
  }
}

TEST(IsDBFData, WantsRoomForOneRecordEvenIfThereIsNone) {
  EXPECT_FALSE((Header{0, 65, 10}.IsTable(74)));
  EXPECT_TRUE((Header{0, 65, 10}.IsTable(75)));
}

TEST(IsDBFData, WantsAllRecords) {
  EXPECT_FALSE((Header{3, 65, 10}.IsTable(94)));
  EXPECT_TRUE((Header{3, 65, 10}.IsTable(95)));
}

TEST(IsDBFData, Allows512BytesBehindTheLastRecord) {
  EXPECT_TRUE((Header{3, 65, 10}.IsTable(95 + 512)));
  EXPECT_FALSE((Header{3, 65, 10}.IsTable(95 + 513)));
  EXPECT_FALSE((Header{3, 65, 10}.IsTable(0x7FFFFFFF)));
}

// The sum is formed in 32 bits, so a count that takes it once around looks like a small one.
TEST(IsDBFData, WrapsTheExtentOfTheRecords) {
  const Header around{0x80000003U, 65, 2};  // 2^32 + 71
  EXPECT_FALSE(around.IsTable(70));
  EXPECT_TRUE(around.IsTable(71));
  EXPECT_TRUE(around.IsTable(71 + 512));
  EXPECT_FALSE(around.IsTable(71 + 513));
}

// An extent of 2^31 or more is negative, which is below every size; its slack wraps too.
TEST(IsDBFData, ComparesTheExtentAsASignedNumber) {
  const Header twoGigabytes{0x40000003U, 65, 2};  // 2^31 + 71
  EXPECT_FALSE(twoGigabytes.IsTable(70));         // slack 2^31 - 1
  EXPECT_TRUE(twoGigabytes.IsTable(71));          // slack -2^31
  EXPECT_TRUE(twoGigabytes.IsTable(1'000'000));
  const Header almostAround{0x7FFFFFF0U, 65, 2};  // 2^32 + 33, once around
  EXPECT_FALSE(almostAround.IsTable(66));         // not even one record fits
  EXPECT_TRUE(almostAround.IsTable(67));
  const Header around{0x7FFFFFDFU, 66, 2};  // 2^32 + 0
  EXPECT_TRUE(around.IsTable(68));
  EXPECT_TRUE(around.IsTable(512));
  EXPECT_FALSE(around.IsTable(513));
}

TEST(IsDBFData, HasNoTableOfTwoGigabytesOrMore) {
  for (const unsigned size : {0x80000000U, 0x80000041U, 0xFFFFFFFFU}) {
    EXPECT_FALSE((Header{1, 65, 10}.IsTable(size))) << size;
    EXPECT_FALSE((Header{0x40000000U, 65, 2}.IsTable(size))) << size;
  }
  const Header largest{0x3FFFFFDFU, 65, 2};  // 2^31 - 1
  EXPECT_FALSE(largest.IsTable(0x7FFFFFFEU));
  EXPECT_TRUE(largest.IsTable(0x7FFFFFFFU));
}

TEST(IsDBFData, LooksAtNothingButThreeNumbers) {
  const std::string plain = Header{}.Bytes();
  for (std::size_t at = 0; at < 32; ++at) {
    if ((at >= 4 && at < 12)) continue;
    std::string changed = plain;
    changed[at] = '\xFF';
    EXPECT_TRUE(CDBFReader::IsDBFData(changed.data(), 75)) << "byte " << at;
  }
}

class CheckDBFFile : public testing::Test {
 protected:
  int Check(const std::string& bytes, const char* name = "table.dbf") {
    WriteBytes(folder_.Path() / name, bytes);
    return CDBFReader::CheckDBFFile((folder_.Path() / name).wstring());
  }
  // A file of `size` bytes that begins with `header`; what follows takes no room on the disk.
  int CheckSize(const Header& header, std::uintmax_t size) {
    WriteBytes(folder_.Path() / "table.dbf", header.Bytes());
    std::filesystem::resize_file(folder_.Path() / "table.dbf", size);
    return CDBFReader::CheckDBFFile(folder_.File(L"table.dbf"));
  }

  TempFolder folder_;
};

const std::string& Table() {
  static const std::string table = DbfImage().Field("A", 'C', 9).Record("x").Text();
  return table;
}

TEST_F(CheckDBFFile, KnowsATable) { EXPECT_EQ(Check(Table()), kTable); }

TEST_F(CheckDBFFile, WantsTheExtensionInAnyCaseOfLetters) {
  EXPECT_EQ(Check(Table(), "a.DBF"), kTable);
  EXPECT_EQ(Check(Table(), "a.dBf"), kTable);
  EXPECT_EQ(Check(Table(), ".dbf"), kTable);
  EXPECT_EQ(Check(Table(), "a.dbt"), kNoTable);
  EXPECT_EQ(Check(Table(), "a.dbf.bak"), kNoTable);
  EXPECT_EQ(Check(Table(), "a.dbfx"), kNoTable);
  EXPECT_EQ(Check(Table(), "dbf"), kNoTable);
  EXPECT_EQ(Check("", "empty.txt"), kNoTable);
  EXPECT_EQ(CDBFReader::CheckDBFFile(L""), kNoTable);
}

TEST_F(CheckDBFFile, HasNoTableWhereNoFileCanBeOpened) {
  std::filesystem::create_directory(folder_.Path() / "folder.dbf");
  EXPECT_EQ(CDBFReader::CheckDBFFile(folder_.File(L"missing.dbf")), kNoTable);
  EXPECT_EQ(CDBFReader::CheckDBFFile(folder_.File(L"folder.dbf")), kNoTable);
}

TEST_F(CheckDBFFile, TellsAnEmptyFileFromAWrongOne) {
  EXPECT_EQ(Check(""), kEmptyFile);
  EXPECT_EQ(Check(Table().substr(0, 1)), kNoTable);
  EXPECT_EQ(Check(Table().substr(0, 31)), kNoTable);
  EXPECT_EQ(Check(Table().substr(0, 32)), kNoTable);
  EXPECT_EQ(Check(std::string(200, 'x')), kNoTable);
}

TEST_F(CheckDBFFile, LeavesTheFileClosed) {
  EXPECT_EQ(Check(Table()), kTable);
  EXPECT_EQ(Check(""), kEmptyFile);
  EXPECT_TRUE(std::filesystem::remove(folder_.Path() / "table.dbf"));
}

TEST_F(CheckDBFFile, AgreesWithTheTestOfMemoryUpToTwoGigabytes) {
  const std::uint32_t counts[] = {0, 1, 2, 51};
  const std::uint16_t headers[] = {0, 63, 64, 65, 65535};
  const std::uint16_t lengths[] = {0, 1, 2, 10, 16384, 16385};
  for (const auto count : counts) {
    for (const auto headerLength : headers) {
      for (const auto recordLength : lengths) {
        const Header header{count, headerLength, recordLength};
        const std::uint32_t extent = count * recordLength + headerLength;
        for (const std::uint32_t slack : {0U, 1U, 512U, 513U}) {
          const std::uint32_t size = std::max(32U, extent + slack);
          EXPECT_EQ(CheckSize(header, size), header.IsTable(size) ? kTable : kNoTable)
              << count << " records of " << recordLength << " behind " << headerLength << " in "
              << size;
        }
      }
    }
  }
}

TEST_F(CheckDBFFile, RefusesARecordLengthOutsideTheRange) {
  EXPECT_EQ(CheckSize({1, 65, 1}, 66), kNoTable);
  EXPECT_EQ(CheckSize({1, 65, 2}, 67), kTable);
  EXPECT_EQ(CheckSize({1, 65, 16384}, 65 + 16384), kTable);
  EXPECT_EQ(CheckSize({1, 65, 16385}, 65 + 16385), kNoTable);
}

// Where the test of memory wraps, that of a file does not.
TEST_F(CheckDBFFile, DoesNotWrapTheExtentOfTheRecords) {
  const Header around{0x80000003U, 65, 2};
  EXPECT_TRUE(around.IsTable(71));
  EXPECT_EQ(CheckSize(around, 71), kNoTable);
  const Header twoGigabytes{0x40000003U, 65, 2};
  EXPECT_TRUE(twoGigabytes.IsTable(71));
  EXPECT_EQ(CheckSize(twoGigabytes, 71), kNoTable);
}

TEST_F(CheckDBFFile, SeesTheLowThirtyTwoBitsOfTheLength) {
  EXPECT_EQ(CheckSize({1, 65, 10}, 4 * kGigabyte), kEmptyFile);
  EXPECT_EQ(CheckSize({1, 65, 10}, 4 * kGigabyte + 74), kNoTable);
  EXPECT_EQ(CheckSize({1, 65, 10}, 4 * kGigabyte + 75), kTable);
  EXPECT_EQ(CheckSize({1, 65, 10}, 4 * kGigabyte + 75 + 512), kTable);
  EXPECT_EQ(CheckSize({1, 65, 10}, 4 * kGigabyte + 75 + 513), kNoTable);
}

TEST_F(CheckDBFFile, HasNoTableOfTwoToFourGigabytes) {
  const Header truthful{0x3FFFFFDFU, 65, 2};  // 2^31 - 1
  EXPECT_EQ(CheckSize(truthful, 2 * kGigabyte - 1), kTable);
  EXPECT_EQ(CheckSize(truthful, 2 * kGigabyte), kNoTable);
  EXPECT_EQ(CheckSize({0x40000000U, 65, 2}, 2 * kGigabyte + 65), kNoTable);
  EXPECT_EQ(CheckSize({0x7FFFFFDEU, 65, 2}, 4 * kGigabyte - 3), kNoTable);
}

}  // namespace
}  // namespace trovan::test
