// Files of other people, with what another program read in them: "text/expected.json".
#include <cstdlib>
#include <filesystem>
#include <string>

#include <corvel/Path.h>

#include "ExportFixture.h"
#include "support/Sha256.h"

namespace trovan::filters {
namespace {

using nlohmann::ordered_json;

class RealColumnsTest : public ExportFixture {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists(Folder() / "text" / "expected.json")) {
      GTEST_SKIP() << "no text files in " << Folder()
                   << ": set the CMake variable TROVAN_TEST_DATA to a folder that has them.";
    }
    expected_ = ordered_json::parse(test::ReadBytes(Folder() / "text" / "expected.json"));
  }

  static std::filesystem::path Folder() { return TROVAN_TEST_DATA; }

  // Takes the file for that of the fixture. The first row is a row like the others.
  void Take(const std::string& name, const std::string& delimiter = ",") {
    Save(test::ReadBytes(Folder() / name));
    options_.format.format.delimiters = delimiter;
    options_.format.header = false;
  }

  // The SHA-256 of all values, as the expected one is worked out: rows as lists in one JSON text.
  std::string HashOfCells() {
    ordered_json cells = ordered_json::array();
    for (const auto& row : Json()) {
      ordered_json& values = cells.emplace_back(ordered_json::array());
      for (const auto& [key, value] : row.items()) {
        values.push_back(value.is_null() ? ordered_json("") : value);
      }
    }
    return test::Sha256(cells.dump());
  }

  // Whether the expected values say all about the file that is needed here: Python's csv takes an
  // empty line for a row, and knows nothing of code pages.
  static bool IsPlain(const ordered_json& file) {
    return file.contains("delimited") && file["valid_utf8"] == true &&
           file["delimited"].contains("rows_by_field_count") &&
           !file["delimited"]["rows_by_field_count"].contains("0");
  }

  ordered_json expected_;
};

TEST_F(RealColumnsTest, HaveTheValuesThatAnotherProgramReads) {
  std::size_t checked = 0;
  for (const auto& [name, file] : expected_.items()) {
    if (!IsPlain(file)) continue;
    SCOPED_TRACE(name);
    const ordered_json& delimited = file["delimited"];
    Take(name, delimited["delimiter"].get<std::string>());
    EXPECT_EQ(HashOfCells(), delimited["cells_sha256"].get<std::string>());
    EXPECT_EQ(result_.rows, delimited["rows"].get<std::uint64_t>());
    ++checked;
  }
  EXPECT_GE(checked, 18U);
}

TEST_F(RealColumnsTest, KeepTheirValuesAsCsv) {
  for (const char* name : {"text/country-codes/country-codes.csv", "text/seaborn/mpg.csv",
                           "text/country-codes/UNSD-ru.csv"}) {
    SCOPED_TRACE(name);
    const ordered_json& delimited = expected_[name]["delimited"];
    Take(name, delimited["delimiter"].get<std::string>());
    options_.format.header = true;
    Save(Csv());
    options_.format.header = false;
    options_.format.format.delimiters = ",";
    EXPECT_EQ(HashOfCells(), delimited["cells_sha256"].get<std::string>());
  }
}

TEST_F(RealColumnsTest, HaveTheirNames) {
  const char* name = "text/country-codes/country-codes.csv";
  Take(name);
  options_.format.header = true;
  const auto rows = Json();
  ordered_json keys = ordered_json::array();
  for (const auto& [key, value] : rows.at(0).items()) keys.push_back(key);
  EXPECT_EQ(keys, expected_[name]["delimited"]["header"]);
}

TEST_F(RealColumnsTest, AreAirportsAtTheirPlaces) {
  Take("text/vega/airports.csv");
  options_.format.header = true;
  const auto rows = Json();
  const auto features = Points({"longitude", "latitude"})["features"];
  ASSERT_EQ(features.size(), 3376U);
  ASSERT_EQ(rows.size(), features.size());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const auto number = [&](const char* column) {
      return std::strtod(rows[i][column].get<std::string>().c_str(), nullptr);
    };
    const auto& coordinates = features[i]["geometry"]["coordinates"];
    ASSERT_EQ(coordinates[0].get<double>(), number("longitude")) << i;
    ASSERT_EQ(coordinates[1].get<double>(), number("latitude")) << i;
    ordered_json others = rows[i];
    others.erase("longitude");
    others.erase("latitude");
    ASSERT_EQ(features[i]["properties"], others) << i;
  }
}

TEST_F(RealColumnsTest, AreCarsWithNumbers) {
  Take("text/seaborn/mpg.csv");
  options_.format.header = true;
  const auto texts = Json();
  options_.numbers = {"mpg", "horsepower", "weight"};
  const auto rows = Json();
  ASSERT_EQ(rows.size(), texts.size());
  std::size_t missing = 0;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    for (const std::string& column : options_.numbers) {
      if (texts[i][column].is_null()) {
        EXPECT_TRUE(rows[i][column].is_null());
        ++missing;
        continue;
      }
      EXPECT_EQ(rows[i][column].get<double>(),
                std::strtod(texts[i][column].get<std::string>().c_str(), nullptr));
    }
  }
  EXPECT_EQ(missing, 6U);  // horsepowers
}

}  // namespace
}  // namespace trovan::filters
