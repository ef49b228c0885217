// Any bytes as a table with a memo file beside it, exported in every form. The JSON of each must
// read back, and tell as many rows as the export does.
//
// The low bit of the first byte tells the kind of the memo file (even: ".fpt", odd: ".dbt"), its
// next ones how the table is exported; the next two bytes tell how many bytes of the rest are the
// table (the low one first); what is left is the memo file.
#include <algorithm>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "Require.h"
#include "filters/support/ByteSink.h"
#include "filters/support/CsvWriter.h"
#include "filters/support/FilterError.h"
#include "filters/support/JsonWriter.h"
#include "filters/table/TableExport.h"
#include "filters/table/TableReport.h"
#include "support/TempFolder.h"

namespace {

using trovan::filters::ByteSink;
using trovan::filters::CsvWriter;
using trovan::filters::ExportTable;
using trovan::filters::FilterError;
using trovan::filters::JsonWriter;
using trovan::filters::ReportTable;
using trovan::filters::TableExportOptions;
using trovan::filters::TableExportResult;
using trovan::filters::TableReport;
using trovan::fuzz::Require;

// Raised when there is more output than is worth looking at: a damaged table may point to one large
// memo from every record.
struct Enough {};

class BoundedSink : public ByteSink {
 public:
  void Write(std::string_view bytes) override {
    text += bytes;
    if (text.size() > kEnough) throw Enough();
  }

  std::string text;

 private:
  static constexpr std::size_t kEnough = 4 << 20;
};

struct Input {
  std::string table;
  std::string memo;
  bool isFpt;
  TableExportOptions options;
};

Input Split(const std::string& bytes) {
  const auto byte = [&bytes](std::size_t at) { return static_cast<unsigned char>(bytes[at]); };
  const std::string rest = bytes.substr(3);
  const std::size_t tableSize = std::min<std::size_t>(byte(1) + 256U * byte(2), rest.size());
  Input input{rest.substr(0, tableSize), rest.substr(tableSize), byte(0) % 2 == 0, {}};
  input.options.raw = (byte(0) & 2) != 0;
  input.options.withDeleted = (byte(0) & 4) != 0;
  if ((byte(0) & 8) != 0) input.options.codePage = 65001;
  if ((byte(0) & 16) != 0) input.options.codePage = 932;
  return input;
}

void ExportAsJson(const std::wstring& path, const TableExportOptions& options) {
  BoundedSink sink;
  JsonWriter writer(sink, JsonWriter::Form::kArray);
  const TableExportResult result = ExportTable(path, options, writer, nullptr);
  const auto rows = nlohmann::json::parse(sink.text, nullptr, false);
  Require(rows.is_array(), "the JSON does not read back");
  Require(rows.size() == result.rows, "the JSON has another number of rows");
  Require(!result.cancelled, "nobody cancelled");
}

void ExportAsCsv(const std::wstring& path, const TableExportOptions& options) {
  BoundedSink sink;
  CsvWriter writer(sink);
  ExportTable(path, options, writer, nullptr);
  Require(std::count(sink.text.begin(), sink.text.end(), '"') % 2 == 0, "a quote is not closed");
}

void Report(const std::wstring& path) {
  const TableReport report = ReportTable(path, std::nullopt, nullptr);
  Require(report.recordsPresent <= report.layout.recordCount, "more records than promised");
  Require(report.deletedRecords <= report.recordsPresent, "more deleted records than there are");
}

// A table that is refused is right too, and so is one with too much to say.
template <typename Work>
void Try(Work work) {
  try {
    work();
  } catch (const FilterError& error) {
    Require(std::string_view(error.what()).size() > 10, "a refusal without a reason");
  } catch (const Enough&) {
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 3) return 0;
  const Input input = Split(std::string(data, data + size));

  static const trovan::test::TempFolder folder;
  const char* name = input.isFpt ? "table.fpt" : "table.dbt";
  std::filesystem::remove(folder.Path() / (input.isFpt ? "table.dbt" : "table.fpt"));
  trovan::test::WriteBytes(folder.Path() / "table.dbf", input.table);
  trovan::test::WriteBytes(folder.Path() / name, input.memo);

  const std::wstring path = folder.File(L"table.dbf");
  Try([&] { ExportAsJson(path, input.options); });
  Try([&] { ExportAsCsv(path, input.options); });
  Try([&] { Report(path); });
  return 0;
}
