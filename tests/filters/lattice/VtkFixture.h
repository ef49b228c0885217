// Small VTK files for tests, read whole.
#pragma once

#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "LatticeErrors.h"
#include "MemoryLattice.h"
#include "filters/lattice/VtkReader.h"
#include "support/TempFolder.h"

namespace trovan::filters {

inline const std::string kStart = "# vtk DataFile Version 3.0\na title\nASCII\n";
inline const std::string kBinaryStart = "# vtk DataFile Version 3.0\na title\nBINARY\n";
inline const std::string kPoints =
    "DATASET STRUCTURED_POINTS\nDIMENSIONS 2 3 1\nORIGIN 10 20 30\nSPACING 1 2 4\n";
inline const std::string kScalars =
    "POINT_DATA 6\nSCALARS height float\nLOOKUP_TABLE default\n1 2\n3 4\n5 6\n";
inline const std::string kOneNode =
    "DATASET STRUCTURED_POINTS\nDIMENSIONS 1 1 1\nORIGIN 0 0 0\n"
    "SPACING 1 1 1\nPOINT_DATA 1\n";

class VtkFixture : public testing::Test {
 protected:
  std::wstring File(const std::string& text) const {
    test::WriteBytes(folder_.Path() / "in.vtk", text);
    return folder_.File(L"in.vtk");
  }
  LatticeHeader Header(const std::string& text, const std::string& array = {}) const {
    return VtkReader(File(text), array).Header();
  }
  test::MemoryLattice Read(const std::string& text, const std::string& array = {}) const {
    VtkReader reader(File(text), array);
    test::MemoryLattice lattice(reader.Header());
    reader.ReadRows(lattice);
    const LatticeHeader& header = reader.Header();
    const std::size_t rows = std::size_t{header.rows} * header.planes;
    EXPECT_EQ(lattice.RowsTaken(), rows);
    EXPECT_EQ(lattice.CoordinateRowsTaken(),
              header.type == LatticeResequencer::Curvilinear ? rows : 0);
    return lattice;
  }
  std::string Error(const std::string& text, const std::string& array = {}) const {
    return test::FilterErrorOf([&] { Read(text, array); });
  }

  // All elements, bottom row first.
  template <typename T>
  static std::vector<T> Elements(const std::vector<unsigned char>& bytes) {
    std::vector<T> elements(bytes.size() / sizeof(T));
    std::memcpy(elements.data(), bytes.data(), bytes.size());
    return elements;
  }
  template <typename T>
  static std::vector<T> Values(const test::MemoryLattice& lattice) {
    return Elements<T>(lattice.Nodes());
  }

  test::TempFolder folder_;
};

}  // namespace trovan::filters
