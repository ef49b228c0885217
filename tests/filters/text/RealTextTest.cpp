// Text files of other programs. How they were read by other means stands in the folder that the
// build names as TROVAN_TEST_DATA, outside the project; without it these tests skip.
//
// The other reading is that of Python's csv module. In these files it differs from ours in one
// thing: a blank line is a row without fields there, and no row here.
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <corvel/Path.h>

#include "TextFixture.h"
#include "filters/text/TextSniffer.h"
#include "filters/text/TokenLister.h"
#include "support/Latin1.h"
#include "support/Sha256.h"

namespace trovan::test {
namespace {

namespace fs = std::filesystem;
using filters::DelimitedReader;
using filters::Field;
using filters::SniffText;
using filters::TextReport;
using filters::TextSurvey;
using nlohmann::ordered_json;

class RealText : public testing::Test {
 protected:
  void SetUp() override {
    if (fs::exists(DataFolder() / "text" / "expected.json")) return;
    GTEST_SKIP() << "no text files in " << DataFolder()
                 << ": set the CMake variable TROVAN_TEST_DATA to a folder that has them.";
  }

  static fs::path DataFolder() { return TROVAN_TEST_DATA; }
  static std::wstring Path(const std::string& name) {
    return corvel::PathFromSystem((DataFolder() / name).string());
  }

  static ordered_json Expected() {
    return ordered_json::parse(ReadBytes(DataFolder() / "text" / "expected.json"));
  }

  using Cells = std::vector<std::vector<std::string>>;

  static Cells ReadCells(const std::string& name, const std::string& delimiter) {
    corvel::CBufferedFile file;
    file.Open(Path(name), "rb", corvel::kFileShareRead, false);
    const TextSurvey survey = filters::SurveyText(file, filters::kWholeFile, nullptr);
    file.Seek(SizeOf(survey.mark), corvel::kFileBegin);
    DelimitedReader reader(file, name, {delimiter, "", "\""});
    Cells cells;
    while (reader.ReadRow()) {
      auto& row = cells.emplace_back();
      for (const Field& field : reader.Row()) {
        row.push_back(survey.IsUtf8() ? std::string(field.text) : Utf8FromLatin1(field.text));
      }
    }
    EXPECT_EQ(reader.Remarks().Count(), QuoteFaults(name)) << name;
    return cells;
  }

