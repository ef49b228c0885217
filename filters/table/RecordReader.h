// The records of a table with their deletion flags, wherever they lie.
//
// Records come through CDBFReader as far as it reaches. It hides the deletion flags, but hands out
// the flag of the next record behind each record, so that reading on costs nothing more. Records
// beyond 2 GiB, cut-off ones and single flags are read from the file here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <corvel/BufferedFile.h>
#include <trovan/DBFReader.h>

#include "filters/table/TableLayout.h"

namespace trovan::filters {

struct Record {
  const unsigned char* data = nullptr;  // the fields; valid until the next read
  std::size_t present = 0;              // bytes of `data` that the file has; the rest are blanks
  unsigned char flag = ' ';

  bool IsDeleted() const { return flag == '*'; }
};

class RecordReader {
 public:
  // REQUIRES: `layout` is that of the table at `path` and outlives the reader.
  //
  // Raises FilterError when the table cannot be opened by its name.
  RecordReader(const std::wstring& path, const TableLayout& layout);

  // Reads record `index`, counted from 0, below the header's record count. False when the file ends
  // before the record's first byte, or holds an end-of-file mark there and nothing more. A record
  // that the file cuts off is delivered, padded with blanks.
  //
  // Raises corvel::Exception when the system cannot read.
  bool Read(std::uint32_t index, Record& record);

  // How many of the records that the header promises begin before the file ends.
  std::uint32_t CountPresent();

  CDBFReader& Reader() { return reader_; }

 private:
  unsigned char ReadFlag(std::uint32_t index);
  bool ReadThroughReader(std::uint32_t index);
  std::size_t ReadFromFile(std::uint32_t index);
  bool IsEndMark(std::uint32_t index, unsigned char flag) const;

  const TableLayout& layout_;
  CDBFReader reader_;
  corvel::CBufferedFile file_;
  std::vector<unsigned char> buffer_;  // the fields of a record and the byte behind it
  std::uint32_t flagIndex_ = 0;        // the record whose flag is flag_
  unsigned char flag_ = 0;
  bool flagKnown_ = false;
};

}  // namespace trovan::filters
