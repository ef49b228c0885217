// Any bytes as a VTK legacy file: an error, or a lattice that comes back after it was written.
#include <cstdint>
#include <exception>
#include <filesystem>
#include <string>

#include <corvel/Exception.h>

#include "Require.h"
#include "SameNumbers.h"
#include "filters/lattice/MemoryLattice.h"
#include "filters/lattice/VtkReader.h"
#include "filters/lattice/VtkWriter.h"
#include "filters/support/FilterError.h"
#include "support/TempFolder.h"

namespace {

using trovan::LatticeResequencer;
using trovan::filters::LatticeHeader;
using trovan::filters::LatticeWriteOptions;
using trovan::filters::RowOrder;
using trovan::filters::VtkReader;
using trovan::filters::VtkWriter;
using trovan::fuzz::AreSameNumbers;
using trovan::fuzz::Require;
using trovan::test::MemoryLattice;

MemoryLattice Read(const std::wstring& path) {
  VtkReader reader(path, "");
  const LatticeHeader& header = reader.Header();
  MemoryLattice lattice(header);
  reader.ReadRows(lattice);
  const std::size_t rows = std::size_t{header.rows} * header.planes;
  Require(lattice.RowsTaken() == rows, "not all rows came");
  if (header.type == LatticeResequencer::Curvilinear) {
    Require(lattice.CoordinateRowsTaken() == rows, "not all coordinates came");
  }
  return lattice;
}

// The length of the input chooses, so that every kind of file is written in every form. What tells
// the order of rows is y, which structured grids have for nodes only.
LatticeWriteOptions OptionsFor(const LatticeHeader& header, std::size_t size) {
  LatticeWriteOptions options;
  options.asText = size % 2 != 0;
  if (size % 4 >= 2 && header.type != LatticeResequencer::Curvilinear) {
    options.rowOrder = RowOrder::kTopDown;
  }
  return options;
}

bool CanWrite(const VtkWriter& writer, const LatticeHeader& header) {
  try {
    writer.Check(header);
    return true;
  } catch (const trovan::filters::FilterError&) {
    return false;  // such as y that does not ascend, and no place for the order of the rows
  }
}

void RequireSame(const MemoryLattice& a, const MemoryLattice& b) {
  const LatticeHeader& header = b.Header();
  Require(a.Header().type == header.type, "another type");
  Require(a.Header().dataType == header.dataType, "another type of elements");
  Require(a.Header().components == header.components, "another number of components");
  Require(AreSameNumbers(header.dataType, a.Nodes(), b.Nodes()), "other values");
  Require(AreSameNumbers(header.coordType, a.Coordinates(), b.Coordinates()), "other coordinates");
  for (std::size_t i = 0; i < header.axes.size(); ++i) {
    Require(AreSameNumbers(header.coordType, a.Header().axes[i], header.axes[i]), "another axis");
  }
  Require(header.type != LatticeResequencer::Uniform ||
              (a.Header().origin.x == header.origin.x && a.Header().spacing.y == header.spacing.y),
          "another position");
}

void WriteAndReadBack(MemoryLattice& lattice, std::size_t size, const std::wstring& path) {
  VtkWriter writer(path, OptionsFor(lattice.Header(), size));
  if (!CanWrite(writer, lattice.Header())) return;
  writer.Write(lattice.Header(), lattice);
  RequireSame(Read(path), lattice);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const trovan::test::TempFolder folder;
  trovan::test::WriteBytes(folder.Path() / "in.vtk", std::string(data, data + size));
  try {
    MemoryLattice lattice = Read(folder.File(L"in.vtk"));
    try {
      WriteAndReadBack(lattice, size, folder.File(L"out.vtk"));
    } catch (const std::exception& error) {
      Require(false, error.what());
    }
  } catch (const trovan::filters::FilterError&) {  // NOLINT(bugprone-empty-catch): as it must be
  } catch (const corvel::Exception&) {             // NOLINT(bugprone-empty-catch): as it must be
  }
  return 0;
}
