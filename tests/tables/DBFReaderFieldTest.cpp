#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <trovan/DBFReader.h>

#include "tables/DBFReaderFixture.h"

namespace trovan::test {
namespace {

using namespace std::string_view_literals;

constexpr char kNul = '\0';

using DBFReaderFieldTest = DBFReaderTest;
using DBFReaderFieldSourceTest = DBFReaderSourceTest;
INSTANTIATE_TEST_SUITE_P(Sources, DBFReaderFieldSourceTest, BothSources(), SourceName);

std::string RawName(const DBF_FIELDINFO& info) { return {info.name, sizeof info.name}; }

TEST_P(DBFReaderFieldSourceTest, ListsTheFieldsInOrder) {
  Open(
      DbfImage().Field("NAME", 'C', 20).Field("AREA", 'N', 8, 3).Field("NOTE", 'M', 10).Record(""));
  ASSERT_EQ(FieldNames(), (std::vector<std::string>{"NAME", "AREA", "NOTE"}));
  EXPECT_EQ(Field(0).type, 'C');
  EXPECT_EQ(Field(1).type, 'N');
  EXPECT_EQ(Field(2).type, 'M');
  EXPECT_EQ(Field(0).length, 20U);
  EXPECT_EQ(Field(1).length, 8U);  // the decimals are no part of the length
  EXPECT_EQ(Field(2).length, 10U);
}

TEST_P(DBFReaderFieldSourceTest, KeepsTenBytesOfANameAndEndsThemWithNul) {
  Open(DbfImage()
           .Field("ELEVENCHARS", 'C', 1)
           .Field("TENLETTERS", 'C', 1)
           .Field("", 'C', 1)
           .Record(""));
  EXPECT_EQ(RawName(Field(0)), "ELEVENCHAR\0\0"sv);
  EXPECT_EQ(RawName(Field(1)), "TENLETTERS\0\0"sv);
  EXPECT_EQ(RawName(Field(2)), std::string(12, '\0'));
}

TEST_P(DBFReaderFieldSourceTest, KeepsTheBytesBehindANulInAName) {
  Open(DbfImage().Field("AB\0rest of it"sv, 'C', 1).Field("\0\xFF\x80"sv, 'C', 1).Record(""));
  EXPECT_EQ(RawName(Field(0)), "AB\0rest of\0\0"sv);
  EXPECT_EQ(RawName(Field(1)), "\0\xFF\x80\0\0\0\0\0\0\0\0\0"sv);
}

TEST_P(DBFReaderFieldSourceTest, KeepsEveryTypeByte) {
  for (int type = 0; type <= 0xFF; ++type) {
    Open(DbfImage().Field("A", static_cast<char>(type), 1).Record(""));
    EXPECT_EQ(Field(0).type, static_cast<char>(type));
  }
}

TEST_P(DBFReaderFieldSourceTest, KeepsEveryLengthAsAnUnsignedNumber) {
  for (unsigned length = 0; length <= 0xFF; ++length) {
    // The second field makes the record long enough even where the first has no byte.
    Open(DbfImage().Field("A", 'C', length).Field("B", 'C', 1).Record(""));
    EXPECT_EQ(Field(0).length, length);
    EXPECT_EQ(reader_.EnumFieldOffset(1), length);
  }
}

// The terminator's byte must lie behind the descriptors, or the last of them is not seen.
TEST_P(DBFReaderFieldSourceTest, CountsTheFieldsByTheHeaderLengthAlone) {
  const struct {
    std::uint16_t headerLength;
    unsigned fields;
  } cases[] = {{64, 0}, {65, 1},  {66, 1},  {95, 1},  {96, 1},  {97, 2},
               {98, 2}, {127, 2}, {128, 2}, {129, 3}, {160, 3}, {161, 4}};
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << "header length " << c.headerLength);
    const std::string descriptors(c.headerLength - 32, 'x');
    const DbfImage image =
        DbfImage().WithoutTerminator().BackLink(descriptors).RecordLength(2).Record("");
    Open(image);
    EXPECT_EQ(reader_.CountFields(), c.fields);
  }
}

TEST_F(DBFReaderFieldTest, FindsNoFieldInAHeaderOfAtMostSixtyFourBytes) {
  for (std::uint16_t length = 0; length <= 64; ++length) {
    ASSERT_EQ(OpenFile(DbfImage().Field("A", 'C', 1).HeaderLength(length).Text()),
              CDBFReader::DBF_OK);
    EXPECT_EQ(reader_.CountFields(), 0U) << "header length " << length;
  }
}

TEST_P(DBFReaderFieldSourceTest, LosesTheLastFieldOfAHeaderWithoutTerminator) {
  Open(DbfImage().Field("A", 'C', 1).Field("B", 'C', 1).WithoutTerminator().Record(""));
  EXPECT_EQ(FieldNames(), std::vector<std::string>{"A"});
}

