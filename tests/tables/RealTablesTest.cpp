// Tables that other programs wrote. Without the folder of them these tests skip.
#include <filesystem>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <corvel/Path.h>
#include <trovan/DBFReader.h>

#include "support/Latin1.h"
#include "support/Sha256.h"
#include "support/TempFolder.h"
#include "tables/DBFReaderModel.h"
#include "tables/RealFiles.h"

namespace trovan::test {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

const json& ExpectedTables() {
  static const json expected = Expectations("dbf");
  return expected;
}

const json& ExpectedMemos() {
  static const json expected = Expectations("memo");
  return expected;
}

class RealTableFileTest : public RealFileTest {
 protected:
  // The model of the table together with the memo file that the reader finds beside it.
  static DBFReaderModel ModelOf(fs::path table) {
    const std::string bytes = ReadBytes(table);
    std::optional<DBFReaderModel::Memo> memo;
    if (fs::exists(table.replace_extension(".fpt"))) {
      memo = {ReadBytes(table), 64};
    } else if (fs::exists(table.replace_extension(".dbt"))) {
      memo = {ReadBytes(table), 512};
    }
    return DBFReaderModel::File(bytes, memo);
  }

  CDBFReader::DBFError Open(const fs::path& table) {
    return reader_.OpenFromFile(corvel::PathFromSystem(table.string()));
  }

  CDBFReader reader_;
};

class RealTableTest : public RealTableFileTest {
 protected:
  fs::path Table() const { return DataFolder() / GetParam(); }
  const json& Expected() const { return ExpectedTables().at(GetParam()); }
};
INSTANTIATE_TEST_SUITE_P(Data, RealTableTest, testing::ValuesIn(Keys(ExpectedTables())), TestName);

TEST_P(RealTableTest, HasTheNumbersOfItsHeader) {
  EXPECT_EQ(Open(Table()), ModelOf(Table()).OpenStatus());
  EXPECT_TRUE(reader_.IsOpen());
  EXPECT_EQ(reader_.CountRecords(), Expected().at("record_count").get<unsigned>());
  EXPECT_EQ(reader_.RecordSize(), Expected().at("record_length").get<unsigned>());
  EXPECT_EQ(reader_.LangID(), Expected().at("language_driver").get<unsigned>());
}

TEST_P(RealTableTest, HasTheBytesOfItsRecords) {
  (void)Open(Table());
  if (!Expected().at("all_records_present").get<bool>()) {
    // The layout is another one: what its header seems to say does not fit the file.
    ASSERT_EQ(Expected().at("layout"), "dbase2");
    EXPECT_TRUE(Expected().at("records_sha256").is_null());
    std::vector<char> buffer(reader_.RecordSize());
    EXPECT_EQ(reader_.EnumRecord(reader_.CountRecords() - 1, buffer.data(), reader_.RecordSize()),
              CDBFReader::DBF_ERR_READ);
    return;
  }
  std::string records;
  // A file may end before the byte behind the last record.
  std::string buffer(reader_.RecordSize(), '\0');
  const bool oneByte = reader_.RecordSize() == 1;
  for (unsigned i = 0; i < reader_.CountRecords(); ++i) {
    const auto status = reader_.EnumRecord(i, buffer.data(), reader_.RecordSize());
    const bool nothingBehind =
        oneByte && i + 1 == reader_.CountRecords() && Expected().at("bytes_after_last_record") == 0;
    ASSERT_EQ(status, nothingBehind ? CDBFReader::DBF_ERR_READ : CDBFReader::DBF_OK) << i;
    records.append(buffer, 0, reader_.RecordSize() - 1);
  }
  EXPECT_EQ(Sha256(records), Expected().at("records_sha256").get<std::string>());
}

// The layout of level 7 has longer headers and descriptors, and that of dBASE II none at all: there
// the reader lists what its rule makes of the bytes, which the model knows.
TEST_P(RealTableTest, BeginsWithTheFieldsOfTheTable) {
  (void)Open(Table());
  if (Expected().at("layout") != "dbase3+") {
    EXPECT_EQ(reader_.CountFields(), ModelOf(Table()).Fields().size());
    return;
  }
  unsigned index = 0;
  for (const json& field : Expected().at("fields")) {
    DBF_FIELDINFO info{};
    ASSERT_EQ(reader_.EnumFieldInfo(index, &info), CDBFReader::DBF_OK) << "field " << index;
    EXPECT_EQ(Utf8FromLatin1(info.name), field.at("name").get<std::string>());
    EXPECT_EQ(std::string(1, info.type), field.at("type").get<std::string>());
    EXPECT_EQ(info.length, field.at("length").get<unsigned>());
    ++index;
  }
}

TEST_P(RealTableTest, AgreesWithTheModelInAFile) {
  std::mt19937 random(1);
  const DBFReaderModel model = ModelOf(Table());
  ASSERT_EQ(Open(Table()), model.OpenStatus());
  EXPECT_EQ(Disagreement(reader_, model, random), "");
}

TEST_P(RealTableTest, AgreesWithTheModelInMemory) {
  std::mt19937 random(2);
  const std::string bytes = ReadBytes(Table());
  const std::vector<unsigned char> memory(bytes.begin(), bytes.end());
  const DBFReaderModel model = DBFReaderModel::Memory(bytes);
  ASSERT_EQ(reader_.OpenFromMemory(memory.data(), static_cast<unsigned>(memory.size())),
            model.OpenStatus());
  EXPECT_EQ(Disagreement(reader_, model, random), "");
}

TEST_P(RealTableTest, IsCheckedAsTheModelDoes) {
  EXPECT_EQ(CDBFReader::CheckDBFFile(corvel::PathFromSystem(Table().string())),
            ModelCheck(ReadBytes(Table())));
}

class RealMemoTest : public RealTableFileTest {
 protected:
  const json& Expected() const { return ExpectedMemos().at(GetParam()); }

