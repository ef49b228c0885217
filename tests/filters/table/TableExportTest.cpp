#include "filters/table/TableExport.h"

#include <filesystem>
#include <string>

#include <corvel/Exception.h>
#include <corvel/Progress.h>

#include "TableFixture.h"
#include "filters/support/FilterError.h"

namespace trovan::filters {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class TableExportTest : public TableFixture {
 protected:
  static DbfImage Letters() {
    return DbfImage()
        .Field("A", 'C', 1)
        .Record("a")
        .DeletedRecord("b")
        .Record("c")
        .RecordWithFlag('?', "d")
        .DeletedRecord("e")
        .Record("f");
  }

  std::string Refusal() {
    try {
      Csv();
    } catch (const FilterError& error) {
      return error.what();
    }
    return {};
  }
};

TEST_F(TableExportTest, LeavesDeletedRecordsOut) {
  Save(Letters());
  EXPECT_EQ(Csv(), "A\r\na\r\nc\r\nd\r\nf\r\n");
  EXPECT_EQ(result_.rows, 4U);
  EXPECT_FALSE(result_.cancelled);
  EXPECT_THAT(result_.problems.First(), IsEmpty());
}

TEST_F(TableExportTest, MarksDeletedRecordsWhenTheyAreAskedFor) {
  Save(Letters());
  options_.withDeleted = true;
  EXPECT_EQ(Csv(),
            "_deleted,A\r\nfalse,a\r\ntrue,b\r\nfalse,c\r\nfalse,d\r\ntrue,e\r\nfalse,f\r\n");
}

TEST_F(TableExportTest, SkipsAndLimitsTheRowsThatWouldCome) {
  const struct {
    std::uint64_t skip;
    std::optional<std::uint64_t> limit;
    bool deleted;
    const char* letters;
  } cases[] = {
      {0, 0, false, ""},
      {0, 1, false, "a"},
      {1, 2, false, "cd"},
      {3, 100, false, "f"},
      {4, 1, false, ""},
      {UINT64_MAX, 1, false, ""},
      {0, UINT64_MAX, false, "acdf"},
      {1, 2, true, "bc"},
      {5, std::nullopt, true, "f"},
      {0, std::nullopt, false, "acdf"},
  };
  Save(Letters());
  for (const auto& c : cases) {
    options_ = {};
    options_.skip = c.skip;
    options_.limit = c.limit;
    options_.withDeleted = c.deleted;
    std::string letters;
    for (const auto& row : Json()) letters += row["A"].get<std::string>();
    EXPECT_EQ(letters, c.letters) << c.skip;
    EXPECT_EQ(result_.rows, letters.size());
  }
}

TEST_F(TableExportTest, WritesATableWithoutRecords) {
  Save(DbfImage().Field("A", 'C', 1).Field("B", 'N', 1));
  EXPECT_EQ(Csv(), "A,B\r\n");
  EXPECT_EQ(Json().dump(), "[]");
}

TEST_F(TableExportTest, WritesATableWithoutFields) {
  Save(DbfImage().Record("").DeletedRecord("").Record(""));
  EXPECT_EQ(Json().dump(), "[{},{}]");
}

TEST_F(TableExportTest, WritesRecordsOfAFlagAndNothingElse) {
  Save(DbfImage().Field("A", 'C', 0).Field("B", 'N', 0).Record("").Record(""));
  EXPECT_EQ(Csv(), "A,B\r\n,\r\n,\r\n");
  EXPECT_THAT(result_.problems.First(), IsEmpty());
}

TEST_F(TableExportTest, ReportsARecordThatIsCutOff) {
  const std::string whole = DbfImage()
                                .Field("A", 'C', 3)
                                .Field("N", 'N', 3)
                                .Record("one  1")
                                .Record("two  2")
                                .WithoutEndMark()
                                .Text();
  Save(std::string_view(whole).substr(0, whole.size() - 1));
  EXPECT_EQ(Csv(), "A,N\r\none,1\r\ntwo,\r\n");
  EXPECT_THAT(result_.problems.First(),
              ElementsAre("record 2 is cut off: the file ends after 5 of its 6 bytes"));
  Save(std::string_view(whole).substr(0, whole.size() - 5));
  EXPECT_EQ(Csv(), "A,N\r\none,1\r\nt,\r\n");
  Save(std::string_view(whole).substr(0, whole.size() - 6));
  EXPECT_EQ(Csv(), "A,N\r\none,1\r\n,\r\n");
  Save(std::string_view(whole).substr(0, whole.size() - 7));
  EXPECT_EQ(Csv(), "A,N\r\none,1\r\n");
  EXPECT_THAT(result_.problems.First(),
              ElementsAre("the file ends after record 1 of the 2 that its header promises"));
}

TEST_F(TableExportTest, EndsAtOnceWhenTheHeaderPromisesBillions) {
  Save(DbfImage().Field("A", 'C', 1).Record("a").RecordCount(0xFFFF'FFFFU));
  EXPECT_EQ(Csv(), "A\r\na\r\n");
  EXPECT_THAT(result_.problems.First(), ElementsAre(HasSubstr("of the 4294967295 that")));
}

TEST_F(TableExportTest, CutsFieldsThatReachBeyondTheRecord) {
  Save(DbfImage()
           .Field("A", 'C', 3)
           .Field("N", 'N', 3)
           .Field("C", 'C', 2)
           .RecordLength(3)
           .Tail(" abcd ef"));
  std::string bytes = DbfImage()
                          .Field("A", 'C', 3)
                          .Field("N", 'N', 3)
                          .Field("C", 'C', 2)
                          .RecordLength(3)
                          .RecordCount(2)
                          .Tail(" ab cd\x1A")
                          .Text();
  Save(bytes);
  EXPECT_EQ(Csv(), "A,N,C\r\nab,,\r\ncd,,\r\n");
}

TEST_F(TableExportTest, LeavesOutBytesThatNoFieldDescribes) {
  Save(DbfImage().Field("A", 'C', 1).RecordLength(4).RecordCount(2).Tail(" axx byy\x1A"));
  EXPECT_EQ(Csv(), "A\r\na\r\nb\r\n");
}

TEST_F(TableExportTest, ShowsAPlainTextTableWithADeletedColumnOfItsOwn) {
  Save(DbfImage().Field("_deleted", 'C', 1).DeletedRecord("x"));
  options_.withDeleted = true;
  EXPECT_EQ(Json().dump(), R"([{"_deleted":true,"_deleted_2":"x"}])");
}

TEST_F(TableExportTest, RefusesAPageThatCannotBeRead) {
  Save(Letters());
  for (const int page : {-1, 12345, 99999}) {
    options_.codePage = page;
    EXPECT_THAT(Refusal(), HasSubstr("code page " + std::to_string(page))) << page;
    EXPECT_THAT(Refusal(), HasSubstr("asked for"));
  }
}

TEST_F(TableExportTest, RefusesWhatIsNoTable) {
  Save("just a text file, and longer than a header of thirty-two bytes");
  EXPECT_THAT(Refusal(), HasSubstr("no dBASE table"));
  Save("");
  EXPECT_THAT(Refusal(), HasSubstr("is empty"));
  std::filesystem::remove(folder_.Path() / "t.dbf");
  EXPECT_THROW(Csv(), corvel::Exception);
}

// --- Progress ------------------------------------------------------------------------------------

// Asks to stop at a given report.
class Stopper : public corvel::IProgress {
 public:
  explicit Stopper(int stopAt) : stopAt_(stopAt) {}

  bool Update(double fraction) override {
    EXPECT_GE(fraction, last_);
    EXPECT_LE(fraction, 1.0);
    EXPECT_LT(calls_, stopAt_) << "called again after it asked to stop";
    last_ = fraction;
    return ++calls_ < stopAt_;
  }

  int calls_ = 0;

 private:
  int stopAt_;
  double last_ = 0;
};

TEST_F(TableExportTest, EndsWellFormedWhenAskedToStop) {
  DbfImage image;
  image.Field("A", 'C', 1);
  for (int i = 0; i < 5000; ++i) image.Record("x");
  Save(image);
  std::uint64_t rowsBefore = 0;
  for (const int stopAt : {1, 2, 4}) {
    Stopper stopper(stopAt);
    StringSink sink;
    JsonWriter writer(sink, JsonWriter::Form::kArray);
    const auto result = ExportTable(Path(), options_, writer, &stopper);
    EXPECT_TRUE(result.cancelled);
    const auto rows = nlohmann::json::parse(sink.text);
    EXPECT_EQ(rows.size(), result.rows);
    EXPECT_LT(rows.size(), 5000U);
    if (stopAt > 1) {
      EXPECT_GT(rows.size(), rowsBefore);
    }
    rowsBefore = rows.size();
  }
}

TEST_F(TableExportTest, IsNotCancelledByAProgressThatGoesOn) {
  Save(Letters());
  Stopper stopper(1000);
  StringSink sink;
  CsvWriter writer(sink);
  EXPECT_FALSE(ExportTable(Path(), options_, writer, &stopper).cancelled);
  EXPECT_GT(stopper.calls_, 0);
}

TEST_F(TableExportTest, RaisesWhatTheSinkRaises) {
  class FullSink : public ByteSink {
   public:
    void Write(std::string_view) override { throw FilterError("full"); }
  } sink;
  Save(Letters());
  CsvWriter writer(sink);
  EXPECT_THROW(ExportTable(Path(), options_, writer, nullptr), FilterError);
}

}  // namespace
}  // namespace trovan::filters
