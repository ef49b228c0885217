#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <trovan/DBFReader.h>

#include "tables/DBFReaderFixture.h"

namespace trovan::test {
namespace {

const std::string kReadError = StatusText(CDBFReader::DBF_ERR_READ);

// 255 allows every length up to its own; 256 * n would allow only n bytes.
constexpr unsigned kRoom = 255;

class DBFReaderMemoTest : public DBFReaderTest {
 protected:
  // Puts `text` into the blocks of a memo file from `block` on, behind a head of 8 bytes.
  static void PutMemo(std::string& file, std::size_t blockSize, std::size_t block,
                      const std::string& text, const std::string& head = "HEADHEAD") {
    const std::size_t at = block * blockSize;
    file.resize(std::max(file.size(), at + 8 + text.size()), '\0');
    file.replace(at, 8, head);
    file.replace(at + 8, text.size(), text);
  }

  void WriteFile(const char* name, const std::string& bytes) {
    WriteBytes(folder_.Path() / name, bytes);
  }

  // A table with the records that memos need: none.
  void OpenTable() {
    const std::string table = DbfImage().Field("NOTE", 'M', 10).Record("         1").Text();
    ASSERT_EQ(OpenFile(table), CDBFReader::DBF_OK);
  }

  // A table beside an ".fpt" file.
  void OpenWithFpt(const std::string& memoFile) {
    WriteFile("table.fpt", memoFile);
    OpenTable();
  }
};

TEST_F(DBFReaderMemoTest, ReadsBlocksOfSixtyFourBytesFromAnFptFile) {
  std::string file;
  PutMemo(file, 64, 0, "block zero");
  PutMemo(file, 64, 1, "first");
  PutMemo(file, 64, 9, "ninth");
  OpenWithFpt(file);
  EXPECT_EQ(Memo(0, kRoom), "block zero");
  EXPECT_EQ(Memo(1, kRoom), "first");
  EXPECT_EQ(Memo(9, kRoom), "ninth");
}

TEST_F(DBFReaderMemoTest, ReadsBlocksOfFiveHundredAndTwelveBytesFromADbtFile) {
  std::string file;
  PutMemo(file, 512, 1, "first");
  PutMemo(file, 512, 2, "second");
  WriteFile("table.dbt", file);
  OpenTable();
  EXPECT_EQ(Memo(1, kRoom), "first");
  EXPECT_EQ(Memo(2, kRoom), "second");
}

TEST_F(DBFReaderMemoTest, PrefersTheFptFile) {
  std::string fpt;
  PutMemo(fpt, 64, 8, "from the fpt file");
  std::string dbt;
  PutMemo(dbt, 512, 8, "from the dbt file");
  WriteFile("table.dbt", dbt);
  OpenWithFpt(fpt);
  EXPECT_EQ(Memo(8, kRoom), "from the fpt file");
}

TEST_F(DBFReaderMemoTest, TakesTheDbtFileWhereTheFptIsAFolder) {
  std::filesystem::create_directory(folder_.Path() / "table.fpt");
  std::string dbt;
  PutMemo(dbt, 512, 1, "from the dbt file");
  WriteFile("table.dbt", dbt);
  OpenTable();
  EXPECT_EQ(Memo(1, kRoom), "from the dbt file");
}

TEST_F(DBFReaderMemoTest, ReadsRecordsButNoMemosWithoutAMemoFile) {
  OpenTable();
  EXPECT_EQ(Record(0), "         1\x1A");
  EXPECT_EQ(Memo(1, kRoom), StatusText(CDBFReader::DBF_ERR_NOT_OPEN));
  // What is not open matters before what is wrong.
  EXPECT_EQ(reader_.EnumMemo(1, nullptr, 0), CDBFReader::DBF_ERR_NOT_OPEN);
}

TEST_F(DBFReaderMemoTest, FindsTheMemoFileOfATableWithACapitalExtension) {
  std::string file;
  PutMemo(file, 64, 1, "small letters");
  WriteFile("towns.fpt", file);
  WriteFile("towns.DBF", DbfImage().Field("NOTE", 'M', 10).Text());
  ASSERT_EQ(reader_.OpenFromFile(folder_.File(L"towns.DBF")), CDBFReader::DBF_OK);
  EXPECT_EQ(Memo(1, kRoom), "small letters");
}

TEST_F(DBFReaderMemoTest, DoesNotFindAMemoFileWithACapitalExtension) {
  WriteFile("probe.a", "");
  if (std::filesystem::exists(folder_.Path() / "PROBE.A")) {
    GTEST_SKIP() << "the file system does not tell capital letters from small ones";
  }
  WriteFile("table.FPT", std::string(1000, 'm'));
  WriteFile("table.DBT", std::string(1000, 'm'));
  OpenTable();
  EXPECT_EQ(Memo(1, kRoom), StatusText(CDBFReader::DBF_ERR_NOT_OPEN));
}

TEST_F(DBFReaderMemoTest, HasNoMemosInMemory) {
  OpenWithFpt(std::string(1000, 'm'));
  EXPECT_EQ(Memo(1, 3), "mm");
  ASSERT_EQ(OpenMemory(DbfImage().Field("NOTE", 'M', 10).Record("").Text()), CDBFReader::DBF_OK);
  EXPECT_EQ(Memo(1, kRoom), StatusText(CDBFReader::DBF_ERR_NOT_OPEN));
}

TEST_F(DBFReaderMemoTest, ClosesTheMemoFileWithTheTable) {
  OpenWithFpt(std::string(1000, 'm'));
  reader_.Close();
  EXPECT_EQ(Memo(1, kRoom), StatusText(CDBFReader::DBF_ERR_NOT_OPEN));
}

// The kind of the memo file is found anew for each table.
TEST_F(DBFReaderMemoTest, ForgetsTheBlockSizeOfTheTableBefore) {
  std::string fpt;
  PutMemo(fpt, 64, 1, "fpt");
  OpenWithFpt(fpt);
  EXPECT_EQ(Memo(1, kRoom), "fpt");
  std::string dbt;
  PutMemo(dbt, 512, 1, "dbt");
  WriteFile("table.dbt", dbt);
  std::filesystem::remove(folder_.Path() / "table.fpt");
  OpenTable();
  EXPECT_EQ(Memo(1, kRoom), "dbt");
}

TEST_F(DBFReaderMemoTest, ReadsMemosBesideATableThatIsCutShort) {
  std::string fpt;
  PutMemo(fpt, 64, 1, "still here");
  WriteFile("table.fpt", fpt);
  ASSERT_EQ(OpenFile("too short"), CDBFReader::DBF_ERR_READ);
  EXPECT_EQ(Memo(1, kRoom), "still here");
}

TEST_F(DBFReaderMemoTest, RefusesANullBufferAndASizeOfZero) {
  OpenWithFpt(std::string(1000, 'm'));
  char buffer = kUntouched;
  EXPECT_EQ(reader_.EnumMemo(1, nullptr, 10), CDBFReader::DBF_ERR_PARAM);
  EXPECT_EQ(reader_.EnumMemo(1, &buffer, 0), CDBFReader::DBF_ERR_PARAM);
  EXPECT_EQ(reader_.EnumMemo(0xFFFFFFFFU, &buffer, 0), CDBFReader::DBF_ERR_PARAM);
  EXPECT_EQ(buffer, kUntouched);
}

TEST_F(DBFReaderMemoTest, LooksAtNoByteOfTheHeadOfAFileOrBlock) {
  // Every block length and block size that a head could state, in either order of bytes.
  for (const std::string& head :
       {std::string(8, '\0'), std::string(8, '\xFF'), std::string("\0\0\0\1\0\0\0\2", 8),
        std::string("\xFF\xFF\x08\x00\x0A\0\0\0", 8)}) {
    std::string file = head;
    PutMemo(file, 64, 1, "a text of 21 characters", head);
    OpenWithFpt(file);
    EXPECT_EQ(Memo(1, kRoom), "a text of 21 characters");
  }
}

TEST_F(DBFReaderMemoTest, RunsOnThroughTheFollowingBlocks) {
  const std::string text(200, 't');
  std::string file;
  PutMemo(file, 64, 1, text);
  OpenWithFpt(file);
  EXPECT_EQ(Memo(1, kRoom), text);
  EXPECT_EQ(Memo(2, kRoom), text.substr(64));
}

TEST_F(DBFReaderMemoTest, EndsAtANulAndLeavesTheRestOfTheBuffer) {
  std::string file;
  PutMemo(file, 64, 1, std::string("abc\0def", 7));
  OpenWithFpt(file);
  EXPECT_EQ(MemoBuffer(1, kRoom), "abc" + std::string(1, '\0') + std::string(251, kUntouched));
}

TEST_F(DBFReaderMemoTest, EndsAtTheEndOfTheFile) {
  std::string file;
  PutMemo(file, 64, 1, "abc");
  OpenWithFpt(file);
  EXPECT_EQ(MemoBuffer(1, kRoom), "abc" + std::string(1, '\0') + std::string(251, kUntouched));
}

TEST_F(DBFReaderMemoTest, DeliversAnEndMarkAsText) {
  std::string file;
  PutMemo(file, 512, 1, std::string("abc\x1A\x1A rest\0", 11));
  WriteFile("table.dbt", file);
  OpenTable();
  EXPECT_EQ(Memo(1, kRoom), "abc\x1A\x1A rest");
}

TEST_F(DBFReaderMemoTest, DeliversEveryByteButNulAsItIsStored) {
  std::string all;
  for (int byte = 1; byte <= 0xFF; ++byte) all += static_cast<char>(byte);
  std::string file;
  PutMemo(file, 64, 1, all);
  OpenWithFpt(file);
  EXPECT_EQ(Memo(1, 0x0101), all);
}

TEST_F(DBFReaderMemoTest, NeedsTheTwoBytesInFrontOfTheText) {
  // Block 1 begins at 64; its bytes 6 and 7 lie at 70 and 71.
  for (const unsigned size : {0U, 1U, 64U, 70U, 71U}) {
    OpenWithFpt(std::string(size, 'm'));
    EXPECT_EQ(Memo(1, kRoom), kReadError) << size << " bytes";
  }
  OpenWithFpt(std::string(72, 'm'));
  EXPECT_EQ(MemoBuffer(1, 3), std::string(1, '\0') + std::string(2, kUntouched));
  OpenWithFpt(std::string(73, 'm'));
  EXPECT_EQ(Memo(1, kRoom), "m");
}

TEST_F(DBFReaderMemoTest, NeedsTheTwoBytesEvenForABufferOfOne) {
  OpenWithFpt(std::string(71, 'm'));
  EXPECT_EQ(MemoBuffer(1, 1), kReadError);
}

TEST_F(DBFReaderMemoTest, GivesAnEmptyTextForABufferOfOne) {
  OpenWithFpt(std::string(1000, 'm'));
  EXPECT_EQ(MemoBuffer(1, 1), std::string(1, '\0'));
}

TEST_F(DBFReaderMemoTest, ReadsBehindAFailureAndInAnyOrder) {
  std::string file;
  PutMemo(file, 64, 1, "first");
  PutMemo(file, 64, 2, "second");
  OpenWithFpt(file);
  EXPECT_EQ(Memo(1000, kRoom), kReadError);
  EXPECT_EQ(Memo(2, kRoom), "second");
  EXPECT_EQ(Memo(1, kRoom), "first");
  EXPECT_EQ(Memo(0x3FFFFFFU, kRoom), kReadError);
  EXPECT_EQ(Memo(2, kRoom), "second");
}

TEST_F(DBFReaderMemoTest, FormsOffsetsOfFptBlocksInThirtyTwoBits) {
  std::string file;
  PutMemo(file, 64, 0, "zero");
  PutMemo(file, 64, 3, "three");
  OpenWithFpt(file);
  // 2^25 blocks of 64 bytes are 2^31 bytes, 2^26 are 2^32.
  EXPECT_EQ(Memo((1U << 25) - 1, kRoom), kReadError);  // behind the end
  EXPECT_EQ(Memo(1U << 25, kRoom), kReadError);        // out of reach
  EXPECT_EQ(Memo((1U << 26) - 1, kRoom), kReadError);
  EXPECT_EQ(Memo(1U << 26, kRoom), "zero");
  EXPECT_EQ(Memo((1U << 26) + 3, kRoom), "three");
  EXPECT_EQ(Memo((63U << 26) + 3, kRoom), "three");
}

TEST_F(DBFReaderMemoTest, FormsOffsetsOfDbtBlocksInThirtyTwoBits) {
  std::string file;
  PutMemo(file, 512, 3, "three");
  WriteFile("table.dbt", file);
  OpenTable();
  EXPECT_EQ(Memo(1U << 22, kRoom), kReadError);
  EXPECT_EQ(Memo((1U << 23) - 1, kRoom), kReadError);
  EXPECT_EQ(Memo((1U << 23) + 3, kRoom), "three");
  EXPECT_EQ(Memo((511U << 23) + 3, kRoom), "three");
}

TEST_F(DBFReaderMemoTest, ReadsTheLastBlockInReachOfALargeFile) {
  WriteFile("table.fpt", "");
  constexpr std::uintmax_t kTwoGigabytes = std::uintmax_t{1} << 31;
  std::filesystem::resize_file(folder_.Path() / "table.fpt", kTwoGigabytes + 1000);
  OpenTable();
  EXPECT_EQ(Memo((1U << 25) - 1, kRoom), "");
  EXPECT_EQ(Memo(1U << 25, kRoom), kReadError);
}

// The bound is the size with the two low bytes exchanged, as an oddity that filters know.
TEST_F(DBFReaderMemoTest, BoundsTheTextByTheSizeWithItsLowBytesExchanged) {
  std::string file;
  PutMemo(file, 64, 1, std::string(70000, 'm'));
  OpenWithFpt(file);
  const struct {
    unsigned size;
    std::size_t length;
  } cases[] = {
      {1, 0},         {2, 1},          {3, 2},         {128, 127},   {254, 253},     {255, 254},
      {256, 1},       {257, 256},      {258, 257},     {511, 510},   {512, 2},       {513, 258},
      {514, 513},     {1024, 4},       {4096, 16},     {32768, 128}, {65279, 65278}, {65280, 255},
      {65281, 511},   {65534, 65279},  {65535, 65534}, {65536, 0},   {65537, 256},   {65792, 1},
      {69000, 34829}, {131071, 65535}, {16777216, 0},
  };
  for (const auto& c : cases) EXPECT_EQ(Memo(1, c.size).size(), c.length) << "size " << c.size;
}

// Tries every size. To be quick, the text is long enough to show every bound below 4096 only; a
// part of the sizes is tried with a text that shows all of them.
TEST_F(DBFReaderMemoTest, BoundsTheTextForEverySize) {
  constexpr unsigned kLargest = 70000;
  constexpr std::size_t kShortText = 4096;
  std::string file;
  PutMemo(file, 64, 1, std::string(kShortText, 's'));
  file += '\0';
  const unsigned longBlock = static_cast<unsigned>(file.size() / 64 + 1);
  PutMemo(file, 64, longBlock, std::string(kLargest, 'l'));
  OpenWithFpt(file);

  std::string buffer(kLargest + 1, kUntouched);
  const auto expectLength = [&](unsigned block, unsigned size, std::size_t length) {
    ASSERT_EQ(reader_.EnumMemo(block, buffer.data(), size), CDBFReader::DBF_OK);
    const std::size_t end = buffer.find('\0');
    ASSERT_EQ(end, length) << "size " << size;
    // Nothing is touched behind the NUL.
    ASSERT_EQ(buffer[end + 1], kUntouched) << "size " << size;
    std::fill_n(buffer.begin(), end + 1, kUntouched);
  };
  for (unsigned size = 1; size <= kLargest; ++size) {
    const std::size_t exchanged = size % 256 * 256 + size / 256 % 256;
    const std::size_t length = std::min<std::size_t>(size - 1, exchanged);
    expectLength(1, size, std::min(length, kShortText));
    if (size % 61 == 0) expectLength(longBlock, size, length);
    if (HasFatalFailure()) return;
  }
}

}  // namespace
}  // namespace trovan::test
