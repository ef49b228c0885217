#include "AsciiGridReader.h"

#include <cstdint>
#include <vector>

#include "filters/lattice/AsciiGridHeader.h"

namespace trovan::filters {
namespace {

std::uint64_t CountNodes(const LatticeHeader& header) {
  return std::uint64_t{header.columns} * header.rows;
}

std::string Describe(const LatticeHeader& header) {
  return std::to_string(CountNodes(header)) + " numbers (" + std::to_string(header.columns) +
         " columns x " + std::to_string(header.rows) + " rows)";
}

}  // namespace

AsciiGridReader::AsciiGridReader(const std::wstring& path) : scanner_(file_) {
  file_.Open(path, "rb", corvel::kFileShareRead, false);
  header_ = ReadAsciiGridHeader(scanner_);
  values_ = scanner_.Place();
  CheckRoom();
}

// Before memory is taken for a row that no file of this length can have.
void AsciiGridReader::CheckRoom() {
  // A number takes a digit, and white space before the next.
  const std::uint64_t most = scanner_.BytesLeft() / 2 + scanner_.BytesLeft() % 2;
  if (CountNodes(header_) <= most) return;
  std::uint64_t found = 0;
  while (!scanner_.NextWord().empty()) ++found;
  FailTooFew(found);
}

void AsciiGridReader::FailTooFew(std::uint64_t found) const {
  scanner_.Fail("expected " + Describe(header_) + ", found only " + std::to_string(found));
}

void AsciiGridReader::ReadRows(LatticeRowSink& sink) {
  scanner_.Return(values_);
  std::vector<double> row(header_.columns);
  std::uint64_t found = 0;
  for (unsigned y = header_.rows; y-- > 0;) {
    for (double& value : row) {
      const std::string_view word = scanner_.NextWord();
      if (word.empty()) FailTooFew(found);
      scanner_.CheckNumber(ParseNumber(word, value), "a number");
      ++found;
    }
    sink.TakeRow(y, 0, row.data());
  }
  if (!scanner_.NextWord().empty()) {
    scanner_.FailExpected("the end of the file after " + Describe(header_));
  }
}

}  // namespace trovan::filters
