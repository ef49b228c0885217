#include "filters/lattice/AsciiGridReader.h"

#include <cmath>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <corvel/Exception.h>

#include "LatticeErrors.h"
#include "MemoryLattice.h"
#include "support/TempFolder.h"

namespace trovan::filters {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

const std::string kHeader =
    "ncols 3\n"
    "nrows 2\n"
    "xllcorner 100\n"
    "yllcorner 200\n"
    "cellsize 10\n"
    "NODATA_value -9999\n";

class AsciiGridReaderTest : public testing::Test {
 protected:
  std::wstring File(const std::string& text) const {
    test::WriteBytes(folder_.Path() / "grid.asc", text);
    return folder_.File(L"grid.asc");
  }
  LatticeHeader Header(const std::string& text) const {
    return AsciiGridReader(File(text)).Header();
  }
  test::MemoryLattice Read(const std::string& text) const {
    AsciiGridReader reader(File(text));
    test::MemoryLattice lattice(reader.Header());
    reader.ReadRows(lattice);
    EXPECT_EQ(lattice.RowsTaken(), reader.Header().rows);
    return lattice;
  }
  std::string Error(const std::string& text) const {
    return test::FilterErrorOf([&] { Read(text); });
  }

  // Bottom row first.
  static std::vector<double> Values(const test::MemoryLattice& lattice) {
    std::vector<double> values;
    for (unsigned y = 0; y < lattice.Header().rows; ++y) {
      for (unsigned x = 0; x < lattice.Header().columns; ++x) {
        values.push_back(lattice.Value<double>(x, y));
      }
    }
    return values;
  }

