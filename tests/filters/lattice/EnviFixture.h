// What the tests of rasters share: small lattices, files beside each other, and errors as text.
#pragma once

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <initializer_list>
#include <memory>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "MemoryLattice.h"
#include "filters/support/FilterError.h"
#include "support/Random.h"
#include "support/TempFolder.h"

namespace trovan::filters {

// What the work raises as FilterError; empty when it raises nothing.
template <typename Work>
std::string ErrorOf(Work work) {
  try {
    work();
  } catch (const FilterError& error) {
    return error.what();
  }
  return {};
}

inline LatticeHeader SmallLattice(corvel::PrimType type, unsigned columns, unsigned rows,
                                  unsigned planes = 1, unsigned components = 1) {
  LatticeHeader header;
  header.dataType = type;
  header.columns = columns;
  header.rows = rows;
  header.planes = planes;
  header.components = components;
  return header;
}

// Fills the nodes with bytes that hardly repeat.
inline void FillAtRandom(test::MemoryLattice& lattice, std::mt19937& random) {
  const LatticeHeader& header = lattice.Header();
  std::string row(RowSize(header), '\0');
  for (unsigned z = 0; z < header.planes; ++z) {
    for (unsigned y = 0; y < header.rows; ++y) {
      for (char& byte : row) byte = static_cast<char>(test::Below(random, 256));
      lattice.TakeRow(y, z, row.data());
    }
  }
}

// The values 0, 1, 2 ... in order of columns, rows (the bottom one first), planes, components.
template <typename T>
void FillInOrder(test::MemoryLattice& lattice) {
  const LatticeHeader& header = lattice.Header();
  int value = 0;
  for (unsigned c = 0; c < header.components; ++c) {
    for (unsigned z = 0; z < header.planes; ++z) {
      for (unsigned y = 0; y < header.rows; ++y) {
        for (unsigned x = 0; x < header.columns; ++x) {
          lattice.Set<T>(x, y, z, c, static_cast<T>(value++));
        }
      }
    }
  }
}

// Gives rows of zeros up to the one that fails.
class FailingSource : public LatticeRowSource {
 public:
  FailingSource(std::size_t rowSize, unsigned rows) : rowSize_(rowSize), left_(rows) {}

  void GiveRow(unsigned, unsigned, void* nodes) override {
    if (left_-- == 0) throw std::runtime_error("cancelled");
    std::fill_n(static_cast<char*>(nodes), rowSize_, '\0');
  }
  void GiveCoordinateRow(unsigned, unsigned, void*) override {}

 private:
  std::size_t rowSize_;
  unsigned left_;
};

class RasterTest : public testing::Test {
 protected:
  std::wstring File(const std::wstring& name) const { return folder_.File(name); }
  void Put(const char* name, std::string_view bytes) const {
    test::WriteBytes(folder_.Path() / name, bytes);
  }
  std::string Bytes(const char* name) const { return test::ReadBytes(folder_.Path() / name); }
  std::set<std::string> Names() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.Path())) {
      names.insert(entry.path().filename().string());
    }
    return names;
  }
  std::filesystem::path Folder() const { return folder_.Path(); }

 private:
  test::TempFolder folder_;
};

}  // namespace trovan::filters
