#include "filters/table/TableReport.h"

#include <filesystem>
#include <string>

#include "MemoImage.h"
#include "TableFixture.h"
#include "filters/support/FilterError.h"

namespace trovan::filters {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class TableReportTest : public TableFixture {
 protected:
  TableReport Report(const DbfImage& image) {
    Save(image);
    return ReportTable(Path(), std::nullopt, nullptr);
  }

  // A table with nothing odd about it.
  static DbfImage Plain() { return DbfImage().Field("NAME", 'C', 10).Field("POP", 'N', 9, 2); }
};

TEST_F(TableReportTest, DescribesATable) {
  const TableReport report =
      Report(Plain().Language(0x03).Record("Oslo").DeletedRecord("Rome").Record("Bern"));
  EXPECT_EQ(report.layout.recordCount, 3U);
  EXPECT_EQ(report.recordsPresent, 3U);
  EXPECT_EQ(report.deletedRecords, 1U);
  EXPECT_EQ(report.codePage.number, 1252);
  EXPECT_FALSE(report.hasMemoFields);
  EXPECT_FALSE(report.memo);
  ASSERT_EQ(report.fields.size(), 2U);
  EXPECT_EQ(report.fields[1].name, "POP");
  EXPECT_EQ(report.fields[1].type, 'N');
  EXPECT_EQ(report.fields[1].kind, "number");
  EXPECT_EQ(report.fields[1].length, 9U);
  EXPECT_EQ(report.fields[1].decimals, 2U);
  EXPECT_FALSE(report.fields[1].hidden);
  EXPECT_THAT(report.oddities, IsEmpty());
}

TEST_F(TableReportTest, FindsNothingOddInATableWithoutRecordsOrEndMark) {
  EXPECT_THAT(Report(Plain().Record("x").WithoutEndMark()).oddities, IsEmpty());
}

TEST_F(TableReportTest, NotesAMissingTerminator) {
  EXPECT_THAT(Report(Plain().WithoutTerminator().Record("x")).oddities,
              ElementsAre("The field list has no terminator (byte 0D).",
                          HasSubstr("counts 1 field instead of 2")));
}

TEST_F(TableReportTest, NotesBytesBehindTheFieldList) {
  EXPECT_THAT(Report(Plain().BackLink("x").Record("x")).oddities,
              ElementsAre("1 byte follows the field list in the header."));
  EXPECT_THAT(Report(Plain().BackLink("xy").Record("x")).oddities,
              ElementsAre("2 bytes follow the field list in the header."));
  EXPECT_THAT(
      Report(Plain().Version(0x30).BackLink(std::string(263, '\0')).Record("x")).oddities,
      ElementsAre("263 bytes follow the field list in the header (the back link of Visual FoxPro).",
                  HasSubstr("counts 10 fields instead of 2")));
}

TEST_F(TableReportTest, NotesLengthsThatDoNotAddUp) {
  EXPECT_THAT(Report(Plain().RecordLength(19).Record("x")).oddities,
              Contains("The fields take 20 bytes with the deletion flag, but records have 19."));
}

TEST_F(TableReportTest, NotesAnOpenTransactionAndEncryption) {
  std::string bytes = Plain().Record("x").Text();
  bytes[14] = 1;
  bytes[15] = 1;
  Save(bytes);
  EXPECT_THAT(ReportTable(Path(), std::nullopt, nullptr).oddities,
              ElementsAre("A transaction was not finished.", HasSubstr("encrypted")));
}

TEST_F(TableReportTest, NotesATableWithoutFields) {
  EXPECT_THAT(Report(DbfImage()).oddities, Contains("The table has no field."));
}

TEST_F(TableReportTest, NotesNamesThatComeTwice) {
  EXPECT_THAT(Report(DbfImage().Field("A", 'C', 1).Field("A", 'C', 1).Record("xy")).oddities,
              ElementsAre("More than one field is named A."));
}

TEST_F(TableReportTest, NotesAFileThatIsCutOff) {
  const TableReport report = Report(Plain().Record("x").RecordCount(3).WithoutEndMark());
  EXPECT_EQ(report.recordsPresent, 1U);
  EXPECT_THAT(report.oddities,
              Contains("The file is cut off: 1 of 3 records are there, and 40 bytes are missing at "
                       "the end."));
  EXPECT_THAT(report.oddities, Contains(HasSubstr("`trovan table check`")));
}

TEST_F(TableReportTest, CountsNoEndMarkAsARecord) {
  const TableReport report = Report(Plain().Record("x").RecordCount(3));
  EXPECT_EQ(report.recordsPresent, 1U);
  EXPECT_THAT(report.oddities, Contains(HasSubstr("1 of 3 records are there, and 39 bytes")));
}

TEST_F(TableReportTest, NotesWhatFollowsTheLastRecord) {
  EXPECT_THAT(Report(Plain().Record("x").Tail("\x1A!")).oddities,
              ElementsAre("2 bytes follow the last record."));
}

TEST_F(TableReportTest, NotesAHeaderThatPromisesBillions) {
  const TableReport report = Report(Plain().RecordCount(0xFFFF'FFFFU));
  EXPECT_EQ(report.recordsPresent, 0U);
  EXPECT_THAT(report.oddities, Contains(HasSubstr("0 of 4294967295 records are there")));
}

TEST_F(TableReportTest, NotesStrangeFlags) {
  EXPECT_THAT(Report(Plain().RecordWithFlag('?', "x")).oddities,
              ElementsAre("1 record has a deletion flag that is neither a blank nor an asterisk."));
}

TEST_F(TableReportTest, NotesTextsThatLookLikeUtf8) {
  const char* hint = "The texts look like UTF-8";
  EXPECT_THAT(Report(Plain().Record("\xC3\x85s")).oddities, ElementsAre(HasSubstr(hint)));
  EXPECT_THAT(Report(Plain().Record("\xC3\x85s").Record("\xE5")).oddities, IsEmpty());
  EXPECT_THAT(Report(Plain().Record("ascii")).oddities, IsEmpty());
  Save("t.shp", "");
  Save("t.cpg", "UTF-8");
  EXPECT_THAT(Report(Plain().Record("\xC3\x85s")).oddities, IsEmpty());
}

TEST_F(TableReportTest, NotesAPageThatCannotBeRead) {
  Save(Plain().Record("x"));
  const TableReport report = ReportTable(Path(), 12345, nullptr);
  EXPECT_EQ(report.codePage.number, 12345);
  EXPECT_THAT(report.oddities, ElementsAre("Code page 12345 cannot be read here: ask for another "
                                           "one."));
  EXPECT_EQ(report.fields[0].name, "NAME");
}

TEST_F(TableReportTest, NotesAMissingMemoFile) {
  const TableReport report = Report(DbfImage().Field("M", 'M', 10).Record("         1"));
  EXPECT_TRUE(report.hasMemoFields);
  EXPECT_FALSE(report.memo);
  EXPECT_THAT(report.oddities, ElementsAre(HasSubstr("no memo file (.fpt or .dbt)")));
}

TEST_F(TableReportTest, DescribesTheMemoFile) {
  Save("t.dbt", Dbt4Image(1024).Bytes());
  const TableReport report = Report(DbfImage().Field("M", 'M', 10).Record("         0"));
  ASSERT_TRUE(report.memo);
  EXPECT_EQ(report.memo->file, (folder_.Path() / "t.dbt").string());
  EXPECT_EQ(report.memo->kind, "dBASE IV");
  EXPECT_EQ(report.memo->blockSize, 1024U);
  EXPECT_THAT(report.oddities, IsEmpty());
}

TEST_F(TableReportTest, SaysHowToHelpAMemoFileWithCapitalExtension) {
  Save("t.FPT", FptImage(64).Bytes());
  const TableReport report = Report(DbfImage().Field("M", 'M', 10).Record("         0"));
  ASSERT_TRUE(report.memo);
  EXPECT_EQ(report.memo->kind, "FoxPro");
  EXPECT_THAT(report.oddities, ElementsAre(HasSubstr("rename it to help other programs")));
}

TEST_F(TableReportTest, NotesAMemoFileOfNoKnownKind) {
  Save("t.fpt", std::string(512, '\0'));
  const TableReport report = Report(DbfImage().Field("M", 'M', 10).Record("         1"));
  EXPECT_FALSE(report.memo);
  EXPECT_THAT(report.oddities, ElementsAre(HasSubstr("no kind that can be read")));
}

TEST_F(TableReportTest, TellsWhatItSaysOfSideFiles) {
  Save("t.cpg", "UTF-8");
  EXPECT_THAT(Report(Plain().Record("x")).oddities, ElementsAre(HasSubstr("t.cpg has no say")));
}

TEST_F(TableReportTest, HidesFieldsOfTheProgramItself) {
  const TableReport report = Report(DbfImage()
                                        .Version(0x30)
                                        .Field("A", 'C', 1)
                                        .Field("_NullFlags", '0', 1)
                                        .Flags(0x05)
                                        .Record("x"));
  ASSERT_EQ(report.fields.size(), 2U);
  EXPECT_FALSE(report.fields[0].hidden);
  EXPECT_TRUE(report.fields[1].hidden);
}

TEST_F(TableReportTest, NotesATableBeyondTwoGigabytes) {
  Save(Plain().RecordCount(150'000'000).WithoutEndMark());
  std::filesystem::resize_file(folder_.Path() / "t.dbf", 97 + 20 * std::uintmax_t{150'000'000});
  // Millions of flags need not be counted for this.
  class Stop : public corvel::IProgress {
    bool Update(double) override { return false; }
  } stop;
  const TableReport report = ReportTable(Path(), std::nullopt, &stop);
  EXPECT_EQ(report.recordsPresent, 150'000'000U);
  EXPECT_THAT(report.oddities, Contains(HasSubstr("larger than 2 GiB")));
  EXPECT_THAT(report.oddities, Not(Contains(HasSubstr("cut off"))));
}

TEST_F(TableReportTest, RefusesWhatIsNoTable) {
  Save("");
  EXPECT_THROW(ReportTable(Path(), std::nullopt, nullptr), FilterError);
}

}  // namespace
}  // namespace trovan::filters
