#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <corvel/Path.h>
#include <corvel/Text.h>

#include "ProgressBar.h"
#include "StandardOutput.h"
#include "Tool.h"
#include "filters/support/CsvWriter.h"
#include "filters/support/FileSink.h"
#include "filters/support/FilterError.h"
#include "filters/support/JsonWriter.h"
#include "filters/support/OutputFile.h"
#include "filters/text/ColumnsExport.h"
#include "filters/text/EscapedText.h"
#include "filters/text/PointsExport.h"
#include "filters/text/TextSniffer.h"
#include "text/TextArguments.h"

namespace trovan::tool {
namespace {

using filters::ColumnsExportOptions;
using filters::ColumnsExportResult;
using filters::JsonWriter;
using filters::Problems;
using filters::RowsOfNote;
using filters::TextReport;

// What the options are parsed into; those that were not given stay empty, and are sniffed.
struct ColumnsArguments {
  std::string file;
  std::string to = "csv";
  std::vector<std::string> points;
  std::string output;
  std::optional<std::string> delimiters;  // empty: blanks
  std::optional<std::string> quotes;      // empty: none
  std::optional<std::string> comment;     // empty: none
  std::string decimal;
  bool header = false;
  bool noHeader = false;
  unsigned long long skipLines = 0;
  bool verbose = false;
  ColumnsExportOptions options;

