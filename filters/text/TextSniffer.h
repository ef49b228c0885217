// What kind of text a file is: its encoding and line ends, and how it sets its values apart. All
// told from a sample at its start; a guess that a person can overrule.
//
//   const TextReport report = SniffText(L"towns.csv");  // NAME;AREA\nOslo;454,03\nRome;1285\n
//   report.format.delimiters;  // ";"
//   report.decimal;            // ','
//   report.names;              // NAME, AREA: report.header is true
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "filters/text/DelimitedFormat.h"
#include "filters/text/TextSurvey.h"

namespace trovan::filters {

// How much of a file is looked at, for rows from behind the lines to skip.
inline constexpr long long kSampleBytes = 1024LL * 1024;
inline constexpr unsigned long long kSampleRows = 1000;

// What is known beforehand, and is not guessed.
struct SniffHints {
  unsigned long long skipLines = 0;       // at the start of the file
  std::optional<char> comment;            // 0: there are no comments
  std::optional<std::string> delimiters;  // empty: blanks set the values apart
  std::optional<std::string> quotes;      // empty: there are none
};

struct TextReport {
  TextSurvey survey;     // of the sample
  std::string encoding;  // "ASCII", "UTF-8", "UTF-8 with BOM", "UTF-16 LE", "8-bit", "unknown", ...
  std::string lineEnds;  // "LF", "CR LF", "CR", "mixed" or "none"

  // Lines in front of the first row that are no rows: skipped ones, blank ones, and those that
  // start with '#'. DelimitedReader::SkipLines can pass them over.
  unsigned long long leadingLines = 0;
  unsigned long long commentLines = 0;  // that start with '#', skipped ones not counted

  unsigned long long rows = 0;  // of the sample
  std::size_t columns = 0;      // the commonest number of values
  unsigned long long rowsOfThatWidth = 0;
  std::optional<unsigned long long> firstOtherLine;  // on which a row with another number begins
  std::vector<std::string> names;  // of the columns, the bytes of the file; empty without header
  std::string problem;             // why the rows end early: "towns.csv, line 7: ..."

  DelimitedFormat format;
  char decimal = 0;      // '.', ',', or 0: no fractions were seen
  bool binary = false;   // the sample has a NUL byte; then there are no rows
  bool allRows = false;  // the file has no more of them
  // The first row reaches beyond the sample: there was nothing to tell anything from.
  bool noWholeRow = false;
  // The format has no quotes because what starts with one often does not end with it.
  bool oddQuotes = false;
  bool header = false;  // the first row holds the names
  // At least half of the rows have one and the same number of values, two or more. If not, the
  // format takes each line as one value.
  bool delimited = false;
};

// Raises FilterError for a device or a pipe, and corvel::Exception when the file cannot be read.
TextReport SniffText(const std::wstring& path, const SniffHints& hints = {});

}  // namespace trovan::filters