  // How often text follows a closing quote: one file was read with commas although tabs set its
  // values apart, so each of its rows is a quoted text and more.
  static std::uint64_t QuoteFaults(const std::string& name) {
    return name == "text/plotly/mpg_2017.txt" ? 235 : 0;
  }
};

// Blank lines that the other reading takes for rows without fields, in front of the row of this
// index.
std::map<std::string, std::size_t> BlankLines() {
  return {{"text/plotly/clustergram_mtcars.tsv", 3}};
}

TEST_F(RealText, RowsAreThoseOfAnotherReader) {
  int checked = 0;
  const ordered_json expected = Expected();
  for (const auto& [name, known] : expected.items()) {
    if (!known.contains("delimited") || !known["delimited"].contains("cells_sha256")) continue;
    const auto& delimited = known["delimited"];
    Cells cells = ReadCells(name, delimited["delimiter"]);
    const auto blank = BlankLines();
    if (const auto found = blank.find(name); found != blank.end()) {
      cells.insert(cells.begin() + static_cast<std::ptrdiff_t>(found->second), Cells::value_type());
    }
    EXPECT_EQ(Sha256(ordered_json(cells).dump()), delimited["cells_sha256"]) << name;
    if (delimited.contains("rows_by_field_count")) {
      std::map<std::string, std::size_t> widths;
      for (const auto& row : cells) ++widths[std::to_string(row.size())];
      EXPECT_EQ(ordered_json(widths), delimited["rows_by_field_count"]) << name;
    }
    EXPECT_EQ(cells.size(), delimited["rows"].get<std::size_t>()) << name;
    ++checked;
  }
  EXPECT_GE(checked, 20);
}

TEST_F(RealText, QuotingCasesReadAsTheirAuthorExpects) {
  int checked = 0;
  for (const auto& entry : fs::directory_iterator(DataFolder() / "text" / "csv-spectrum")) {
    if (entry.path().extension() != ".csv") continue;
    const std::string name = "text/csv-spectrum/" + entry.path().filename().string();
    fs::path jsonPath = entry.path();
    jsonPath.replace_extension(".json");
    auto expected = ordered_json::parse(ReadBytes(jsonPath));
    // One of them holds its only row without an array, with another telephone number than the row.
    if (!expected.is_array()) {
      expected["Contact Phone Number"] = "2095257564";
      expected = ordered_json::array({expected});
    }
    const Cells cells = ReadCells(name, ",");
    ordered_json read = ordered_json::array();
    for (std::size_t row = 1; row < cells.size(); ++row) {
      ordered_json object = ordered_json::object();
      for (std::size_t i = 0; i < cells[row].size(); ++i) object[cells[0].at(i)] = cells[row][i];
      read.push_back(object);
    }
    EXPECT_EQ(read, expected) << name;
    ++checked;
  }
  EXPECT_EQ(checked, 7);
}

TEST_F(RealText, SurveysTellWhatIsKnownOfTheBytes) {
  const ordered_json expected = Expected();
  for (const auto& [name, known] : expected.items()) {
    corvel::CBufferedFile file;
    file.Open(Path(name), "rb", corvel::kFileShareRead, false);
    const TextSurvey survey = filters::SurveyText(file, filters::kWholeFile, nullptr);
    EXPECT_EQ(survey.bytes, known["bytes"]) << name;
    EXPECT_EQ(survey.lineFeeds, known["lf"]) << name;
    EXPECT_EQ(survey.pairs, known["crlf"]) << name;
    EXPECT_EQ(survey.pairs + survey.loneReturns, known["cr"]) << name;
    EXPECT_EQ(survey.nonAscii, known["non_ascii_bytes"]) << name;
    EXPECT_EQ(survey.IsUtf8(), known["valid_utf8"]) << name;
    EXPECT_EQ(survey.nulBytes > 0, known["has_nul"]) << name;
    EXPECT_EQ(survey.mark == filters::ByteOrderMark::kUtf8, known["utf8_bom"]) << name;
  }
}

// Of one file the other reader was told the wrong delimiter.
TEST_F(RealText, SniffingFindsTheDelimiterAndTheColumns) {
  const ordered_json expected = Expected();
  for (const auto& [name, known] : expected.items()) {
    if (!known.contains("delimited")) continue;
    const auto& delimited = known["delimited"];
    const TextReport report = SniffText(Path(name));
    const bool readOtherwise = name == "text/plotly/mpg_2017.txt";
    const std::string delimiter = readOtherwise ? "\t" : delimited["delimiter"];
    EXPECT_TRUE(report.delimited) << name;
    EXPECT_EQ(report.format.delimiters, delimiter) << name;
    EXPECT_EQ(report.format.quotes, "\"") << name;
    EXPECT_FALSE(report.binary) << name;
    const long long pairs = known["crlf"];
    const bool anyEnd = known["lf"] > 0;
    EXPECT_EQ(report.lineEnds, pairs > 0 ? "CR LF" : anyEnd ? "LF" : "none") << name;
    if (readOtherwise || !delimited.contains("rows_by_field_count")) continue;
    std::size_t columns = 0;
    std::size_t rows = 0;
    for (const auto& [width, count] : delimited["rows_by_field_count"].items()) {
      if (count.get<std::size_t>() < rows) continue;
      rows = count;
      columns = std::stoul(width);
    }
    EXPECT_EQ(report.columns, columns) << name;
    if (report.allRows) {
      EXPECT_EQ(report.rowsOfThatWidth, rows) << name;
    }
    if (report.header && report.commentLines == 0) {
      EXPECT_EQ(ordered_json(report.names), delimited["header"]) << name;
    }
  }
}

TEST_F(RealText, SniffingFindsColumnsBetweenBlanks) {
  const TextReport mesh = SniffText(Path("text/plotly/mesh_dataset.txt"));
  EXPECT_EQ(mesh.format.whitespace, " \t");
  EXPECT_EQ(mesh.columns, 3U);
  EXPECT_EQ(mesh.rows, 100U);
  EXPECT_EQ(mesh.decimal, '.');
  const TextReport grid = SniffText(Path("text/landlab/nocella_resampled.txt"));
  EXPECT_EQ(grid.format.whitespace, " \t");
  EXPECT_EQ(grid.columns, 170U);
  const TextReport single = SniffText(Path("text/landlab/perturbedcondst300.txt"));
  EXPECT_FALSE(single.delimited);
  EXPECT_EQ(single.columns, 1U);
}

// Without delimiters and quotes, tokens are what stands between white space.
TEST_F(RealText, TokensOfOtherTextsAreCounted) {
  filters::TokenOptions options;
  options.delimiters = "";
  options.useQuotes = false;
  const ordered_json expected = Expected();
  for (const auto& [name, known] : expected.items()) {
    if (!known.contains("whitespace_tokens")) continue;
    filters::TokenLister lister(Path(name), options);
    unsigned tokens = 0;
    while (lister.Next()) {
      if (!lister.Token().text.empty()) ++tokens;
    }
    EXPECT_EQ(tokens, known["whitespace_tokens"]) << name;
  }
}

}  // namespace
}  // namespace trovan::test
