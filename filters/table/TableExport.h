// Writes the records of a table as rows.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <corvel/Progress.h>

#include "filters/support/Problems.h"
#include "filters/support/RowWriter.h"

namespace trovan::filters {

struct TableExportOptions {
  std::optional<int> codePage;  // instead of the table's own
  bool raw = false;             // stored texts keep their blanks and their form
  bool withDeleted = false;     // deleted records too; a first column tells them
  std::uint64_t skip = 0;       // of the rows that would come
  std::optional<std::uint64_t> limit;
};

struct TableExportResult {
  std::uint64_t rows = 0;
  std::uint64_t malformed = 0;  // parts of texts that the code page does not know
  int codePage = 0;
  bool cancelled = false;  // `progress` asked to stop
  Problems problems;
};

// Writes the table at `path` in constant memory, whatever its size. What can be read is written:
// damaged places become null values and are listed in the result.
//
// `progress` may be null. When it asks to stop, the output ends well-formed after a whole row.
//
// Raises FilterError when the table cannot be read at all, and what the writer raises.
TableExportResult ExportTable(const std::wstring& path, const TableExportOptions& options,
                              RowWriter& writer, corvel::IProgress* progress);

// The first column of rows when deleted records come too.
inline constexpr const char* kDeletedColumn = "_deleted";

}  // namespace trovan::filters
