#include "filters/table/TableLayout.h"

#include <string>
#include <vector>

#include <corvel/Exception.h>

#include "TableFixture.h"
#include "filters/support/FilterError.h"

namespace trovan::filters {
namespace {

using std::string_literals::operator""s;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

class TableLayoutTest : public TableFixture {
 protected:
  TableLayout Read(const DbfImage& image) { return Read(image.Text()); }
  TableLayout Read(const std::string& bytes) {
    Save(bytes);
    return ReadTableLayout(Path());
  }

  // What the refusal of these bytes says; empty when they are taken for a table.
  std::string Refusal(const std::string& bytes) {
    try {
      Read(bytes);
    } catch (const FilterError& error) {
      return error.what();
    }
    return {};
  }

  static std::vector<std::string> Names(const TableLayout& layout) {
    std::vector<std::string> names;
    for (const FieldLayout& field : layout.fields) names.push_back(field.name);
    return names;
  }
};

TEST_F(TableLayoutTest, ReadsTheHeader) {
  std::string bytes =
      DbfImage().Field("NAME", 'C', 4).Field("POP", 'N', 9, 2).Language(0x57).Record("Oslo").Text();
  bytes[14] = 1;
  bytes[15] = 2;
  const TableLayout layout = Read(bytes);
  EXPECT_EQ(layout.version, 0x03);
  EXPECT_FALSE(layout.level7);
  EXPECT_EQ(layout.recordCount, 1U);
  EXPECT_EQ(layout.headerLength, 97U);
  EXPECT_EQ(layout.recordLength, 14U);
  EXPECT_EQ(layout.DataLength(), 13U);
  EXPECT_EQ(layout.languageByte, 0x57);
  EXPECT_EQ(layout.transactionByte, 1);
  EXPECT_EQ(layout.encryptionByte, 2);
  EXPECT_TRUE(layout.terminated);
  EXPECT_EQ(layout.bytesAfterTerminator, 0U);
  EXPECT_EQ(layout.fileLength, static_cast<long long>(bytes.size()));
  ASSERT_THAT(layout.fields, SizeIs(2));
  EXPECT_EQ(layout.fields[1].name, "POP");
  EXPECT_EQ(layout.fields[1].type, 'N');
  EXPECT_EQ(layout.fields[1].length, 9U);
  EXPECT_EQ(layout.fields[1].decimals, 2U);
  EXPECT_EQ(layout.fields[1].offset, 4U);
}

TEST_F(TableLayoutTest, FindsRecordsBeyondFourGigabytes) {
  TableLayout layout;
  layout.headerLength = 65'535;
  layout.recordLength = 65'535;
  EXPECT_EQ(layout.RecordOffset(0xFFFF'FFFFU), 65'535LL + 65'535LL * 0xFFFF'FFFFLL);
}

TEST_F(TableLayoutTest, ReadsTheDescriptorsOfLevel7) {
  const std::string longName = "A_NAME_OF_THIRTY_TWO_LETTERS_ABC";
  const TableLayout layout =
      Read(Level7Table(Level7Field(longName, 'C', 200, 0) + Level7Field("N", 'N', 8, 3), 209,
                       std::string(418, ' ')));
  EXPECT_TRUE(layout.level7);
  EXPECT_THAT(Names(layout), ElementsAre(longName, "N"));
  EXPECT_EQ(layout.fields[0].length, 200U);
  EXPECT_EQ(layout.fields[1].type, 'N');
  EXPECT_EQ(layout.fields[1].decimals, 3U);
  EXPECT_EQ(layout.fields[1].offset, 200U);
  EXPECT_TRUE(layout.terminated);
  EXPECT_EQ(layout.bytesAfterTerminator, 0U);
}

TEST_F(TableLayoutTest, KnowsLevel7ByTheLowBitsOfTheVersion) {
  const struct {
    std::uint8_t version;
    bool level7;
  } cases[] = {{0x03, false}, {0x04, true}, {0x05, false}, {0x30, false}, {0x83, false},
               {0x8B, false}, {0x8C, true}, {0xCB, false}, {0xE5, false}, {0xF5, false}};
  for (const auto& c : cases) {
    // Room for a descriptor of either level.
    const auto image =
        DbfImage().Version(c.version).Field("A", 'C', 1).Field("B", 'C', 1).Field("C", 'C', 1);
    EXPECT_EQ(Read(image).level7, c.level7) << int{c.version};
  }
}

TEST_F(TableLayoutTest, TakesALevel7HeaderWithoutRoomForAField) {
  std::string bytes(68, '\0');
  bytes[0] = 0x04;
  bytes[8] = 40;
  bytes[10] = 2;
  EXPECT_THAT(Read(bytes).fields, SizeIs(0));
}

TEST_F(TableLayoutTest, KeepsTheLastFieldOfAHeaderWithoutTerminator) {
  const TableLayout layout =
      Read(DbfImage().Field("A", 'C', 1).Field("B", 'C', 1).WithoutTerminator().Record("xy"));
  EXPECT_THAT(Names(layout), ElementsAre("A", "B"));
  EXPECT_FALSE(layout.terminated);
  EXPECT_EQ(layout.bytesAfterTerminator, 0U);
}

TEST_F(TableLayoutTest, EndsAtANulInPlaceOfTheTerminator) {
  const TableLayout layout = Read(DbfImage()
                                      .Field("A", 'C', 1)
                                      .WithoutTerminator()
                                      .BackLink(std::string(33, '\0'))
                                      .Record("x"));
  EXPECT_THAT(Names(layout), ElementsAre("A"));
  EXPECT_FALSE(layout.terminated);
  EXPECT_EQ(layout.bytesAfterTerminator, 33U);
}

TEST_F(TableLayoutTest, LeavesTheBackLinkOutOfTheFields) {
  const TableLayout layout =
      Read(DbfImage().Version(0x30).Field("A", 'C', 1).BackLink(std::string(263, 'b')).Record("x"));
  EXPECT_THAT(Names(layout), ElementsAre("A"));
  EXPECT_EQ(layout.bytesAfterTerminator, 263U);
}

TEST_F(TableLayoutTest, ReadsFlagsInTablesOfVisualFoxProOnly) {
  const auto image = DbfImage().Field("A", 'C', 1).Flags(kNullableField | kBinaryField);
  EXPECT_EQ(Read(DbfImage(image).Version(0x30)).fields[0].flags, 6U);
  EXPECT_EQ(Read(DbfImage(image).Version(0x32)).fields[0].flags, 6U);
  EXPECT_EQ(Read(DbfImage(image).Version(0x03)).fields[0].flags, 0U);
  EXPECT_EQ(Read(DbfImage(image).Version(0xF5)).fields[0].flags, 0U);
}

TEST_F(TableLayoutTest, GivesNamesOfElevenBytesWhole) {
  EXPECT_THAT(Names(Read(DbfImage().Field("ELEVENBYTES", 'C', 1).Field("A\0BC"s, 'C', 1))),
              ElementsAre("ELEVENBYTES", "A"));
}

TEST_F(TableLayoutTest, WidensTextsWhenTheRecordLengthSaysSo) {
  const TableLayout layout = Read(DbfImage()
                                      .Field("A", 'C', 0x2C, 1)  // 300 bytes
                                      .Field("N", 'N', 8, 2)
                                      .RecordLength(309)
                                      .Record(std::string(308, 'x')));
  EXPECT_EQ(layout.fields[0].length, 300U);
  EXPECT_EQ(layout.fields[0].decimals, 0U);
  EXPECT_EQ(layout.fields[1].length, 8U);
  EXPECT_EQ(layout.fields[1].decimals, 2U);
  EXPECT_EQ(layout.fields[1].offset, 300U);
}

TEST_F(TableLayoutTest, WidensNothingWhenTheLengthsFitAsTheyStand) {
  EXPECT_EQ(Read(DbfImage().Field("A", 'C', 44, 1).Record("x")).fields[0].length, 44U);
}

TEST_F(TableLayoutTest, WidensNothingWhenNoReadingFits) {
  const TableLayout layout = Read(DbfImage().Field("A", 'C', 44, 1).RecordLength(99).Record("x"));
  EXPECT_EQ(layout.fields[0].length, 44U);
  EXPECT_EQ(layout.fields[0].decimals, 1U);
}

TEST_F(TableLayoutTest, TakesFieldsWithoutLength) {
  const TableLayout layout = Read(DbfImage().Field("A", 'C', 0).Field("B", 'C', 2).Record("xy"));
  EXPECT_EQ(layout.fields[0].length, 0U);
  EXPECT_EQ(layout.fields[1].offset, 0U);
}

TEST_F(TableLayoutTest, TakesATableWithoutFields) {
  EXPECT_THAT(Read(DbfImage()).fields, SizeIs(0));
}

TEST_F(TableLayoutTest, TakesTheLongestHeader) {
  DbfImage image;
  for (int i = 0; i < 2046; ++i) image.Field("F", 'C', 1);
  const TableLayout layout = Read(DbfImage(image).HeaderLength(65'505).RecordLength(2047));
  EXPECT_THAT(layout.fields, SizeIs(2046));
  EXPECT_EQ(layout.fields.back().offset, 2045U);
}

TEST_F(TableLayoutTest, RefusesDBase2ByName) {
  std::string bytes(521, '\0');
  bytes[0] = 0x02;
  EXPECT_THAT(Refusal(bytes), HasSubstr("dBASE II table"));
}

TEST_F(TableLayoutTest, SaysWhyItRefuses) {
  const std::string good = DbfImage().Field("A", 'C', 1).Record("x").Text();
  EXPECT_EQ(Refusal(good), "");
  EXPECT_THAT(Refusal(""), HasSubstr("is empty"));
  EXPECT_THAT(Refusal(good.substr(0, 31)), HasSubstr("it has only 31 bytes, a header has 32"));
  EXPECT_THAT(Refusal(good.substr(0, 32)), HasSubstr("65 bytes, the file ends after 32"));
  EXPECT_THAT(Refusal(good.substr(0, 64)), HasSubstr("65 bytes, the file ends after 64"));
  EXPECT_THAT(Refusal(DbfImage().Field("A", 'C', 1).HeaderLength(32).Text()),
              HasSubstr("no room for a field"));
  EXPECT_THAT(Refusal(DbfImage().Field("A", 'C', 1).HeaderLength(0).Text()),
              HasSubstr("header length at byte 8 is 0"));
  EXPECT_THAT(Refusal(DbfImage().Field("A", 'C', 1).RecordLength(0).Text()),
              HasSubstr("record length at byte 10 is 0"));
}

TEST_F(TableLayoutTest, RaisesWhatTheSystemRefuses) {
  EXPECT_THROW(ReadTableLayout(Path()), corvel::Exception);
  EXPECT_THROW(ReadTableLayout(folder_.Path().wstring()), corvel::Exception);
}

TEST(DescribeVersion, NamesEveryKnownProgram) {
  for (const int version : {0x02, 0x03, 0x04, 0x05, 0x30, 0x31, 0x32, 0x43, 0x63, 0x7B, 0x83, 0x8B,
                            0x8C, 0xCB, 0xE5, 0xF5, 0xFB}) {
    EXPECT_NE(DescribeVersion(static_cast<std::uint8_t>(version)), "unknown") << version;
  }
  EXPECT_EQ(DescribeVersion(0x00), "unknown");
  EXPECT_EQ(DescribeVersion(0xFF), "unknown");
}

}  // namespace
}  // namespace trovan::filters
