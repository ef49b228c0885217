#include "filters/support/CsvWriter.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "StringSink.h"

namespace trovan::filters {
namespace {

using std::string_literals::operator""s;

class CsvWriterTest : public testing::Test {
 protected:
  void Begin(const std::vector<std::string>& columns) {
    writer_.Begin(columns);
    writer_.BeginRow();
  }

  std::string End() {
    writer_.EndRow();
    writer_.End();
    return sink_.text;
  }

  StringSink sink_;
  CsvWriter writer_{sink_};
};

TEST_F(CsvWriterTest, WritesAHeaderAndEndsLinesWithCrLf) {
  Begin({"NAME", "POP", "BIG", "NONE"});
  writer_.Text("Oslo");
  writer_.Number("+007.5");
  writer_.Logical(true);
  writer_.Null();
  EXPECT_EQ(End(), "NAME,POP,BIG,NONE\r\nOslo,+007.5,true,\r\n");
}

TEST_F(CsvWriterTest, QuotesWhatNeedsQuotes) {
  Begin({"a,b", "\"q\"", "plain"});
  writer_.Text("one\ntwo");
  writer_.Text("\r");
  writer_.Text(" blank\ttab; ");
  EXPECT_EQ(End(), "\"a,b\",\"\"\"q\"\"\",plain\r\n\"one\ntwo\",\"\r\", blank\ttab; \r\n");
}

TEST_F(CsvWriterTest, DoublesEveryQuote) {
  Begin({"a", "b"});
  writer_.Text("\"\"x\"");
  writer_.Text("\"");
  EXPECT_EQ(End(), "a,b\r\n\"\"\"\"\"x\"\"\",\"\"\"\"\r\n");
}

TEST_F(CsvWriterTest, PassesNulBytesAndLettersOn) {
  Begin({"a", "b"});
  writer_.Text("a\0b"s);
  writer_.Text("ÅØ");
  EXPECT_EQ(End(), "a,b\r\na\0b,ÅØ\r\n"s);
}

TEST_F(CsvWriterTest, PutsLongTextsTogetherInQuotes) {
  Begin({"a", "b"});
  writer_.BeginLongText();
  writer_.LongTextPiece("one \"");
  writer_.LongTextPiece("");
  writer_.LongTextPiece("\" two");
  writer_.EndLongText();
  writer_.BeginLongText();
  writer_.EndLongText();
  EXPECT_EQ(End(), "a,b\r\n\"one \"\"\"\" two\",\"\"\r\n");
}

TEST_F(CsvWriterTest, MarksARowThatHoldsOneEmptyValue) {
  Begin({"a"});
  writer_.Null();
  writer_.EndRow();
  writer_.BeginRow();
  writer_.Text("");
  writer_.EndRow();
  writer_.BeginRow();
  writer_.Text("x");
  EXPECT_EQ(End(), "a\r\n\"\"\r\n\"\"\r\nx\r\n");
}

TEST_F(CsvWriterTest, LeavesEmptyValuesOfWiderRowsEmpty) {
  Begin({"a", "b"});
  writer_.Null();
  writer_.Text("");
  EXPECT_EQ(End(), "a,b\r\n,\r\n");
}

TEST_F(CsvWriterTest, WritesPiecesLargerThanItsBufferWhole) {
  const std::string large(300'000, 'x');
  Begin({"a", "b"});
  writer_.Text("y");
  writer_.Text(large);
  EXPECT_EQ(End(), "a,b\r\ny," + large + "\r\n");
}

TEST_F(CsvWriterTest, WritesNothingOfNoColumnsAndNoRows) {
  writer_.Begin({});
  writer_.End();
  EXPECT_EQ(sink_.text, "");
}

TEST_F(CsvWriterTest, HandsRowsOnBeforeTheEnd) {
  writer_.Begin({"a"});
  for (int i = 0; i < 100'000; ++i) {
    writer_.BeginRow();
    writer_.Number("1234567890");
    writer_.EndRow();
  }
  EXPECT_GT(sink_.text.size(), 1'000'000U);
}

}  // namespace
}  // namespace trovan::filters
