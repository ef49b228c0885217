// What readers and writers of lattices do when something goes wrong.
#pragma once

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <set>
#include <stdexcept>
#include <string>

#include "filters/lattice/LatticeWriter.h"
#include "filters/support/FilterError.h"

namespace trovan::test {

// The message of the FilterError that `action` raises.
template <typename Action>
std::string FilterErrorOf(Action&& action) {
  try {
    action();
  } catch (const filters::FilterError& error) {
    return error.what();
  }
  return "nothing was raised";
}

// The names of all files in a folder.
inline std::set<std::string> FilesIn(const std::filesystem::path& folder) {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    names.insert(entry.path().filename().string());
  }
  return names;
}

// Rows of zeros, until it raises instead of giving a row.
class FailingSource : public filters::LatticeRowSource {
 public:
  FailingSource(const filters::LatticeHeader& header, unsigned rowsBefore)
      : header_(header), rowsLeft_(rowsBefore) {}

  void GiveRow(unsigned, unsigned, void* nodes) override { Give(nodes, filters::RowSize(header_)); }
  void GiveCoordinateRow(unsigned, unsigned, void* coordinates) override {
    Give(coordinates, filters::CoordinateRowSize(header_));
  }

 private:
  void Give(void* bytes, std::size_t count) {
    if (rowsLeft_ == 0) throw std::runtime_error("cancelled");
    --rowsLeft_;
    std::fill_n(static_cast<unsigned char*>(bytes), count, static_cast<unsigned char>(0));
  }

  filters::LatticeHeader header_;
  unsigned rowsLeft_;
};

}  // namespace trovan::test