TEST_P(DBFReaderFieldSourceTest, DoesNotLookAtTheTerminator) {
  Open(DbfImage()
           .Field("A", 'C', 1)
           .Field("B", 'C', 1)
           .WithoutTerminator()
           .BackLink("?")
           .Record(""));
  EXPECT_EQ(FieldNames(), (std::vector<std::string>{"A", "B"}));
}

TEST_P(DBFReaderFieldSourceTest, DoesNotStopAtATerminatorBetweenFields) {
  Open(DbfImage().Field("A", 'C', 1).Field("\x0D", 'C', 1).Field("C", 'C', 1).Record(""));
  EXPECT_EQ(FieldNames(), (std::vector<std::string>{"A", "\x0D", "C"}));
}

// 264 bytes follow the one true descriptor: the terminator and 263 more, of which every whole 32
// bytes become a field. The last 8 bytes are the terminator's place and what is left.
TEST_P(DBFReaderFieldSourceTest, TakesABackLinkForFurtherFields) {
  std::string backLink(263, '\0');
  for (std::size_t i = 0; i < backLink.size(); ++i) backLink[i] = static_cast<char>(i + 1);
  Open(DbfImage().Field("ID", 'C', 4).BackLink(backLink).Record(""));
  ASSERT_EQ(reader_.CountFields(), 9U);
  const std::string behind = '\x0D' + backLink;
  for (unsigned i = 1; i < 9; ++i) {
    const std::string raw = behind.substr((i - 1) * 32, 32);
    EXPECT_EQ(RawName(Field(i)), raw.substr(0, 10) + std::string(2, kNul)) << "field " << i;
    EXPECT_EQ(Field(i).type, raw[11]) << "field " << i;
    EXPECT_EQ(Field(i).length, static_cast<unsigned char>(raw[16])) << "field " << i;
  }
}

TEST_P(DBFReaderFieldSourceTest, TellsNothingOfAFieldThatIsNotThere) {
  Open(DbfImage().Field("A", 'C', 1).Field("B", 'C', 1).Record(""));
  DBF_FIELDINFO info;
  std::memset(&info, 0x55, sizeof info);
  const DBF_FIELDINFO before = info;
  EXPECT_EQ(reader_.EnumFieldInfo(2, &info), CDBFReader::DBF_ERR_PARAM);
  EXPECT_EQ(reader_.EnumFieldInfo(0xFFFFFFFFU, &info), CDBFReader::DBF_ERR_PARAM);
  // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison): no byte is touched, padding included.
  EXPECT_EQ(std::memcmp(&info, &before, sizeof info), 0);
  EXPECT_EQ(reader_.EnumFieldInfo(0, nullptr), CDBFReader::DBF_ERR_PARAM);
}

TEST_P(DBFReaderFieldSourceTest, AddsTheLengthsUpToTheOffsetOfAField) {
  Open(DbfImage()
           .Field("A", 'C', 7)
           .Field("B", 'N', 0)
           .Field("C", 'D', 255)
           .Field("D", 'L', 1)
           .Record(""));
  EXPECT_EQ(reader_.EnumFieldOffset(0), 0U);
  EXPECT_EQ(reader_.EnumFieldOffset(1), 7U);
  EXPECT_EQ(reader_.EnumFieldOffset(2), 7U);
  EXPECT_EQ(reader_.EnumFieldOffset(3), 262U);
}

TEST_P(DBFReaderFieldSourceTest, GivesOffsetZeroForAFieldThatIsNotThere) {
  Open(DbfImage().Field("A", 'C', 7).Field("B", 'C', 9).Record(""));
  EXPECT_EQ(reader_.EnumFieldOffset(2), 0U);
  EXPECT_EQ(reader_.EnumFieldOffset(0xFFFFFFFFU), 0U);
  reader_.Close();
  EXPECT_EQ(reader_.EnumFieldOffset(1), 0U);
}

TEST_F(DBFReaderFieldTest, AddsOffsetsBeyondTheLongestRecord) {
  DbfImage image;
  constexpr unsigned kFields = 2040;
  for (unsigned i = 0; i < kFields; ++i) image.Field("F", 'C', 255);
  ASSERT_EQ(OpenFile(image.Text()), CDBFReader::DBF_OK);
  ASSERT_EQ(reader_.CountFields(), kFields);
  EXPECT_EQ(reader_.EnumFieldOffset(kFields - 1), (kFields - 1) * 255);
}

TEST_F(DBFReaderFieldTest, ReadsTheLongestHeader) {
  const std::string table = DbfImage()
                                .WithoutTerminator()
                                .BackLink(std::string(65535 - 32, 'f'))
                                .RecordLength(2)
                                .Record("")
                                .Text();
  ASSERT_EQ(OpenFile(table), CDBFReader::DBF_OK);
  EXPECT_EQ(reader_.CountFields(), 2046U);
  EXPECT_EQ(Record(0), std::string("\x1A") + kUntouched);
}

}  // namespace
}  // namespace trovan::test