  std::wstring Path() const { return corvel::PathFromSystem(file); }
  std::string Name() const { return corvel::Utf8FromWide(Path()); }
  std::optional<char> Comment() const {
    if (!comment) return std::nullopt;
    return comment->empty() ? '\0' : comment->front();
  }
};

// --- What was not given -------------------------------------------------------------------------

filters::SniffHints Hints(const ColumnsArguments& arguments) {
  filters::SniffHints hints;
  hints.skipLines = arguments.skipLines;
  hints.comment = arguments.Comment();
  hints.delimiters = arguments.delimiters;
  hints.quotes = arguments.quotes;
  return hints;
}

// What was given, and what the file looks like where nothing was.
ColumnsExportOptions Settle(const ColumnsArguments& arguments, const TextReport& report) {
  ColumnsExportOptions options = arguments.options;
  filters::ColumnsFormat& format = options.format;
  format.format = report.format;
  if (arguments.delimiters) {
    format.format.delimiters = *arguments.delimiters;
    format.format.whitespace = arguments.delimiters->empty() ? " \t" : "";
  }
  if (arguments.quotes) format.format.quotes = *arguments.quotes;
  format.comment = arguments.Comment().value_or('\0');
  format.skipLines = std::max(arguments.skipLines, report.leadingLines);
  format.header = arguments.header || (!arguments.noHeader && report.header);
  const char sniffed = report.decimal != 0 ? report.decimal : '.';
  options.decimal = arguments.decimal.empty() ? sniffed : arguments.decimal.front();
  return options;
}

// "1 row", "2 rows"
std::string Counted(unsigned long long count, const char* what) {
  return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

std::string Characters(const std::string& set, const char* none) {
  return set.empty() ? none : "'" + filters::Escaped(set) + "'";
}

void TellFormat(const std::string& name, const ColumnsExportOptions& options) {
  const auto& format = options.format;
  const char* const otherwise = format.format.whitespace.empty() ? "none" : "blanks";
  WarnOfText(name + ": delimiter " + Characters(format.format.delimiters, otherwise) + ", quote " +
             Characters(format.format.quotes, "none") + ", decimal character '" + options.decimal +
             "', " + (format.header ? "a" : "no") + " line of names, " +
             Counted(format.skipLines, "line") + " skipped at the start");
}

// Raises FilterError where a guess has no ground.
void RequireEnoughToGoBy(const std::string& name, const ColumnsArguments& arguments,
                         const TextReport& report) {
  const bool isKnown = arguments.delimiters && (arguments.header || arguments.noHeader);
  if (!report.noWholeRow || isKnown) return;
  throw filters::FilterError(name +
                             ": no row ends within 1 MiB, so that nothing can be guessed; "
                             "--delimiter and --header or --no-header tell how to read it");
}

// Tells the guesses that change what the values are.
void WarnOfGuesses(const std::string& name, const ColumnsArguments& arguments,
                   const TextReport& report) {
  if (!arguments.comment && report.commentLines > 0) {
    WarnOfText(name + ": " + Counted(report.commentLines, "line") +
               " at the start with '#' in front: skipped; --comment none reads them as rows");
  }
  if (report.oddQuotes) {
    WarnOfText(name +
               ": what starts with \" often does not end with it, so quotes are read as ordinary "
               "characters; --quote '\"' reads them as quotes, --quote none without this warning");
  }
}

// --- What there is to tell afterwards -----------------------------------------------------------

void WarnOfRows(const std::string& name, const RowsOfNote& rows, const std::string& what) {
  if (rows.count == 0) return;
  WarnOfText(name + ": " + Counted(rows.count, "row") + ' ' + what + "; the first is on line " +
             std::to_string(rows.firstLine));
}

void WarnOfProblems(const Problems& problems, const std::string& start, const std::string& what) {
  for (const std::string& problem : problems.First()) WarnOfText(start + problem);
  if (problems.Count() > problems.First().size()) {
    WarnOfText(start + "and " + std::to_string(problems.Count() - problems.First().size()) + ' ' +
               what);
  }
}

// Tells what was not as it should be. Returns the exit code.
int Conclude(const std::string& name, const ColumnsExportOptions& options,
             const ColumnsExportResult& result) {
  WarnOfProblems(result.remarks, name + ", ", "more of the kind");
  WarnOfRows(name, result.shorter, "with fewer values than there are columns: filled up");
  WarnOfRows(name, result.longer,
             std::string("with more values than there are columns: ") +
                 (options.columns.empty() ? "written all the same" : "left out by --columns"));
  WarnOfRows(name, result.withoutPlace, "without coordinates: features without geometry");
  if (result.loneReturns > 0) {
    const auto count = static_cast<unsigned long long>(result.loneReturns);
    WarnOfText(name + ": " + Counted(count, "carriage return") + " within lines: dropped");
  }
  if (result.malformed > 0) {
    WarnOfText(name + ": " + Counted(result.malformed, "part") +
               " of texts unknown to the code page: written as U+FFFD; --code-page can ask for "
               "another one");
  }
  WarnOfProblems(result.badRows, "", "more of the kind");
  if (result.badRows.Count() > 0) {
    WarnOfText(name + ": " + Counted(result.badRows.Count(), "row") +
               " with bad numbers: left out");
  }
  if (result.cancelled) return kInterrupted;
  return result.badRows.Count() > 0 ? kFailed : kDone;
}

// --- The work -----------------------------------------------------------------------------------

std::unique_ptr<filters::RowWriter> MakeWriter(const std::string& format, filters::ByteSink& sink) {
  if (format == "json") return std::make_unique<JsonWriter>(sink, JsonWriter::Form::kArray);
  if (format == "ndjson") return std::make_unique<JsonWriter>(sink, JsonWriter::Form::kLines);
  return std::make_unique<filters::CsvWriter>(sink);
}

ColumnsExportResult Export(const ColumnsArguments& arguments, const ColumnsExportOptions& options,
                           filters::ByteSink& sink) {
  ProgressBar progress(arguments.Name(), arguments.output.empty()
                                             ? ProgressBar::Output::kStandard
                                             : ProgressBar::Output::kElsewhere);
  if (!arguments.points.empty()) {
    return ExportPoints(arguments.Path(), options, arguments.points, sink, &progress);
  }
  return ExportColumns(arguments.Path(), options, *MakeWriter(arguments.to, sink), &progress);
}

ColumnsExportResult ExportToFile(const ColumnsArguments& arguments,
                                 const ColumnsExportOptions& options) {
  filters::OutputFile output(corvel::PathFromSystem(arguments.output));
  ColumnsExportResult result;
  output.Fill([&](corvel::CBufferedFile& file) {
    filters::FileSink sink(file);
    result = Export(arguments, options, sink);
  });
  if (!result.cancelled) output.Commit();
  return result;
}

int Columns(const ColumnsArguments& arguments) {
  const std::string name = arguments.Name();
  const TextReport report = filters::SniffText(arguments.Path(), Hints(arguments));
  RequireEnoughToGoBy(name, arguments, report);
  const ColumnsExportOptions options = Settle(arguments, report);
  if (arguments.verbose) TellFormat(name, options);
  WarnOfGuesses(name, arguments, report);
  ColumnsExportResult result;
  if (arguments.output.empty()) {
    StandardOutput output;
    result = Export(arguments, options, output);
  } else {
    result = ExportToFile(arguments, options);
  }
  return Conclude(name, options, result);
}

// --- Arguments ----------------------------------------------------------------------------------

// An option that takes one character, or a word for some.
void AddCharacter(CLI::App& command, const std::string& name, std::optional<std::string>& character,
                  const std::vector<std::pair<std::string, std::string>>& words,
                  const std::string& description) {
  const auto take = [name, &character, words](const std::string& text) {
    for (const auto& [word, meaning] : words) {
      if (text != word) continue;
      character = meaning;
      return;
    }
    character = filters::Unescaped(text);
    const std::string_view forbidden("\r\n\f\0", 4);
    if (character && character->size() == 1 &&
        forbidden.find(character->front()) == std::string_view::npos) {
      return;
    }
    std::string list;
    for (const auto& [word, meaning] : words) list += word + ", ";
    throw CLI::ValidationError(name,
                               list + "or one character (no line end) is expected, not " + text);
  };
  command.add_option_function<std::string>(name, take, description)->type_name("CHARACTER");
}

// An option that takes columns with commas between.
void AddColumnList(CLI::App& command, const std::string& name, std::vector<std::string>& columns,
                   std::size_t most, const std::string& description) {
  const auto take = [name, &columns, most](const std::string& text) {
    columns.clear();
    for (std::size_t start = 0; start <= text.size();) {
      const std::size_t end = std::min(text.find(',', start), text.size());
      columns.push_back(text.substr(start, end - start));
      if (columns.back().empty()) throw CLI::ValidationError(name, "a column is empty: " + text);
      start = end + 1;
    }
    if (most > 0 && (columns.size() < 2 || columns.size() > most)) {
      throw CLI::ValidationError(name, "X,Y or X,Y,Z is expected, not " + text);
    }
  };
  command.add_option_function<std::string>(name, take, description)->type_name("LIST");
}

constexpr const char* kColumnsFooter = R"(
Examples: trovan text columns springs.csv --numbers height --to json
          trovan text columns springs.csv --points x,y --out springs.geojson

LIST names columns with commas between; a number counts them from 1, and is the way to a name
that holds a comma. Characters may be written \t, \\ or \xHH.)";

void AddFormatOptions(CLI::App& command, ColumnsArguments& arguments) {
  AddCharacter(command, "--delimiter", arguments.delimiters,
               {{"comma", ","}, {"semicolon", ";"}, {"tab", "\t"}, {"pipe", "|"}, {"blanks", ""}},
               "What sets values apart: comma, semicolon, tab, pipe, blanks (any number of them) "
               "or a character; otherwise as the start of the file looks");
  AddCharacter(command, "--quote", arguments.quotes, {{"none", ""}},
               "What encloses values: a character or none; otherwise as the file looks");
  command
      .add_option("--decimal", arguments.decimal,
                  "The decimal character of numbers, . or , ; otherwise as the file looks")
      ->check(CLI::IsMember({".", ","}));
  auto* header = command.add_flag("--header", arguments.header, "The first row has the names");
  command.add_flag("--no-header", arguments.noHeader, "The first row has values")->excludes(header);
  AddCharacter(command, "--comment", arguments.comment, {{"none", ""}},
               "Skip lines that start with this character; none: there are no such lines");
  command.add_option("--skip-lines", arguments.skipLines, "Skip so many lines at the start")
      ->check(kCount);
  command.add_option("--code-page", arguments.options.format.codePage,
                     "Read texts in this Windows code page instead of UTF-8");
}

}  // namespace

void AddTextColumns(CLI::App& text, std::function<int()>& work) {
  auto* command = text.add_subcommand(
      "columns", "Write the columns as CSV, JSON or points of a map (GeoJSON), in UTF-8");
  command->footer(std::string(kColumnsFooter) + "\n\n" + command->get_footer());
  auto arguments = std::make_shared<ColumnsArguments>();
  command->add_option("file", arguments->file, "The text file")->required();
  auto* to = command->add_option("--to", arguments->to, "csv (RFC 4180), json or ndjson");
  to->check(CLI::IsMember({"csv", "json", "ndjson"}))->capture_default_str();
  AddColumnList(*command, "--points", arguments->points, 3,
                "Write GeoJSON points instead: the columns of x, y and perhaps z, which must hold "
                "numbers; the other columns come with them");
  command->get_option("--points")->excludes(to);
  command
      ->add_option("--out", arguments->output,
                   "Write to this file instead of standard output. It appears when it is complete "
                   "and replaces an existing one")
      ->check([](const std::string& name) {
        return name.empty() ? std::string("the name is empty") : std::string();
      });
  AddColumnList(*command, "--columns", arguments->options.columns, 0,
                "Write these columns, in this order, instead of all");
  AddColumnList(*command, "--numbers", arguments->options.numbers, 0,
                "These columns hold numbers: other text is an error, empty values are null");
  command->add_option("--limit", arguments->options.limit, "Stop after N rows")->check(kCount);
  command->add_flag("--keep-going", arguments->options.keepGoing,
                    "Leave out rows with bad numbers, list them, and go on; the exit code is then "
                    "1");
  AddFormatOptions(*command, *arguments);
  command->add_flag("--verbose", arguments->verbose, "Tell how the file is read");
  command->callback([arguments, &work] { work = [arguments] { return Columns(*arguments); }; });
}

}  // namespace trovan::tool
