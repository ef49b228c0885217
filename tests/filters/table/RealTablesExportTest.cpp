// Tables that many programs wrote, with what is known of them: each kind of them lies in a folder
// of its own with an "expected.json".
#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <corvel/Path.h>
#include <kerno/TextCodec.h>
#include <trovan/DBFCodePages.h>

#include "TableFixture.h"
#include "filters/support/FilterError.h"
#include "filters/table/TableReport.h"
#include "support/Sha256.h"

namespace trovan::filters {
namespace {

using nlohmann::ordered_json;
using testing::HasSubstr;

class RealTablesExportTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists(Folder() / "dbf" / "expected.json")) {
      GTEST_SKIP() << "no tables in " << Folder()
                   << ": set the CMake variable TROVAN_TEST_DATA to a folder that has them.";
    }
  }

  static std::filesystem::path Folder() { return TROVAN_TEST_DATA; }
  static std::wstring Path(const std::string& name) {
    return corvel::PathFromSystem((Folder() / name).string());
  }
  static ordered_json Expected(const std::string& kind) {
    return ordered_json::parse(test::ReadBytes(Folder() / kind / "expected.json"));
  }

  // All rows, deleted ones too.
  static ordered_json Rows(const std::string& name, bool raw) {
    StringSink sink;
    JsonWriter writer(sink, JsonWriter::Form::kArray);
    TableExportOptions options;
    options.withDeleted = true;
    options.raw = raw;
    ExportTable(Path(name), options, writer, nullptr);
    return ordered_json::parse(sink.text);
  }
};

bool IsDBase2(const ordered_json& table) { return table["layout"] == "dbase2"; }

// The bytes of a name as their first characters of Unicode, like the expected names.
std::string AsLatin1(const std::string& bytes) {
  std::string utf8;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      utf8 += c;
    } else {
      utf8 += static_cast<char>(0xC0 | byte >> 6);
      utf8 += static_cast<char>(0x80 | (byte & 0x3F));
    }
  }
  return utf8;
}

void ExpectFields(const TableReport& report, const ordered_json& table) {
  ASSERT_EQ(report.layout.fields.size(), table["fields"].size());
  const std::size_t nameLength = report.layout.level7 ? 32 : 10;
  for (std::size_t i = 0; i < report.layout.fields.size(); ++i) {
    const FieldLayout& field = report.layout.fields[i];
    const ordered_json& expected = table["fields"][i];
    EXPECT_EQ(AsLatin1(field.name.substr(0, nameLength)), expected["name"].get<std::string>()) << i;
    EXPECT_EQ(std::string(1, report.fields[i].type), expected["type"].get<std::string>()) << i;
    EXPECT_EQ(report.fields[i].length, expected["length"].get<std::size_t>()) << i;
    EXPECT_EQ(report.fields[i].decimals, expected["decimals"].get<unsigned>()) << i;
  }
}

TEST_F(RealTablesExportTest, HaveTheirFieldsAndRecords) {
  std::size_t checked = 0;
  const ordered_json tables = Expected("dbf");
  for (const auto& [name, table] : tables.items()) {
    SCOPED_TRACE(name);
    if (IsDBase2(table)) continue;
    const TableReport report = ReportTable(Path(name), std::nullopt, nullptr);
    EXPECT_EQ(report.layout.version, table["version"].get<unsigned>());
    EXPECT_EQ(report.layout.languageByte, table["language_driver"].get<unsigned>());
    EXPECT_EQ(report.layout.headerLength, table["header_length"].get<std::size_t>());
    EXPECT_EQ(report.layout.recordLength, table["record_length"].get<std::size_t>());
    EXPECT_EQ(report.layout.recordCount, table["record_count"].get<std::uint32_t>());
    if (table["all_records_present"].get<bool>()) {
      EXPECT_EQ(report.recordsPresent, report.layout.recordCount);
    }
    EXPECT_EQ(report.deletedRecords, table["deleted_records"].size());
    ExpectFields(report, table);
    ++checked;
  }
  EXPECT_GT(checked, 70U);
}

