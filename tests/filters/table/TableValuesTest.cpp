// Every kind of value, as a row shows it.
#include <bit>
#include <cstdint>
#include <string>
#include <string_view>

#include "MemoImage.h"
#include "TableFixture.h"

namespace trovan::filters {
namespace {

using nlohmann::ordered_json;
using std::string_literals::operator""s;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class TableValuesTest : public TableFixture {
 protected:
  // A field that holds `stored`, as JSON shows it.
  ordered_json Value(char type, const std::string& stored, std::uint8_t version = 0x03,
                     std::uint8_t flags = 0) {
    Save(DbfImage()
             .Version(version)
             .Field("V", type, static_cast<unsigned>(stored.size()))
             .Flags(flags)
             .Record(stored));
    return Json()[0]["V"];
  }

  ordered_json ValueOfLevel7(char type, const std::string& stored) {
    Save(Level7Table(Level7Field("V", type, static_cast<std::uint8_t>(stored.size())),
                     static_cast<std::uint16_t>(stored.size() + 1), " " + stored));
    return Json()[0]["V"];
  }

  // The same in CSV, without trimming and the like.
  std::string Raw(char type, const std::string& stored) {
    Save(DbfImage()
             .Field("V", type, static_cast<unsigned>(stored.size()))
             .Field("W", 'C', 1)
             .Record(stored + "w"));
    options_.raw = true;
    const std::string csv = Csv();
    options_.raw = false;
    return csv.substr(5, csv.size() - 9);
  }
};

TEST_F(TableValuesTest, TrimsTextsAtTheEnd) {
  EXPECT_EQ(Value('C', " two words  "), " two words");
  EXPECT_EQ(Value('C', "ends\0\0 "s), "ends");
  EXPECT_EQ(Value('C', "in\0side "s), "in\0side"s);
  EXPECT_EQ(Value('C', "     "), "");
  EXPECT_EQ(Value('C', "\x8F\x86"), "Åå");
}

TEST_F(TableValuesTest, ShowsNumbersAsNumbersAndOtherTextsAsTexts) {
  EXPECT_EQ(Value('N', "   12.50").dump(), "12.5");
  EXPECT_EQ(Value('F', "-7      ").dump(), "-7");
  EXPECT_EQ(Value('N', "+007.").dump(), "7");
  EXPECT_EQ(Value('F', " 1.5E+03").dump(), "1500.0");
  EXPECT_EQ(Value('N', "        "), nullptr);
  EXPECT_EQ(Value('N', "\0\0\0\0"s), nullptr);
  EXPECT_EQ(Value('N', "********"), nullptr);
  EXPECT_EQ(Value('N', "     nan"), "nan");
  EXPECT_EQ(Value('N', "     1,5"), "1,5");
  EXPECT_EQ(Value('N', ""), nullptr);
}

TEST_F(TableValuesTest, KeepsEveryDigitOfANumber) {
  Save(DbfImage().Field("V", 'N', 20).Field("W", 'C', 1).Record("12345678901234567890"));
  EXPECT_EQ(Csv(), "V,W\r\n12345678901234567890,\r\n");
}

TEST_F(TableValuesTest, ShowsDates) {
  EXPECT_EQ(Value('D', "20240229"), "2024-02-29");
  EXPECT_EQ(Value('D', "  20240229"), "2024-02-29");
  EXPECT_EQ(Value('D', "        "), nullptr);
  EXPECT_EQ(Value('D', "00000000"), nullptr);
  EXPECT_EQ(Value('D', "20230229"), "20230229");
}

TEST_F(TableValuesTest, ShowsLogicalValues) {
  for (const char* yes : {"T", "t", "Y", "y"}) EXPECT_EQ(Value('L', yes), true) << yes;
  for (const char* no : {"F", "f", "N", "n"}) EXPECT_EQ(Value('L', no), false) << no;
  for (const char* none : {"?", " "}) EXPECT_EQ(Value('L', none), nullptr) << none;
  EXPECT_EQ(Value('L', "J"), "J");
}

TEST_F(TableValuesTest, ShowsIntegersOfFoxPro) {
  EXPECT_EQ(Value('I', LowFirst(1, 4), 0x30), 1);
  EXPECT_EQ(Value('I', LowFirst(0xFFFF'FFFFU, 4), 0x30), -1);
  EXPECT_EQ(Value('I', LowFirst(0x8000'0000U, 4), 0x30), INT32_MIN);
  EXPECT_EQ(Value('I', "\x01\x02\x03"), "010203");
}

TEST_F(TableValuesTest, ShowsIntegersOfDBase7) {
  for (const char type : {'I', '+'}) {
    EXPECT_EQ(ValueOfLevel7(type, HighFirst(0x8000'0001U, 4)), 1);
    EXPECT_EQ(ValueOfLevel7(type, HighFirst(0x7FFF'FFFFU, 4)), -1);
    EXPECT_EQ(ValueOfLevel7(type, HighFirst(0x8000'0000U, 4)), 0);
    EXPECT_EQ(ValueOfLevel7(type, HighFirst(0xFFFF'FFFFU, 4)), INT32_MAX);
    EXPECT_EQ(ValueOfLevel7(type, HighFirst(0, 4)), nullptr);
  }
}

TEST_F(TableValuesTest, ShowsReals) {
  const auto fox = [&](double value) {
    return Value('B', LowFirst(std::bit_cast<std::uint64_t>(value), 8), 0x30);
  };
  EXPECT_EQ(fox(0.1), 0.1);
  EXPECT_EQ(fox(-1e300), -1e300);
  EXPECT_EQ(fox(1.0 / 0.0), "inf");
  EXPECT_EQ(fox(0.0), 0);
}

TEST_F(TableValuesTest, ShowsRealsOfDBase7) {
  const auto dbase = [&](double value) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    const bool negative = value < 0;
    return ValueOfLevel7('O', HighFirst(negative ? ~bits : bits ^ std::uint64_t{1} << 63, 8));
  };
  EXPECT_EQ(dbase(0.1), 0.1);
  EXPECT_EQ(dbase(-12.75), -12.75);
  EXPECT_EQ(dbase(0.0), 0);
  EXPECT_EQ(ValueOfLevel7('O', HighFirst(0, 8)), nullptr);
}

TEST_F(TableValuesTest, ShowsCurrency) {
  Save(DbfImage()
           .Version(0x30)
           .Field("V", 'Y', 8)
           .Field("W", 'C', 1)
           .Record(LowFirst(static_cast<std::uint64_t>(INT64_MIN), 8) + "w")
           .Record(LowFirst(12'000, 8) + "w"));
  EXPECT_EQ(Csv(), "V,W\r\n-922337203685477.5808,w\r\n1.2000,w\r\n");
}

TEST_F(TableValuesTest, ShowsTimes) {
  EXPECT_EQ(Value('T', LowFirst(2'451'545, 4) + LowFirst(3'723'040, 4), 0x30),
            "2000-01-01T01:02:03.040");
  EXPECT_EQ(Value('T', std::string(8, '\0'), 0x30), nullptr);
  EXPECT_EQ(Value('T', std::string(8, ' '), 0x30), nullptr);
  EXPECT_EQ(Value('T', LowFirst(1, 8), 0x30), "0100000000000000");
  EXPECT_EQ(ValueOfLevel7('@', HighFirst(std::bit_cast<std::uint64_t>(62'135'683'200'000.0), 8)),
            "1970-01-01T00:00:00");
  EXPECT_EQ(ValueOfLevel7('@', HighFirst(0, 8)), nullptr);
  EXPECT_EQ(ValueOfLevel7('@', HighFirst(~std::uint64_t{0}, 8)), "ffffffffffffffff");
}

TEST_F(TableValuesTest, ShowsUnknownTypesAsBytes) {
  EXPECT_EQ(Value('X', "\x01\xFF ab"), "01ff206162");
  EXPECT_EQ(Value('V', "ab"), "6162") << "in a table of another program";
  EXPECT_EQ(Value('Q', "\0\x01"s, 0x30), "0001");
}

TEST_F(TableValuesTest, ShowsVariableTextsByTheirOwnLength) {
  // The null flags: bit 0 says that the text is shorter than its field, bit 1 that there is none.
  const auto table = [&](const std::string& stored, char flags) {
    Save(DbfImage()
             .Version(0x32)
             .Field("V", 'V', 5)
             .Flags(0x02)
             .Field("_NullFlags", '0', 1)
             .Flags(0x05)
             .Record(stored + flags));
    return Json()[0]["V"];
  };
  EXPECT_EQ(table("a   \x02"s, 1), "a ") << "blanks within the length belong to it";
  EXPECT_EQ(table("a   \0"s, 1), "");
  EXPECT_EQ(table("abcd\xFF"s, 1), "abcd") << "a length beyond the field";
  EXPECT_EQ(table("abcde", 0), "abcde");
  EXPECT_EQ(table("abc  ", 0), "abc");
  EXPECT_EQ(table("abcde", 2), nullptr);
  EXPECT_EQ(table("abc\0\x03"s, 3), nullptr);
  EXPECT_EQ(Json()[0].size(), 1U) << "the null flags are no column";
}

TEST_F(TableValuesTest, ShowsVariableBytesByTheirOwnLength) {
  Save(DbfImage()
           .Version(0x32)
           .Field("V", 'Q', 4)
           .Field("_NullFlags", '0', 1)
           .Flags(0x05)
           .Record("\x01\x02\0\x02\x01"s));
  EXPECT_EQ(Json()[0]["V"], "0102");
}

TEST_F(TableValuesTest, ShowsNullByTheFlags) {
  Save(DbfImage()
           .Version(0x30)
           .Field("A", 'C', 2)
           .Flags(0x02)
           .Field("B", 'N', 2)
           .Flags(0x02)
           .Field("_NullFlags", '0', 1)
           .Flags(0x05)
           .Record("xx 1\x02")
           .Record("xx 1\x01")
           .Record("xx 1"s + '\0'));
  EXPECT_EQ(Json().dump(), R"([{"A":"xx","B":null},{"A":null,"B":1},{"A":"xx","B":1}])");
}

TEST_F(TableValuesTest, TakesNullFlagsThatAreCutOffForUnset) {
  const std::string whole = DbfImage()
                                .Version(0x30)
                                .Field("A", 'C', 2)
                                .Field("B", 'C', 2)
                                .Flags(0x02)
                                .Field("C", 'C', 2)
                                .Flags(0x02)
                                .Field("D", 'C', 2)
                                .Flags(0x02)
                                .Field("E", 'C', 2)
                                .Flags(0x02)
                                .Field("F", 'C', 2)
                                .Flags(0x02)
                                .Field("G", 'C', 2)
                                .Flags(0x02)
                                .Field("_NullFlags", '0', 1)
                                .Flags(0x05)
                                .Record("aabbccddeeffgg"s + '\0')
                                .WithoutEndMark()
                                .Text();
  Save(std::string_view(whole).substr(0, whole.size() - 1));
  EXPECT_EQ(Csv(), "A,B,C,D,E,F,G\r\naa,bb,cc,dd,ee,ff,gg\r\n");
}

TEST_F(TableValuesTest, LeavesStoredTextsAsTheyAreWhenRaw) {
  EXPECT_EQ(Raw('C', " a  "), " a  ");
  EXPECT_EQ(Raw('N', "  +07"), "  +07");
  EXPECT_EQ(Raw('N', "*****"), "*****");
  EXPECT_EQ(Raw('D', "20240229"), "20240229");
  EXPECT_EQ(Raw('L', "T"), "T");
  EXPECT_EQ(Raw('L', " "), " ");
  EXPECT_EQ(Raw('I', LowFirst(7, 4)), "7") << "a binary number has no stored text";
}

TEST_F(TableValuesTest, DecodesTextsInTheTablesCodePage) {
  Save(DbfImage().Language(0x65).Field("\x88\x8C\x9F", 'C', 6).Record("\x8C\xA8\xE0"));
  EXPECT_EQ(Csv(), "ИМЯ\r\nМир\r\n");
  EXPECT_EQ(result_.codePage, 866);
  options_.codePage = 437;
  EXPECT_EQ(Csv(), "êîƒ\r\nî¿α\r\n");
}

TEST_F(TableValuesTest, TrimsBlanksOfWidePagesToo) {
  Save(DbfImage().Field("A", 'C', 8).Field("B", 'C', 2).Record("x\0y\0 \0 \0z\0"s));
  options_.codePage = 1200;
  EXPECT_THAT(Csv(), testing::EndsWith("xy,z\r\n"));
}

TEST_F(TableValuesTest, CountsMalformedTexts) {
  Save(DbfImage().Field("A", 'C', 4).Record("\xFFok").Record("\xC3(").Record("fine"));
  options_.codePage = 65001;
  EXPECT_EQ(Csv(), "A\r\n\xEF\xBF\xBDok\r\n\xEF\xBF\xBD(\r\nfine\r\n");
  EXPECT_EQ(result_.malformed, 2U);
  EXPECT_EQ(result_.problems.Count(), 0U);
}

// --- Memos ---------------------------------------------------------------------------------------

class MemoValuesTest : public TableValuesTest {
 protected:
  // A table whose memo fields hold these pointers, in a FoxPro or dBASE manner.
  void SaveBinaryPointers(const std::vector<std::uint32_t>& blocks, char type = 'M') {
    DbfImage image;
    image.Version(0x30).Field("M", type, 4);
    for (const std::uint32_t block : blocks) image.Record(LowFirst(block, 4));
    Save(image);
  }
  void SaveTextPointers(const std::vector<std::string>& pointers) {
    DbfImage image;
    image.Field("M", 'M', 10);
    for (const std::string& pointer : pointers) image.Record(pointer);
    Save(image);
  }
};

TEST_F(MemoValuesTest, ShowsTextsWithoutPadding) {
  FptImage fpt(64);
  const auto block = fpt.Add("first, \"quoted\"\r\nline ");
  Save("t.fpt", fpt.Bytes());
  SaveBinaryPointers({block, 0});
  EXPECT_EQ(Json().dump(), R"([{"M":"first, \"quoted\"\r\nline "},{"M":null}])");
  EXPECT_EQ(result_.problems.Count(), 0U);
}

TEST_F(MemoValuesTest, ReadsPointersInDigits) {
  Dbt4Image dbt(512);
  dbt.Add("one");
  Save("t.dbt", dbt.Bytes());
  SaveTextPointers({"         1", "0000000001", "1         ", "          ", "0000000000",
                    std::string(10, '\0'), "1\0\0\0\0\0\0\0\0\0"s});
  EXPECT_EQ(
      Json().dump(),
      R"([{"M":"one"},{"M":"one"},{"M":"one"},{"M":null},{"M":null},{"M":null},{"M":"one"}])");
  EXPECT_EQ(result_.problems.Count(), 0U);
}

TEST_F(MemoValuesTest, ReportsPointersThatLeadNowhereWithTheirPlace) {
  Dbt4Image dbt(512);
  dbt.Add("one");
  Save("t.dbt", dbt.Bytes());
  SaveTextPointers({"         1", "       abc", "        -1", "9999999999", "         2"});
  EXPECT_EQ(Json().dump(), R"([{"M":"one"},{"M":null},{"M":null},{"M":null},{"M":null}])");
  EXPECT_THAT(result_.problems.First(),
              ElementsAre("record 2, field M: the memo pointer is no number",
                          "record 3, field M: the memo pointer is no number",
                          HasSubstr("record 4, field M: block 9999999999 lies beyond the end"),
                          HasSubstr("record 5, field M: block 2 lies beyond the end")));
}

TEST_F(MemoValuesTest, KeepsTheFirstProblemsAndCountsAll) {
  Save("t.fpt", FptImage(64).Bytes());
  SaveBinaryPointers(std::vector<std::uint32_t>(1000, 77));
  Csv();
  EXPECT_EQ(result_.rows, 1000U);
  EXPECT_EQ(result_.problems.Count(), 1000U);
  EXPECT_EQ(result_.problems.First().size(), 10U);
}

TEST_F(MemoValuesTest, ShowsPicturesAndBinaryMemosAsBytes) {
  FptImage fpt(64);
  const auto picture = fpt.Add("\x01\xFF", 0);
  const auto text = fpt.Add("ab");
  Save("t.fpt", fpt.Bytes());
  SaveBinaryPointers({picture, text});
  EXPECT_EQ(Json().dump(), R"([{"M":"01ff"},{"M":"ab"}])");
  for (const char type : {'G', 'P', 'W'}) {
    SaveBinaryPointers({picture, text}, type);
    EXPECT_EQ(Json().dump(), R"([{"M":"01ff"},{"M":"6162"}])");
  }
}

TEST_F(MemoValuesTest, SaysOnceThatTheMemoFileIsMissing) {
  SaveBinaryPointers({0, 8, 9});
  EXPECT_EQ(Json().dump(), R"([{"M":null},{"M":null},{"M":null}])");
  EXPECT_THAT(result_.problems.First(),
              ElementsAre("record 2, field M: there is no memo file that can be read"));
}

TEST_F(MemoValuesTest, NeedsNoMemoFileWhenThereAreNoMemos) {
  SaveBinaryPointers({0, 0});
  Csv();
  EXPECT_THAT(result_.problems.First(), IsEmpty());
}

TEST_F(MemoValuesTest, ShowsTheRowsWhenTheMemoFileIsOfNoKnownKind) {
  Save("t.fpt", std::string(512, '\0'));
  SaveBinaryPointers({8});
  EXPECT_EQ(Csv(), "M\r\n\"\"\r\n");
  EXPECT_THAT(result_.problems.First(),
              ElementsAre(HasSubstr("is of no kind that can be read"), HasSubstr("record 1")));
}

TEST_F(MemoValuesTest, ReportsAMemoThatIsCutOffAndShowsTheRest) {
  FptImage fpt(64);
  const auto block = fpt.AddStating(1'000'000, "all that is left");
  Save("t.fpt", fpt.Bytes());
  SaveBinaryPointers({block});
  EXPECT_EQ(Json()[0]["M"], "all that is left");
  EXPECT_THAT(result_.problems.First(),
              ElementsAre("record 1, field M: the memo file ends after 16 of the 1000000 bytes of "
                          "the memo"));
}

TEST_F(MemoValuesTest, ShowsNothingOfANonFoxProMemoAsGarbage) {
  Dbt4Image dbt(512);
  dbt.Add("one");
  std::string bytes = dbt.Bytes();
  bytes[512] = 0;
  Save("t.dbt", bytes);
  SaveTextPointers({"         1"});
  EXPECT_EQ(Json()[0]["M"], nullptr);
  EXPECT_THAT(result_.problems.First(), ElementsAre(HasSubstr("FF FF 08 00 are not there")));
}

// Large memos come in pieces of 256 KiB: characters lie across the borders.
TEST_F(MemoValuesTest, DecodesLargeMemosAcrossTheirPieces) {
  for (const std::size_t shift : {0U, 1U, 2U}) {
    std::string memo(shift, 'x');
    while (memo.size() < 700'000) memo += "\xE2\x82\xAC";
    FptImage fpt(64);
    const auto block = fpt.Add(memo);
    Save("t.fpt", fpt.Bytes());
    SaveBinaryPointers({block});
    options_.codePage = 65001;
    EXPECT_EQ(Json()[0]["M"].get<std::string>(), memo);
    EXPECT_EQ(result_.malformed, 0U);
  }
}

TEST_F(MemoValuesTest, CountsMalformedPartsOfLargeMemos) {
  const std::string memo = std::string(300'000, 'x') + "\xE2\x82";
  FptImage fpt(64);
  const auto block = fpt.Add(memo);
  Save("t.fpt", fpt.Bytes());
  SaveBinaryPointers({block});
  options_.codePage = 65001;
  EXPECT_EQ(Json()[0]["M"].get<std::string>(), std::string(300'000, 'x') + "\xEF\xBF\xBD");
  EXPECT_EQ(result_.malformed, 1U);
}

TEST_F(MemoValuesTest, ShowsLargeBinaryMemosWhole) {
  std::string memo(600'001, '\0');
  for (std::size_t i = 0; i < memo.size(); ++i) memo[i] = static_cast<char>(i % 251);
  FptImage fpt(64);
  const auto block = fpt.Add(memo, 0);
  Save("t.fpt", fpt.Bytes());
  SaveBinaryPointers({block});
  const auto hex = Json()[0]["M"].get<std::string>();
  ASSERT_EQ(hex.size(), 2 * memo.size());
  EXPECT_EQ(hex.substr(hex.size() - 4), "6d6e");  // 599,999 and 600,000 modulo 251
}

}  // namespace
}  // namespace trovan::filters
