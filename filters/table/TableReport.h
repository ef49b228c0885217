// Everything that is to be told about a table without showing its records.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <corvel/Progress.h>

#include "filters/table/CodePageChoice.h"
#include "filters/table/TableLayout.h"

namespace trovan::filters {

struct FieldReport {
  std::string name;  // UTF-8
  char type = 0;
  std::string kind;  // in a word
  std::size_t length = 0;
  unsigned decimals = 0;
  bool hidden = false;  // a field of the program's own: not among the columns of rows
};

struct MemoReport {
  std::string file;
  std::string kind;
  std::uint32_t blockSize = 0;
};

struct TableReport {
  TableLayout layout;
  std::vector<FieldReport> fields;
  CodePageChoice codePage;
  bool hasMemoFields = false;
  std::optional<MemoReport> memo;
  std::uint32_t recordsPresent = 0;  // of those that the header promises
  std::uint64_t deletedRecords = 0;
  std::vector<std::string> oddities;  // what a user may stumble over, in whole sentences
};

// Reads the header, the side files and the deletion flags of the table at `path`.
//
// `progress` may be null; when it asks to stop, the flags are counted only so far.
//
// Raises FilterError when the table cannot be read at all.
TableReport ReportTable(const std::wstring& path, std::optional<int> codePage,
                        corvel::IProgress* progress);

}  // namespace trovan::filters
