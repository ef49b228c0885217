#include "table/TableCommand.h"

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <corvel/Path.h>
#include <corvel/Text.h>
#include <kerno/CodePageInfo.h>
#include <trovan/DBFCodePages.h>
#include <trovan/DBFReader.h>

#include "Printable.h"
#include "ProgressBar.h"
#include "StandardOutput.h"
#include "Tool.h"
#include "filters/support/CsvWriter.h"
#include "filters/support/FilterError.h"
#include "filters/support/JsonWriter.h"
#include "filters/table/SideFiles.h"
#include "filters/table/TableExport.h"
#include "filters/table/TableReport.h"
#include "table/TableReportText.h"

namespace trovan::tool {
namespace {

using filters::FilterError;
using filters::JsonWriter;
using Work = std::function<int()>;

void Warn(const std::string& message) {
  std::fprintf(stderr, "trovan: %s\n", Printable(message).c_str());
}

std::string Shown(const std::wstring& path) { return corvel::Utf8FromWide(path); }

// What the options of one subcommand are parsed into.
struct Arguments {
  std::string file;
  std::vector<std::string> files;
  std::string format;
  std::optional<int> codePage;
  filters::TableExportOptions rows;
  std::optional<int> written;

  std::wstring Path() const { return corvel::PathFromSystem(file); }
};

CLI::Option* AddFile(CLI::App& command, Arguments& arguments) {
  return command.add_option("file", arguments.file, "The table (.dbf)")->required();
}

void AddCodePage(CLI::App& command, Arguments& arguments) {
  command.add_option(
      "--code-page", arguments.codePage,
      "Read texts in this Windows code page (65001 is UTF-8) instead of the table's");
}

// A count of rows. (The parser of numbers would take -1 for a huge one.)
const CLI::Validator kRowCount(
    [](const std::string& text) -> std::string {
      std::uint64_t count = 0;
      const char* end = text.data() + text.size();
      const auto parsed = std::from_chars(text.data(), end, count);
      return parsed.ec == std::errc() && parsed.ptr == end ? "" : "not a count of rows: " + text;
    },
    "COUNT");

// --- cat -----------------------------------------------------------------------------------------

std::unique_ptr<filters::RowWriter> MakeWriter(const std::string& format, StandardOutput& output) {
  if (format == "json") return std::make_unique<JsonWriter>(output, JsonWriter::Form::kArray);
  if (format == "ndjson") return std::make_unique<JsonWriter>(output, JsonWriter::Form::kLines);
  return std::make_unique<filters::CsvWriter>(output);
}

// Tells what went wrong beside the rows. Returns the exit code.
int Conclude(const std::string& name, const filters::TableExportResult& result) {
  const std::string start = name + ": ";
  if (result.malformed > 0) {
    Warn(start + std::to_string(result.malformed) + " places are no text of code page " +
         std::to_string(result.codePage) +
         " and came out as U+FFFD; another one can be asked for with --code-page");
  }
  const auto& problems = result.problems;
  for (const std::string& problem : problems.First()) Warn(start + problem);
  if (problems.Count() > problems.First().size()) {
    Warn(start + "and " + std::to_string(problems.Count() - problems.First().size()) +
         " problems more");
  }
  if (result.cancelled) return kInterrupted;
  return problems.Count() > 0 ? kFailed : kDone;
}

int Cat(const Arguments& arguments) {
  StandardOutput output;
  const auto writer = MakeWriter(arguments.format, output);
  filters::TableExportOptions options = arguments.rows;
  options.codePage = arguments.codePage;
  const std::string name = Shown(arguments.Path());
  filters::TableExportResult result;
  {
    ProgressBar progress(name);
    result = filters::ExportTable(arguments.Path(), options, *writer, &progress);
  }
  return Conclude(name, result);
}

void AddCat(CLI::App& table, Work& work) {
  auto* command = table.add_subcommand("cat", "Write the records as CSV or JSON, in UTF-8");
  auto arguments = std::make_shared<Arguments>();
  AddFile(*command, *arguments);
  arguments->format = "csv";
  command->add_option("--format", arguments->format, "csv (RFC 4180), json or ndjson")
      ->check(CLI::IsMember({"csv", "json", "ndjson"}))
      ->capture_default_str();
  AddCodePage(*command, *arguments);
  command->add_flag("--raw", arguments->rows.raw,
                    "Leave stored texts as they are: blanks, the form of dates and numbers");
  command->add_flag("--deleted", arguments->rows.withDeleted,
                    "Show deleted records too; a first column tells which they are");
  command->add_option("--skip", arguments->rows.skip, "Leave out the first N rows")
      ->check(kRowCount);
  command->add_option("--limit", arguments->rows.limit, "Stop after N rows")->check(kRowCount);
  command->callback([arguments, &work] { work = [arguments] { return Cat(*arguments); }; });
}

// --- info ----------------------------------------------------------------------------------------

int Info(const Arguments& arguments) {
  const std::string name = Shown(arguments.Path());
  filters::TableReport report;
  {
    ProgressBar progress(name);
    report = filters::ReportTable(arguments.Path(), arguments.codePage, &progress);
    if (!progress.Update(1.0)) return kInterrupted;
  }
  StandardOutput().Write(arguments.format == "json" ? TableReportAsJson(name, report)
                                                    : TableReportAsText(name, report));
  return kDone;
}

void AddInfo(CLI::App& table, Work& work) {
  auto* command = table.add_subcommand(
      "info", "Tell the fields, the code page and why that one, the memo file, and what is odd");
  auto arguments = std::make_shared<Arguments>();
  AddFile(*command, *arguments);
  arguments->format = "text";
  command->add_option("--format", arguments->format, "text or json")
      ->check(CLI::IsMember({"text", "json"}))
      ->capture_default_str();
  AddCodePage(*command, *arguments);
  command->callback([arguments, &work] { work = [arguments] { return Info(*arguments); }; });
}

// --- check ---------------------------------------------------------------------------------------

std::string Verdict(const std::wstring& path, int checked) {
  if (checked == 1) return "a table";
  if (checked == 0) return "an empty file";
  if (!corvel::FileExists(path)) return "not a table: there is no file of this name";
  if (corvel::ToLower(corvel::CPath(path).GetExtension()) != L".dbf") {
    return "not a table: its name does not end in .dbf";
  }
  return "not a table: it cannot be opened, or its header does not fit its size";
}

int Check(const Arguments& arguments) {
  int code = kDone;
  StandardOutput output;
  for (const std::string& file : arguments.files) {
    const std::wstring path = corvel::PathFromSystem(file);
    const int checked = CDBFReader::CheckDBFFile(path);
    output.Write(Shown(path) + ": " + Verdict(path, checked) + '\n');
    if (checked != 1) code = kFailed;
  }
  return code;
}

void AddCheck(CLI::App& table, Work& work) {
  auto* command = table.add_subcommand(
      "check", "Tell at a glance whether files are tables; exit code 1 unless all are");
  auto arguments = std::make_shared<Arguments>();
  command->add_option("files", arguments->files, "Files to look at")->required();
  command->callback([arguments, &work] { work = [arguments] { return Check(*arguments); }; });
}

// --- cpg -----------------------------------------------------------------------------------------

std::string PageName(int page) {
  constexpr int kByNumber = 2;
  const kerno::CodePageInfo pages(kByNumber);
  std::size_t index = 0;
  if (!pages.GetIndexFromPageNumber(page, index)) return {};
  return corvel::Utf8FromWide(pages.GetNameByIndex(index));
}

int WriteCpg(const std::wstring& path, int page) {
  constexpr int kActiveAnsi = 0;
  if (page != kActiveAnsi && PageName(page).empty()) {
    throw FilterError("code page " + std::to_string(page) +
                      " is not known; give the number of a Windows code page, such as 1252 or "
                      "65001, or 0 for the one of this system");
  }
  CPGFileWrite(path, page);
  return kDone;
}

int ShowCpg(const std::wstring& path) {
  const auto side = filters::FindSideFile(path, L".cpg");
  if (!side) throw FilterError("there is no .cpg file beside " + Shown(path));
  if (!side->foundInSmallLetters) {
    throw FilterError(
        Shown(side->path) +
        " is not looked at: its extension has to be .cpg in small letters; rename it");
  }
  const int page = CPGFileRead(path);
  if (page == 0) throw FilterError(Shown(side->path) + " names no known code page");
  const std::string name = PageName(page);
  StandardOutput().Write(std::to_string(page) + ' ' +
                         (name.empty() ? "(not a known code page)" : name) + '\n');
  return name.empty() ? kFailed : kDone;
}

int Cpg(const Arguments& arguments) {
  return arguments.written ? WriteCpg(arguments.Path(), *arguments.written)
                           : ShowCpg(arguments.Path());
}

void AddCpg(CLI::App& table, Work& work) {
  auto* command =
      table.add_subcommand("cpg", "Show or write the .cpg file, which names the code page");
  auto arguments = std::make_shared<Arguments>();
  AddFile(*command, *arguments)->description("The table, the shapefile, or any file of the set");
  command->add_option("--write", arguments->written,
                      "Write the file for this Windows code page; 0 stands for the one of this "
                      "system. An existing file is replaced");
  command->callback([arguments, &work] { work = [arguments] { return Cpg(*arguments); }; });
}

}  // namespace

void AddTableCommand(CLI::App& app, Work& work) {
  auto* table = app.add_subcommand("table", "Look into dBASE attribute tables (.dbf)");
  table->require_subcommand(1);
  AddInfo(*table, work);
  AddCat(*table, work);
  AddCheck(*table, work);
  AddCpg(*table, work);
}

}  // namespace trovan::tool
