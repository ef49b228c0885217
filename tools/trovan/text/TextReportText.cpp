#include "text/TextReportText.h"

#include <algorithm>
#include <cstdio>

#include <nlohmann/json.hpp>

#include "Printable.h"
#include "filters/text/EscapedText.h"

namespace trovan::tool {
namespace {

using filters::Escaped;
using filters::TextReport;
using filters::TextSurvey;

std::string Line(const char* label, const std::string& value) {
  char start[32];
  std::snprintf(start, sizeof start, "  %-14.14s ", label);
  return start + Printable(value) + '\n';
}

std::string Counted(unsigned long long count, const char* one, const char* more) {
  return std::to_string(count) + ' ' + (count == 1 ? one : more);
}

std::string KindText(const TextReport& report) {
  if (!report.binary) return "text";
  return "binary (first NUL byte at " + std::to_string(report.survey.firstNul) + ")";
}

std::string EncodingText(const TextReport& report) {
  if (report.binary || report.survey.IsUtf8()) return report.encoding;
  return report.encoding + " (not UTF-8 at byte " + std::to_string(report.survey.firstBadUtf8) +
         ")";
}

std::string LineEndsText(const TextReport& report) {
  if (report.lineEnds != "mixed") return report.lineEnds;
  const TextSurvey& survey = report.survey;
  return "mixed: " + std::to_string(survey.lineFeeds - survey.pairs) + " LF, " +
         std::to_string(survey.pairs) + " CR LF, " + std::to_string(survey.loneReturns) + " CR";
}

std::string DelimiterName(const TextReport& report) {
  if (!report.delimited) return "none";
  const std::string& delimiters = report.format.delimiters;
  if (delimiters.empty()) return "blanks";
  if (delimiters == "\t") return "tab";
  return Escaped(delimiters);
}

std::string QuoteName(const TextReport& report) {
  if (report.oddQuotes) return "none: what starts with \" often does not end with it";
  return report.format.quotes.empty() ? "none" : Escaped(report.format.quotes);
}

std::string DecimalText(const TextReport& report) {
  return report.decimal == 0 ? "no fractions seen" : std::string(1, report.decimal);
}

std::string RowsText(const TextReport& report) {
  return Counted(report.rows, "row", "rows") +
         (report.allRows ? " in the file" : " looked at; there are more");
}

std::string ColumnsText(const TextReport& report) {
  std::string text = std::to_string(report.columns);
  if (!report.firstOtherLine) return text;
  return text + " in " + std::to_string(report.rowsOfThatWidth) + " of " +
         Counted(report.rows, "row", "rows") + "; the first other one is on line " +
         std::to_string(*report.firstOtherLine);
}

std::string NamesText(const TextReport& report) {
  if (!report.header) return "none: the columns have no names";
  constexpr std::size_t kShown = 20;
  std::string text;
  for (std::size_t i = 0; i < std::min(report.names.size(), kShown); ++i) {
    if (i > 0) text += ", ";
    text += Escaped(report.names[i]);
  }
  if (report.names.size() <= kShown) return text;
  return text + " and " + std::to_string(report.names.size() - kShown) + " more";
}

nlohmann::ordered_json SurveyAsJson(const TextSurvey& survey) {
  nlohmann::ordered_json json = {{"bytes", survey.bytes},
                                 {"whole_file", survey.wholeFile},
                                 {"line_feeds", survey.lineFeeds},
                                 {"cr_lf_pairs", survey.pairs},
                                 {"lone_carriage_returns", survey.loneReturns},
                                 {"non_ascii_bytes", survey.nonAscii},
                                 {"nul_bytes", survey.nulBytes},
                                 {"first_nul_byte", nullptr},
                                 {"first_byte_not_utf8", nullptr}};
  if (survey.nulBytes > 0) json["first_nul_byte"] = survey.firstNul;
  if (!survey.IsUtf8()) json["first_byte_not_utf8"] = survey.firstBadUtf8;
  return json;
}

nlohmann::ordered_json OrNull(const std::string& text) {
  if (text.empty()) return nullptr;
  return text;
}

}  // namespace

std::string TextReportAsText(const std::string& name, const TextReport& report) {
  std::string text = Printable(name) + '\n';
  text += Line("Kind", KindText(report));
  text += Line("Encoding", EncodingText(report));
  if (!report.binary) text += Line("Line ends", LineEndsText(report));
  if (report.rows > 0) {
    text += Line("Delimiter", DelimiterName(report));
    text += Line("Quote", QuoteName(report));
    text += Line("Decimal", DecimalText(report));
    if (report.commentLines > 0) {
      text += Line("Comments",
                   Counted(report.commentLines, "line", "lines") + " in front of the first row");
    }
    text += Line("Rows", RowsText(report));
    text += Line("Columns", ColumnsText(report));
    text += Line("Header", NamesText(report));
  }
  if (!report.problem.empty()) text += Line("Problem", report.problem);
  return text;
}

nlohmann::ordered_json TextReportAsJson(const std::string& name, const TextReport& report) {
  nlohmann::ordered_json json = {{"file", name},
                                 {"binary", report.binary},
                                 {"encoding", report.encoding},
                                 {"line_ends", report.lineEnds},
                                 {"sample", SurveyAsJson(report.survey)},
                                 {"comment_lines", report.commentLines},
                                 {"leading_lines", report.leadingLines},
                                 {"delimited", report.delimited},
                                 {"delimiter", nullptr},
                                 {"quote", OrNull(report.format.quotes)},
                                 {"odd_quotes", report.oddQuotes},
                                 {"decimal", nullptr},
                                 {"rows", report.rows},
                                 {"all_rows", report.allRows},
                                 {"columns", report.columns},
                                 {"rows_of_that_width", report.rowsOfThatWidth},
                                 {"first_other_line", nullptr},
                                 {"header", report.header},
                                 {"names", nlohmann::ordered_json::array()},
                                 {"problem", OrNull(report.problem)}};
  if (report.delimited) {
    json["delimiter"] = report.format.delimiters.empty() ? "blanks" : report.format.delimiters;
  }
  if (report.decimal != 0) json["decimal"] = std::string(1, report.decimal);
  if (report.firstOtherLine) json["first_other_line"] = *report.firstOtherLine;
  for (const std::string& column : report.names) json["names"].push_back(column);
  return json;
}

}  // namespace trovan::tool
