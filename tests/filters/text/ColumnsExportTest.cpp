#include "filters/text/ColumnsExport.h"

#include <filesystem>
#include <string>

#include <sys/stat.h>

#include <corvel/Exception.h>

#include "ExportFixture.h"

namespace trovan::filters {
namespace {

using std::string_literals::operator""s;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

class ColumnsExportTest : public ExportFixture {};

TEST_F(ColumnsExportTest, WritesTextsAsTheyStand) {
  Save("name,note\r\nOslo,\"big, \"\"old\"\"\"\r\n Rome ,007\r\nHöhe,\"a\r\nb\"");
  EXPECT_EQ(Csv(), "name,note\r\nOslo,\"big, \"\"old\"\"\"\r\n Rome ,007\r\nHöhe,\"a\nb\"\r\n");
  const auto rows = Json();
  ASSERT_EQ(rows.size(), 3U);
  EXPECT_EQ(rows[0]["note"], "big, \"old\"");
  EXPECT_EQ(rows[1]["name"], " Rome ");
  EXPECT_EQ(rows[1]["note"], "007");
  EXPECT_EQ(rows[2]["note"], "a\nb");
  EXPECT_EQ(result_.rows, 3U);
  EXPECT_EQ(result_.loneReturns, 0);
  EXPECT_FALSE(result_.cancelled);
}

TEST_F(ColumnsExportTest, TellsWhatIsMissingFromAnEmptyText) {
  Save("a,b,c\n,\"\",\n");
  EXPECT_EQ(Json().dump(), R"([{"a":null,"b":"","c":null}])");
  EXPECT_EQ(Csv(), "a,b,c\r\n,,\r\n");
}

TEST_F(ColumnsExportTest, ReadsColumnsBetweenBlanks) {
  Save("  1.5   2\t-3\n4 5 \"a b\" \n");
  options_.format.format = {"", " \t", "\""};
  options_.format.header = false;
  EXPECT_EQ(Csv(), "column_1,column_2,column_3\r\n1.5,2,-3\r\n4,5,a b\r\n");
}

TEST_F(ColumnsExportTest, CountsColumnsWithoutNames) {
  Save("a,,b,\"\"\n1,2,3,4\n");
  EXPECT_EQ(Json().dump(), R"([{"a":"1","column_2":"2","b":"3","column_4":"4"}])");
  options_.format.header = false;
  EXPECT_EQ(Csv(), "column_1,column_2,column_3,column_4\r\na,,b,\r\n1,2,3,4\r\n");
}

TEST_F(ColumnsExportTest, TellsEqualNamesApartInJson) {
  Save("a,a,a\n1,2,3\n");
  EXPECT_EQ(Json().dump(), R"([{"a":"1","a_2":"2","a_3":"3"}])");
  EXPECT_EQ(Csv(), "a,a,a\r\n1,2,3\r\n");
}

TEST_F(ColumnsExportTest, WritesFilesWithoutRows) {
  Save("");
  EXPECT_EQ(Csv(), "");
  EXPECT_EQ(JsonText(), "[]\n");
  Save("a,b\n");
  EXPECT_EQ(Csv(), "a,b\r\n");
  EXPECT_EQ(JsonText(), "[]\n");
}

TEST_F(ColumnsExportTest, WritesChosenColumnsInTheirOrder) {
  Save("a,b,c\n1,2,3\n4\n5,6,7,8\n");
  options_.columns = {"c", "1", "c"};
  EXPECT_EQ(Csv(), "c,a,c\r\n3,1,3\r\n,4,\r\n7,5,7\r\n");
  EXPECT_EQ(result_.longer.count, 1U);
  options_.columns = {"d"};
  EXPECT_EQ(Refusal(), "there is no column \"d\"; there are: a, b, c");
}

TEST_F(ColumnsExportTest, FillsUpShortRowsAndKeepsLongOnes) {
  Save("a,b\n1,2\n3\n4\n5,6,7,\n8,9,10\n");
  EXPECT_EQ(Csv(), "a,b\r\n1,2\r\n3,\r\n4,\r\n5,6,7,\r\n8,9,10\r\n");
  EXPECT_EQ(result_.shorter.count, 2U);
  EXPECT_EQ(result_.shorter.firstLine, 3U);
  EXPECT_EQ(result_.longer.count, 2U);
  EXPECT_EQ(result_.longer.firstLine, 5U);
  const auto rows = Json();
  EXPECT_EQ(rows[1].dump(), R"({"a":"3","b":null})");
  EXPECT_EQ(rows[3].dump(), R"({"a":"5","b":"6","column_3":"7","column_4":null})");
}

TEST_F(ColumnsExportTest, StopsAtTheLimit) {
  Save("a\n1\n2\n3\n");
  options_.limit = 2;
  EXPECT_EQ(Csv(), "a\r\n1\r\n2\r\n");
  EXPECT_EQ(result_.rows, 2U);
  options_.limit = 0;
  EXPECT_EQ(Csv(), "a\r\n");
}

TEST_F(ColumnsExportTest, SkipsLinesAndComments) {
  Save("made \"by hand\nnever\na,b\n# no row, \"\n1,2\n");
  options_.format.skipLines = 2;
  options_.format.comment = '#';
  EXPECT_EQ(Csv(), "a,b\r\n1,2\r\n");
}

// --- Numbers ------------------------------------------------------------------------------------

TEST_F(ColumnsExportTest, KeepsTheDigitsOfNumbers) {
  Save("n,t\n1.50,1.50\n +007.e1\t,x\n12345678901234567890.10,\n\"-.5\",\n,\n \t ,\n");
  options_.numbers = {"n"};
  EXPECT_EQ(Csv(),
            "n,t\r\n1.50,1.50\r\n+007.e1,x\r\n12345678901234567890.10,\r\n-.5,\r\n,\r\n,\r\n");
  EXPECT_THAT(JsonText(), HasSubstr("{\"n\":1.50,\"t\":\"1.50\"}"));
  EXPECT_THAT(JsonText(), HasSubstr("{\"n\":12345678901234567890.10,"));
  EXPECT_THAT(JsonText(), HasSubstr("{\"n\":-0.5,"));
  EXPECT_EQ(Json()[1]["n"], 70.0);
  EXPECT_TRUE(Json()[4]["n"].is_null());
  EXPECT_TRUE(Json()[5]["n"].is_null());
}

TEST_F(ColumnsExportTest, ChangesNoMoreThanTheDecimalCharacter) {
  Save("n;t\n-1,50;1,5\n2;2\n");
  options_.format.format.delimiters = ";";
  options_.decimal = ',';
  options_.numbers = {"n"};
  EXPECT_EQ(Csv(), "n,t\r\n-1.50,\"1,5\"\r\n2,2\r\n");
  EXPECT_EQ(Json().dump(), R"([{"n":-1.5,"t":"1,5"},{"n":2,"t":"2"}])");
}

TEST_F(ColumnsExportTest, NamesThePlaceOfABadNumber) {
  Save("a,b,lat\nx,y,1\n\"two\nlines\",y,abc\n");
  options_.numbers = {"lat"};
  EXPECT_EQ(Refusal(), "t.csv, line 4, column 3 (\"lat\"): \"abc\" is no number");
  Save("\n\r\na,b,lat\r\nx,y,1\r\n\r\nx,y,\"1\n\"\r\n");
  EXPECT_EQ(Refusal(), "t.csv, line 6, column 3 (\"lat\"): \"1\\x0A\" is no number");
}

TEST_F(ColumnsExportTest, RefusesWhatIsNoFiniteDecimalNumber) {
  options_.numbers = {"2"};
  for (const char* text :
       {"1,5", "1 000", "0x10", "nan", "inf", "1e999", "1.2.3", "--1", "-", ".", "1e", "12a"}) {
    Save("a,n\nx,\"" + std::string(text) + "\"\n");
    EXPECT_THAT(Refusal(), StartsWith("t.csv, line 2, column 2 (\"n\"): \"" + std::string(text) +
                                      "\" is no number"));
  }
}

TEST_F(ColumnsExportTest, SaysWhenTheOtherDecimalCharacterWouldDo) {
  Save("n\n\"1,5\"\n");
  options_.numbers = {"n"};
  EXPECT_THAT(Refusal(), HasSubstr("with the decimal character .; --decimal , reads it"));
  Save("n\n1.5\n");
  options_.decimal = ',';
  EXPECT_THAT(Refusal(), HasSubstr("with the decimal character ,; --decimal . reads it"));
}

TEST_F(ColumnsExportTest, LeavesBadRowsOutWhenToldToKeepGoing) {
  std::string text = "t,n\n";
  for (int i = 0; i < 12; ++i) text += "x,bad\ny," + std::to_string(i) + "\n";
  Save(text);
  options_.numbers = {"n"};
  options_.keepGoing = true;
  const auto rows = Json();
  ASSERT_EQ(rows.size(), 12U);
  for (std::size_t i = 0; i < rows.size(); ++i) EXPECT_EQ(rows[i]["n"], i);
  EXPECT_EQ(result_.badRows.Count(), 12U);
  EXPECT_EQ(result_.badRows.First().size(), 10U);
  EXPECT_EQ(FirstBadRow(), "t.csv, line 2, column 2 (\"n\"): \"bad\" is no number");
  options_.limit = 2;
  EXPECT_EQ(Csv(), "t,n\r\ny,0\r\ny,1\r\n");
}

// --- Text ---------------------------------------------------------------------------------------

TEST_F(ColumnsExportTest, SkipsAByteOrderMarkOfUtf8) {
  Save("\xEF\xBB\xBF\"a\",b\n1,2\n");
  EXPECT_EQ(Csv(), "a,b\r\n1,2\r\n");
}

TEST_F(ColumnsExportTest, NamesThePlaceOfMalformedUtf8) {
  Save("a,b\nx,\"one\nH\xF6he\"\n");
  EXPECT_THAT(
      Refusal(),
      StartsWith("t.csv, line 3, column 2 (\"b\"): the byte 0xF6 is no UTF-8; --code-page"));
  EXPECT_THAT(Refusal(), HasSubstr("--code-page 1252"));
  Save("a,H\xF6he\n1,2\n");
  EXPECT_THAT(Refusal(), StartsWith("t.csv, line 1, column 2: the byte 0xF6"));
}

TEST_F(ColumnsExportTest, DoesNotMindMalformedTextThatIsNotWritten) {
  Save("\xF6 skipped\na,b\n#\xF6\n1,\xF6\n2,x\n");
  options_.format.skipLines = 1;
  options_.format.comment = '#';
  options_.columns = {"a"};
  EXPECT_EQ(Csv(), "a\r\n1\r\n2\r\n");
}

TEST_F(ColumnsExportTest, ReadsOtherCodePages) {
  Save("H\xF6he,b\n\x80 5,\xE4\n");
  options_.format.codePage = 1252;
  EXPECT_EQ(Csv(), "Höhe,b\r\n€ 5,ä\r\n");
  EXPECT_EQ(result_.malformed, 0U);
  options_.columns = {"Höhe"};
  EXPECT_EQ(Csv(), "Höhe\r\n€ 5\r\n");
}

TEST_F(ColumnsExportTest, CountsWhatACodePageDoesNotKnow) {
  Save("a,b\nx\xFFy,\xC3\n");
  options_.format.codePage = 65001;
  EXPECT_EQ(Csv(), "a,b\r\nx\uFFFDy,\uFFFD\r\n");
  EXPECT_EQ(result_.malformed, 2U);
}

TEST_F(ColumnsExportTest, RefusesACodePageThatIsNone) {
  Save("a\n");
  options_.format.codePage = 4711;
  EXPECT_EQ(Refusal(), "code page 4711 cannot be read here (asked for); choose another one");
}

TEST_F(ColumnsExportTest, RefusesNulBytesAndWideText) {
  Save("a,b\n1,\0002\n"s);
  EXPECT_THAT(Refusal(), StartsWith("t.csv: the byte at offset 6 is NUL"));
  EXPECT_THAT(Refusal(), HasSubstr("iconv -f UTF-16LE -t UTF-8"));
  Save(
      "\xFF\xFE"
      "a\0\n\0"s);
  EXPECT_EQ(Refusal(), "t.csv is UTF-16 text; convert it first: iconv -f UTF-16 -t UTF-8");
  Save("\xFE\xFF\x4E\x2D");
  EXPECT_THAT(Refusal(), HasSubstr("UTF-16 text"));
  Save("\xFF\xFE\0\0a\0\0\0"s);
  EXPECT_EQ(Refusal(), "t.csv is UTF-32 text; convert it first: iconv -f UTF-32 -t UTF-8");
  Save("\0\0\xFE\xFF\0\0\0a"s);
  EXPECT_THAT(Refusal(), HasSubstr("UTF-32 text"));
}

TEST_F(ColumnsExportTest, RefusesLinesThatEndWithCarriageReturnsAlone) {
  Save("a,b\r1,2\r");
  EXPECT_EQ(Refusal(),
            "t.csv: the lines end with carriage returns alone; convert them first: tr '\\r' "
            "'\\n'");
}

TEST_F(ColumnsExportTest, CountsCarriageReturnsThatAreDropped) {
  Save("a,b\r\n1\r2,\"x\ry\"\r\n");
  EXPECT_EQ(Csv(), "a,b\r\n12,xy\r\n");
  EXPECT_EQ(result_.loneReturns, 2);
}

TEST_F(ColumnsExportTest, RemarksTextBehindAClosingQuote) {
  Save("a,b\n\"x\"y,2\n");
  EXPECT_EQ(Csv(), "a,b\r\nxy,2\r\n");
  EXPECT_THAT(result_.remarks.First(),
              ElementsAre("line 2, column 1: text follows the closing quote"));
}

TEST_F(ColumnsExportTest, NamesTheLineOfAQuoteThatIsNeverClosed) {
  Save("a,b\n1,2\n3,\"4\n5,6\n");
  EXPECT_THAT(Refusal(), StartsWith("t.csv, line 3, column 2: the quote that opens here"));
}

// --- Files, and the way there -------------------------------------------------------------------

TEST_F(ColumnsExportTest, RefusesWhatIsNoFile) {
  EXPECT_THROW(Csv(), corvel::Exception);
  ASSERT_EQ(::mkfifo((folder_.Path() / "t.csv").c_str(), 0600), 0);
  EXPECT_EQ(Refusal(), "t.csv: this is a device or a pipe, no file");
}

// Notes what is told and stops the work at some fraction.
class Watch : public corvel::IProgress {
 public:
  explicit Watch(double stopAt) : stopAt_(stopAt) {}