  // Puts the table and its memo file into a folder of our own, under the name in small letters that
  // the reader looks for. Returns where the table then is.
  fs::path TableWithMemoFile() const {
    const fs::path table = DataFolder() / GetParam();
    const fs::path memo = table.parent_path() / Expected().at("memo_file").get<std::string>();
    const bool isFpt = Expected().at("kind") == "fpt";
    fs::copy_file(table, folder_.Path() / "table.dbf");
    fs::copy_file(memo, folder_.Path() / (isFpt ? "table.fpt" : "table.dbt"));
    return folder_.Path() / "table.dbf";
  }

  TempFolder folder_;
};
INSTANTIATE_TEST_SUITE_P(Data, RealMemoTest, testing::ValuesIn(Keys(ExpectedMemos())), TestName);

constexpr unsigned kLargestText = 65534;
constexpr unsigned kRoomForAll = 65535;  // the size that allows texts of every length below it

// Every text that the reader can deliver, found by the block number in the reader's blocks.
TEST_P(RealMemoTest, HasTheTextsOfItsMemos) {
  if (Expected().at("memo_file").is_null()) {
    ASSERT_EQ(Open(DataFolder() / GetParam()), CDBFReader::DBF_OK);
    char buffer[2];
    EXPECT_EQ(reader_.EnumMemo(1, buffer, sizeof buffer), CDBFReader::DBF_ERR_NOT_OPEN);
    return;
  }
  const fs::path table = TableWithMemoFile();
  const DBFReaderModel model = ModelOf(table);
  ASSERT_EQ(Open(table), CDBFReader::DBF_OK);
  const std::string kind = Expected().at("kind");
  const unsigned blockSize = Expected().at("block_size");
  const unsigned readersBlockSize = kind == "fpt" ? 64 : 512;
  ASSERT_EQ(blockSize % readersBlockSize, 0U);
  unsigned texts = 0;
  unsigned compared = 0;
  for (const json& value : Expected().at("values")) {
    if (value.contains("error")) continue;  // the pointer leads nowhere
    const unsigned block = value.at("block").get<unsigned>() * (blockSize / readersBlockSize);
    SCOPED_TRACE(testing::Message() << "block " << block);
    std::string buffer(kRoomForAll, '\0');
    ASSERT_EQ(reader_.EnumMemo(block, buffer.data(), kRoomForAll), CDBFReader::DBF_OK);
    const std::string text = buffer.c_str();
    EXPECT_EQ(text + '\0', model.MemoText(block, kRoomForAll).bytes);

    // dBASE III has no head of 8 bytes, so that its texts lack as many here.
    const auto length = value.at("length").get<std::size_t>();
    if (kind == "dbt3" || length > kLargestText) continue;
    ++texts;
    if (text.size() < length) continue;  // a NUL byte is part of the value
    EXPECT_EQ(Sha256(text.substr(0, length)), value.at("sha256").get<std::string>());
    ++compared;
  }
  if (texts > 0) {
    EXPECT_GT(compared, 0U) << "no memo could be compared";
  }
}

// A folder that is there but lacks what it should have must not pass for one that is not there.
TEST(RealTables, AreThereWithTheirExpectedValues) {
  if (!fs::exists(DataFolder())) {
    GTEST_SKIP() << "There is no folder " << DataFolder()
                 << ": set the CMake variable TROVAN_TEST_DATA to a folder with tables.";
  }
  EXPECT_FALSE(ExpectedTables().empty());
  EXPECT_FALSE(ExpectedMemos().empty());
  for (const auto& item : ExpectedTables().items()) {
    EXPECT_TRUE(fs::exists(DataFolder() / item.key())) << item.key();
  }
}

}  // namespace
}  // namespace trovan::test
