// A delimited text file as columns with names: its rows, their text in UTF-8, and the places of
// values for messages.
//
//   ColumnsReader reader(L"towns.csv", {}, nullptr);  // NAME,AREA\nOslo,454\n
//   reader.Names();                                   // NAME, AREA
//   while (reader.ReadRow()) std::cout << reader.Text(0);
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <corvel/BufferedFile.h>
#include <corvel/Progress.h>
#include <kerno/TextCodec.h>

#include "filters/text/DelimitedFormat.h"
#include "filters/text/DelimitedReader.h"

namespace trovan::filters {

struct ColumnsFormat {
  DelimitedFormat format;
  char comment = 0;                  // lines that start with it are no rows; 0: none
  unsigned long long skipLines = 0;  // at the start of the file
  bool header = true;                // the first row has the names
  std::optional<int> codePage;       // of the text; none: UTF-8
};

class ColumnsReader {
 public:
  // Looks at all of the file once, in constant memory, and reads the names. Columns without a name
  // are called "column_3" by their number, and all are without a header: then the first row tells
  // how many there are. A byte order mark of UTF-8 is skipped.
  //
  // `progress` may be null. Once it asks to stop, there are no more rows.
  //
  // Raises FilterError for a file that is no text of single bytes (NUL bytes, UTF-16), for one
  // whose lines end with carriage returns alone, for a device or a pipe, and what DelimitedReader
  // raises; corvel::Exception when the file cannot be read.
  ColumnsReader(const std::wstring& path, const ColumnsFormat& format, corvel::IProgress* progress);
  ~ColumnsReader();
  ColumnsReader(const ColumnsReader&) = delete;
  ColumnsReader& operator=(const ColumnsReader&) = delete;

  const std::vector<std::string>& Names() const { return names_; }

  // Reads the next row; false when there is none. Raises what DelimitedReader raises.
  bool ReadRow();
  bool WasStopped() const;

  // The row read last, as it stands in the file, and the line on which it begins.
  std::span<const Field> Row() const { return rows_->Row(); }
  unsigned long long Line() const { return rows_->Line(); }

  // A value of the row in UTF-8; it lives until the next call. In a code page that was asked for,
  // what is malformed becomes U+FFFD and is counted.
  //
  // Raises FilterError for malformed UTF-8 when no page was asked for.
  // REQUIRES: column < Row().size()
  std::string_view Text(std::size_t column);
  std::uint64_t Malformed() const { return malformed_; }

  // `towns.csv, line 7, column 3 ("lat"): `
  std::string Place(std::size_t column) const { return PlaceOf(column, 0); }

  // Carriage returns that are part of no line end. Rows are without them.
  long long LoneReturns() const { return loneReturns_; }
  const Problems& Remarks() const { return rows_->Remarks(); }

 private:
  void ReadNames(bool header);
  std::string PlaceOf(std::size_t column, std::size_t offset) const;
  void RequireUtf8(std::size_t column) const;

  std::string name_;  // of the file, for messages
  corvel::CBufferedFile file_;
  std::unique_ptr<corvel::IProgress> progress_;  // of the rows; null when nobody waits
  std::optional<kerno::TextCodec> codec_;
  std::optional<DelimitedReader> rows_;
  std::vector<std::string> names_;
  bool waiting_ = false;  // a row was read and is not taken yet
  bool stopped_ = false;  // before there were rows
  bool isUtf8_ = true;
  long long loneReturns_ = 0;
  std::uint64_t malformed_ = 0;
  std::string text_;
};

}  // namespace trovan::filters