TEST_F(RealTablesExportTest, AreExportedWithTheirDeletedRecords) {
  const ordered_json tables = Expected("dbf");
  for (const auto& [name, table] : tables.items()) {
    SCOPED_TRACE(name);
    if (IsDBase2(table)) continue;
    for (const bool raw : {false, true}) {
      const ordered_json rows = Rows(name, raw);
      EXPECT_EQ(rows.size(), table["record_count"].get<std::size_t>());
      ordered_json deleted = ordered_json::array();
      for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i]["_deleted"] == true) deleted.push_back(i);
      }
      EXPECT_EQ(deleted, table["deleted_records"]);
    }
  }
}

TEST_F(RealTablesExportTest, OfDBase2AreRefused) {
  std::size_t refused = 0;
  const ordered_json tables = Expected("dbf");
  for (const auto& [name, table] : tables.items()) {
    if (!IsDBase2(table)) continue;
    ++refused;
    try {
      ReportTable(Path(name), std::nullopt, nullptr);
      ADD_FAILURE() << name << " was not refused";
    } catch (const FilterError& error) {
      EXPECT_THAT(error.what(), HasSubstr("dBASE II table"));
    }
  }
  EXPECT_GT(refused, 0U);
}

TEST_F(RealTablesExportTest, AreReadInThePageThatTheirSideFileNames) {
  std::size_t checked = 0;
  const ordered_json tables = Expected("dbf");
  for (const auto& [name, table] : tables.items()) {
    const auto path = Folder() / name;
    const auto side = std::filesystem::path(path).replace_extension(".cpg");
    const auto shapefile = std::filesystem::path(path).replace_extension(".shp");
    if (!std::filesystem::exists(side) || !std::filesystem::exists(shapefile)) continue;
    const int named = CPGFileRead(Path(name));
    if (named == 0) continue;
    SCOPED_TRACE(name);
    EXPECT_EQ(ReportTable(Path(name), std::nullopt, nullptr).codePage.number, named);
    ++checked;
  }
  EXPECT_GT(checked, 0U);
}

// --- Memos ---------------------------------------------------------------------------------------

std::string FromHex(const std::string& digits) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
    bytes += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
  }
  return bytes;
}

bool IsHex(const std::string& text) {
  return text.size() % 2 == 0 && text.find_first_not_of("0123456789abcdef") == std::string::npos;
}

bool Matches(const std::string& bytes, const ordered_json& value) {
  return bytes.size() == value["length"].get<std::size_t>() &&
         test::Sha256(bytes) == value["sha256"].get<std::string>();
}

// A memo came out as text of the page, or as the digits of its bytes.
void ExpectMemo(const ordered_json& shown, const ordered_json& value, kerno::TextCodec& codec) {
  if (value.contains("error")) {
    EXPECT_EQ(shown, nullptr);
    return;
  }
  ASSERT_TRUE(shown.is_string()) << shown;
  const auto text = shown.get<std::string>();
  const std::string encoded = codec.Encode(kerno::TextCodec(65001).Decode(text));
  EXPECT_TRUE(Matches(encoded, value) || (IsHex(text) && Matches(FromHex(text), value)))
      << value.dump() << "\nshown in " << text.size() << " bytes: " << text.substr(0, 100);
}

TEST_F(RealTablesExportTest, HaveTheirMemos) {
  std::size_t checked = 0;
  const ordered_json tables = Expected("memo");
  for (const auto& [name, memos] : tables.items()) {
    SCOPED_TRACE(name);
    if (memos["memo_file"].is_null()) continue;
    const ordered_json rows = Rows(name, false);
    const TableReport report = ReportTable(Path(name), std::nullopt, nullptr);
    ASSERT_TRUE(report.memo);
    EXPECT_EQ(report.memo->blockSize, memos["block_size"].get<unsigned>());
    kerno::TextCodec codec(report.codePage.number);
    for (const auto& value : memos["values"]) {
      SCOPED_TRACE(value["record"].dump() + ' ' + value["field"].dump());
      const ordered_json& row = rows.at(value["record"].get<std::size_t>());
      ExpectMemo(row.at(value["field"].get<std::string>()), value, codec);
      ++checked;
    }
  }
  EXPECT_GT(checked, 50U);
}

}  // namespace
}  // namespace trovan::filters