  bool Update(double fraction) override {
    EXPECT_GE(fraction, last_);
    EXPECT_LE(fraction, 1.0);
    EXPECT_FALSE(stopped_);
    last_ = fraction;
    stopped_ = fraction >= stopAt_;
    return !stopped_;
  }

  double Last() const { return last_; }

 private:
  double stopAt_;
  double last_ = 0.0;
  bool stopped_ = false;
};

std::string ManyRows() {
  std::string text = "a,b\n";
  for (int i = 0; i < 300'000; ++i) text += "x,1\n";
  return text;
}

TEST_F(ColumnsExportTest, TellsItsProgress) {
  Save(ManyRows());
  Watch watch(2.0);
  progress_ = &watch;
  Csv();
  EXPECT_EQ(result_.rows, 300'000U);
  EXPECT_FALSE(result_.cancelled);
  EXPECT_GT(watch.Last(), 0.5);
}

TEST_F(ColumnsExportTest, EndsWellFormedWhenToldToStop) {
  Save(ManyRows());
  for (const double stopAt : {0.0, 0.05, 0.1, 0.5}) {
    Watch watch(stopAt);
    progress_ = &watch;
    const auto rows = Json();
    EXPECT_TRUE(result_.cancelled) << stopAt;
    EXPECT_EQ(rows.size(), result_.rows);
    EXPECT_LT(rows.size(), 300'000U);
  }
}

}  // namespace
}  // namespace trovan::filters
