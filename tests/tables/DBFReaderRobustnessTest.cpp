// Tables cut anywhere and with wrong bytes anywhere. Every table lies in a block of its own size,
// so that the address sanitizer sees a read behind it; every answer is compared with the model's,
// so that a reader that survives by answering nonsense does not pass.
#include <random>
#include <string>

#include <gtest/gtest.h>

#include <trovan/DBFReader.h>

#include "support/Random.h"
#include "tables/DBFReaderFixture.h"
#include "tables/DBFReaderModel.h"

namespace trovan::test {
namespace {

std::string SmallTable() {
  return DbfImage()
      .Field("NAME", 'C', 4)
      .Field("NOTE", 'M', 10)
      .Language(0x57)
      .Record("Oslo         1")
      .DeletedRecord("Rome         2")
      .Record("Bonn         9")
      .Text();
}

std::string TableWithBackLink() {
  return DbfImage()
      .Version(0x30)
      .Field("ID", 'I', 4)
      .BackLink(std::string(263, '\0'))
      .Record(std::string("\1\0\0\0", 4))
      .WithoutEndMark()
      .Text();
}

std::string WrappingTable() {
  return DbfImage().Field("A", 'C', 1).Record("a").Record("b").RecordCount(0x80000002U).Text();
}

std::string MemoFile(std::size_t blockSize) {
  std::string file(blockSize, '\0');
  for (const char* text : {"the first memo", "the second"}) {
    std::string block = std::string("\0\0\0\1\0\0\0\x0E", 8) + text;
    block.resize(blockSize, '\0');
    file += block;
  }
  return file;
}

class DBFReaderRobustnessTest : public DBFReaderTest {
 protected:
  // These two return what the reader answers otherwise than its model; empty where nothing.
  std::string DisagreementInMemory(const std::string& table) {
    const auto model = DBFReaderModel::Memory(table);
    const auto status = OpenMemory(table);
    if (status != model.OpenStatus()) return "opening: " + StatusText(status);
    return Disagreement(reader_, model, random_);
  }
  std::string DisagreementInFile(const std::string& table, const std::string& memoFile,
                                 bool isFpt) {
    WriteBytes(folder_.Path() / (isFpt ? "table.fpt" : "table.dbt"), memoFile);
    const auto model =
        DBFReaderModel::File(table, DBFReaderModel::Memo{memoFile, isFpt ? 64 : 512});
    const auto status = OpenFile(table);
    if (status != model.OpenStatus()) return "opening: " + StatusText(status);
    return Disagreement(reader_, model, random_);
  }
  void FlipBytes(std::string& bytes) {
    for (auto flips = 1 + Below(random_, 3); flips > 0; --flips) {
      // Half of them in the header, where a byte matters most.
      const std::size_t range = OneIn(random_, 2) ? bytes.size() : 32;
      char& byte = bytes[Below(random_, static_cast<unsigned>(range))];
      byte = static_cast<char>(byte ^ static_cast<int>(1 + Below(random_, 255)));
    }
  }

  std::mt19937 random_{7};  // fixed, so that a failure repeats
};

TEST_F(DBFReaderRobustnessTest, SurvivesEveryCutOfATableInMemory) {
  for (const std::string& whole : {SmallTable(), TableWithBackLink(), WrappingTable()}) {
    for (std::size_t size = 0; size <= whole.size(); ++size) {
      ASSERT_EQ(DisagreementInMemory(whole.substr(0, size)), "") << "cut to " << size;
    }
  }
}

TEST_F(DBFReaderRobustnessTest, SurvivesEveryCutOfATableInAFile) {
  for (const std::string& whole : {SmallTable(), TableWithBackLink(), WrappingTable()}) {
    for (std::size_t size = 0; size <= whole.size(); ++size) {
      ASSERT_EQ(DisagreementInFile(whole.substr(0, size), MemoFile(64), true), "")
          << "cut to " << size;
    }
  }
}

class DBFReaderMemoRobustnessTest : public DBFReaderRobustnessTest,
                                    public testing::WithParamInterface<bool> {
 protected:
  bool IsFpt() const { return GetParam(); }
  std::string Whole() const { return MemoFile(IsFpt() ? 64 : 512); }
};
INSTANTIATE_TEST_SUITE_P(Kinds, DBFReaderMemoRobustnessTest, testing::Values(true, false),
                         [](const testing::TestParamInfo<bool>& kind) {
                           return kind.param ? "Fpt" : "Dbt";
                         });

TEST_P(DBFReaderMemoRobustnessTest, SurvivesEveryCutOfAMemoFile) {
  const std::string whole = Whole();
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    ASSERT_EQ(DisagreementInFile(SmallTable(), whole.substr(0, size), IsFpt()), "")
        << "cut to " << size;
  }
}

TEST_P(DBFReaderMemoRobustnessTest, SurvivesWrongBytesInTableAndMemoFile) {
  for (int round = 0; round < 1'000; ++round) {
    std::string table = round % 2 == 0 ? SmallTable() : TableWithBackLink();
    std::string memoFile = Whole();
    FlipBytes(table);
    FlipBytes(memoFile);
    ASSERT_EQ(DisagreementInFile(table, memoFile, IsFpt()), "") << "round " << round;
  }
}

TEST_F(DBFReaderRobustnessTest, SurvivesWrongBytesInMemory) {
  const std::string tables[] = {SmallTable(), TableWithBackLink(), WrappingTable()};
  for (int round = 0; round < 100'000; ++round) {
    std::string table = tables[round % 3];
    FlipBytes(table);
    ASSERT_EQ(DisagreementInMemory(table), "") << "round " << round;
  }
}

}  // namespace
}  // namespace trovan::test
