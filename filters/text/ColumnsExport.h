// Writes the columns of a delimited text file as rows.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <corvel/Progress.h>

#include "filters/support/Problems.h"
#include "filters/support/RowWriter.h"
#include "filters/text/ColumnsReader.h"

namespace trovan::filters {

struct ColumnsExportOptions {
  ColumnsFormat format;
  char decimal = '.';                  // or ','
  std::vector<std::string> columns;    // to write, in this order, as ChooseColumn takes them
  std::vector<std::string> numbers;    // those that must hold numbers
  std::optional<std::uint64_t> limit;  // of rows
  bool keepGoing = false;  // rows with bad numbers are left out and listed, instead of the end
};

// Rows of some kind.
struct RowsOfNote {
  std::uint64_t count = 0;
  unsigned long long firstLine = 0;

  void Add(unsigned long long line) {
    if (count++ == 0) firstLine = line;
  }
};

struct ColumnsExportResult {
  std::uint64_t rows = 0;  // that were written
  RowsOfNote shorter;
  RowsOfNote longer;
  Problems badRows;             // left out, with the places of their first bad numbers
  Problems remarks;             // of DelimitedReader
  std::uint64_t malformed = 0;  // parts of texts that the code page does not know
  long long loneReturns = 0;    // carriage returns that were dropped
  RowsOfNote withoutPlace;      // points: rows whose coordinates are all empty
  bool cancelled = false;       // `progress` asked to stop
};

// Writes the file at `path` in constant memory, whatever its size. Without a choice of columns all
// are written, and so are the values of rows that have more of them. Rows that have less are filled
// up with null values.
//
// `progress` may be null. When it asks to stop, the output ends well-formed after a whole row.
//
// Raises FilterError for a choice that is not there, for the first bad number unless told to keep
// going, and what ColumnsReader and the writer raise.
ColumnsExportResult ExportColumns(const std::wstring& path, const ColumnsExportOptions& options,
                                  RowWriter& writer, corvel::IProgress* progress);

// Reads all rows that are wanted and lets `write` write those in which `fault` finds none. What
// there is to tell goes to `result`.
void ExportRows(ColumnsReader& reader, const ColumnsExportOptions& options,
                const std::function<std::string()>& fault, const std::function<void()>& write,
                ColumnsExportResult& result);

}  // namespace trovan::filters
