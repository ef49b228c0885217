// Any bytes as an ESRI ASCII grid: an error, or numbers that come back after they were written.
#include <cmath>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <string>

#include <corvel/Exception.h>

#include "Require.h"
#include "SameNumbers.h"
#include "filters/lattice/AsciiGridReader.h"
#include "filters/lattice/AsciiGridWriter.h"
#include "filters/lattice/MemoryLattice.h"
#include "filters/support/FilterError.h"
#include "support/TempFolder.h"

namespace {

using trovan::filters::AsciiGridReader;
using trovan::filters::LatticeHeader;
using trovan::fuzz::Require;
using trovan::test::MemoryLattice;

MemoryLattice Read(const std::wstring& path) {
  AsciiGridReader reader(path);
  MemoryLattice lattice(reader.Header());
  reader.ReadRows(lattice);
  Require(lattice.RowsTaken() == reader.Header().rows, "not all rows came");
  return lattice;
}

bool AreSame(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

void RequireSame(const LatticeHeader& a, const LatticeHeader& b) {
  Require(a.columns == b.columns && a.rows == b.rows, "another size");
  Require(a.origin.x == b.origin.x && a.origin.y == b.origin.y, "another position");
  Require(a.spacing.x == b.spacing.x && a.spacing.y == b.spacing.y, "another step");
  Require(a.voidValue.has_value() == b.voidValue.has_value(), "another void value");
  Require(!a.voidValue || AreSame(*a.voidValue, *b.voidValue), "another void value");
}

void WriteAndReadBack(MemoryLattice& lattice, const std::wstring& path) {
  trovan::filters::AsciiGridWriter writer(path, {});
  writer.Check(lattice.Header());
  writer.Write(lattice.Header(), lattice);
  const MemoryLattice back = Read(path);
  RequireSame(back.Header(), lattice.Header());
  Require(trovan::fuzz::AreSameNumbers(corvel::kDouble, back.Nodes(), lattice.Nodes()),
          "other numbers");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const trovan::test::TempFolder folder;
  trovan::test::WriteBytes(folder.Path() / "in.asc", std::string(data, data + size));
  try {
    MemoryLattice lattice = Read(folder.File(L"in.asc"));
    try {
      WriteAndReadBack(lattice, folder.File(L"out.asc"));
    } catch (const std::exception& error) {
      Require(false, error.what());
    }
  } catch (const trovan::filters::FilterError&) {  // NOLINT(bugprone-empty-catch): as it must be
  } catch (const corvel::Exception&) {             // NOLINT(bugprone-empty-catch): as it must be
  }
  return 0;
}
