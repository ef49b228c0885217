// Reads ESRI ASCII grids: a header of keywords and one plane of numbers. See
// docs/formats/ascii-grid.md.
#pragma once

#include <string>

#include <corvel/BufferedFile.h>

#include "filters/lattice/LatticeReader.h"
#include "filters/lattice/TextScanner.h"

namespace trovan::filters {

// Numbers are read as doubles, which lose nothing of what such files hold. The nodes are the
// centres of the cells. The header's void value is set only when the file states one.
class AsciiGridReader : public LatticeReader {
 public:
  // Reads the header. Raises FilterError when it makes no sense or promises more numbers than the
  // file has room for, corvel::Exception when the file cannot be read.
  explicit AsciiGridReader(const std::wstring& path);

  const LatticeHeader& Header() const override { return header_; }
  void ReadRows(LatticeRowSink& sink) override;

 private:
  void CheckRoom();
  [[noreturn]] void FailTooFew(std::uint64_t found) const;

  corvel::CBufferedFile file_;
  TextScanner scanner_;
  LatticeHeader header_;
  TextPlace values_;
};

}  // namespace trovan::filters