  test::TempFolder folder_;
};

TEST_F(AsciiGridReaderTest, SkipsAByteOrderMark) {
  EXPECT_EQ(Header("\xEF\xBB\xBF" + kHeader + "1 2 3 4 5 6").columns, 3U);
}

TEST_F(AsciiGridReaderTest, PlacesNodesAtTheCentresOfTheCells) {
  const LatticeHeader header = Header(kHeader + "1 2 3 4 5 6");
  EXPECT_EQ(header.type, LatticeResequencer::Uniform);
  EXPECT_EQ(header.columns, 3U);
  EXPECT_EQ(header.rows, 2U);
  EXPECT_EQ(header.planes, 1U);
  EXPECT_EQ(header.components, 1U);
  EXPECT_EQ(header.dataType, corvel::kDouble);
  EXPECT_EQ(header.origin.x, 105.0);
  EXPECT_EQ(header.origin.y, 205.0);
  EXPECT_EQ(header.spacing.x, 10.0);
  EXPECT_EQ(header.spacing.y, 10.0);
  EXPECT_EQ(header.rowOrder, RowOrder::kTopDown);
  EXPECT_EQ(header.voidValue, -9999.0);
  EXPECT_EQ(header.format, "ESRI ASCII grid");
}

TEST_F(AsciiGridReaderTest, CountsRowsFromTheBottom) {
  EXPECT_THAT(Values(Read(kHeader + "1 2 3\n4 5 6\n")), ElementsAre(4, 5, 6, 1, 2, 3));
}

TEST_F(AsciiGridReaderTest, GivesNoMeaningToLineEnds) {
  EXPECT_THAT(Values(Read(kHeader + "1\n2 3 4\r\n5\t6\r")), ElementsAre(4, 5, 6, 1, 2, 3));
  EXPECT_THAT(Values(Read("ncols 1 nrows 1 xllcorner 0 yllcorner 0 cellsize 1 8")), ElementsAre(8));
}

TEST_F(AsciiGridReaderTest, TakesKeywordsInAnyCaseAndOrder) {
  const LatticeHeader header = Header(
      "CellSize .500E+02\nNoData_Value -99999.\nYLLCENTER 7\nxLLcenter -3.5\nNROWS 1\nNCOLS +1\n5");
  EXPECT_EQ(header.origin.x, -3.5);
  EXPECT_EQ(header.origin.y, 7.0);
  EXPECT_EQ(header.spacing.x, 50.0);
  EXPECT_EQ(header.voidValue, -99999.0);
}

TEST_F(AsciiGridReaderTest, TakesCellsThatAreNotSquare) {
  const LatticeHeader header = Header("ncols 1\nnrows 1\nxllcorner 0\nyllcenter 0\ndx 2\ndy 4\n5");
  EXPECT_EQ(header.spacing.x, 2.0);
  EXPECT_EQ(header.spacing.y, 4.0);
  EXPECT_EQ(header.origin.x, 1.0);
  EXPECT_EQ(header.origin.y, 0.0);
}

TEST_F(AsciiGridReaderTest, HasAVoidValueOnlyWhenTheFileStatesOne) {
  EXPECT_FALSE(Header("ncols 1\nnrows 1\nxllcorner 0\nyllcorner 0\ncellsize 1\n-9999").voidValue);
  EXPECT_TRUE(std::isnan(
      *Header("ncols 1\nnrows 1\nxllcorner 0\nyllcorner 0\ncellsize 1\nnodata_value nan 1")
           .voidValue));
}

TEST_F(AsciiGridReaderTest, TakesWordsThatStandForNumbers) {
  const auto lattice = Read(kHeader + "NaN inf -INF 1e-400 -0 .5");
  EXPECT_TRUE(std::isnan(lattice.Value<double>(0, 1)));
  EXPECT_EQ(lattice.Value<double>(1, 1), HUGE_VAL);
  EXPECT_EQ(lattice.Value<double>(2, 1), -HUGE_VAL);
  EXPECT_EQ(lattice.Value<double>(0, 0), 0.0);
  EXPECT_TRUE(std::signbit(lattice.Value<double>(1, 0)));
  EXPECT_EQ(lattice.Value<double>(2, 0), 0.5);
}

TEST_F(AsciiGridReaderTest, TellsWhatIsWrongInTheHeader) {
  const struct {
    const char* text;
    const char* expected;
  } cases[] = {
      {"", "grid.asc, line 1: expected ncols before the values, found the end of the file"},
      {"nrows 1\n5", "line 2: expected ncols before the values, found \"5\""},
      {"ncols 1\n5", "line 2: expected nrows before the values"},
      {"ncols 1\nnrows 1\n5", "line 3: expected xllcorner or xllcenter before"},
      {"ncols 1\nnrows 1\nxllcorner 1\n5", "line 4: expected yllcorner or yllcenter before"},
      {"ncols 1\nnrows 1\nxllcorner 1\nyllcorner 1\n\n5", "line 6: expected cellsize or dx before"},
      {"ncols 1\nnrows 1\nxllcorner 1\nyllcorner 1\ndx 1\n5", "line 6: expected cellsize or dy"},
      {"ncols 1\nncols 1\n", "line 2: \"ncols\" tells the number of columns a second time"},
      {"nrows 1\nnrows 1\n", "line 2: \"nrows\" tells the number of rows a second time"},
      {"xllcorner 1\nxllcenter 1\n", "line 2: \"xllcenter\" tells where the lower-left cell lies"},
      {"yllcorner 1\nyllcorner 1\n", "line 2: \"yllcorner\" tells where the lower-left cell lies"},
      {"cellsize 1\ndx 1\n", "line 2: \"dx\" tells the size of the cells a second time"},
      {"dy 1\ncellsize 1\n", "line 2: \"cellsize\" tells the size of the cells a second time"},
      {"nodata_value 1\nNODATA_VALUE 1\n", "line 2: \"NODATA_VALUE\" tells the value of cells"},
      {"ncols 1\nrows 1\n",
       "line 2: expected a keyword of an ESRI ASCII grid or a number, found \"rows\""},
      {"ncols x\n", "line 1: expected the number of columns, a positive whole number, found \"x\""},
      {"ncols 0\n", "line 1: expected the number of columns, a positive whole number, found \"0\""},
      {"nrows -1\n", "line 1: expected the number of rows, a positive whole number, found \"-1\""},
      {"nrows 2.5\n", "found \"2.5\""},
      {"ncols 4294967296\n", "\"4294967296\", which is beyond the range of its type"},
      {"ncols", "line 1: expected the number of columns, a positive whole number, found the end"},
      {"cellsize 0\n", "line 1: expected a positive cell size, found \"0\""},
      {"cellsize nan\n", "line 1: expected a positive cell size, found \"nan\""},
      {"dx -1\n", "line 1: expected a positive cell size, found \"-1\""},
      {"xllcorner inf\n", "line 1: expected a finite coordinate, found \"inf\""},
      {"xllcorner 1e999\n", "which is beyond the range"},
      {"\x7F\x45LF",
       "line 1: expected a keyword of an ESRI ASCII grid or a number, found \"\\x7FELF\""},
      {"ncols 1\nnrows 1\nxllcorner 1.7e308\nyllcorner 1\ncellsize 1.7e308\n5", "beyond the range"},
  };
  for (const auto& c : cases) EXPECT_THAT(Error(c.text), HasSubstr(c.expected)) << c.text;
}

TEST_F(AsciiGridReaderTest, TellsWhichValueIsNoNumber) {
  EXPECT_THAT(Error(kHeader + "1 2 3\n4 five 6\n"),
              EndsWith("grid.asc, line 8: expected a number, found \"five\""));
  EXPECT_THAT(
      Error(kHeader + "1 2 3\n4 1e999 6\n"),
      EndsWith("line 8: expected a number, found \"1e999\", which is beyond the range of its "
               "type"));
  EXPECT_THAT(Error(kHeader + "1,0 2 3 4 5 6"), EndsWith("found \"1,0\""));
}

TEST_F(AsciiGridReaderTest, TellsHowManyNumbersAreMissing) {
  EXPECT_THAT(Error(kHeader + "1 2 3\n4 5"),
              EndsWith("line 8: expected 6 numbers (3 columns x 2 rows), found only 5"));
  EXPECT_THAT(Error(kHeader + "100 200 300\n400 500\n"),
              EndsWith("line 9: expected 6 numbers (3 columns x 2 rows), found only 5"));
  EXPECT_THAT(Error(kHeader), EndsWith("found only 0"));
}

TEST_F(AsciiGridReaderTest, RefusesNumbersBeyondTheLast) {
  EXPECT_THAT(Error(kHeader + "1 2 3\n4 5 6\n7"),
              EndsWith("line 9: expected the end of the file after 6 numbers (3 columns x 2 rows), "
                       "found \"7\""));
}

TEST_F(AsciiGridReaderTest, TakesNoMemoryForWhatTheFileCannotHold) {
  EXPECT_THAT(
      Error("ncols 4294967295\nnrows 4294967295\nxllcorner 0\nyllcorner 0\ncellsize 1\n1 2"),
      HasSubstr("expected 18446744065119617025 numbers (4294967295 columns x 4294967295 "
                "rows), found only 2"));
}

TEST_F(AsciiGridReaderTest, FailsWhereverTheFileIsCut) {
  const std::string whole = kHeader + "1 2 3\n4 5 6";
  for (std::size_t size = 0; size < whole.size(); ++size) {
    EXPECT_THAT(Error(whole.substr(0, size)), HasSubstr("grid.asc, line ")) << size;
  }
}

TEST_F(AsciiGridReaderTest, RaisesWhatTheSystemSaysOfAMissingFile) {
  EXPECT_THROW(AsciiGridReader(folder_.File(L"missing.asc")), corvel::Exception);
}

}  // namespace
}  // namespace trovan::filters
