// A resequencer whose temporary files lie in a folder of the test's own.
#pragma once

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <corvel/Exception.h>
#include <trovan/Sequence.h>

#include "support/Environment.h"
#include "support/TempFolder.h"

namespace trovan::test {

// What Start takes.
struct Sizes {
  LatticeResequencer::LatticeType type = LatticeResequencer::Uniform;
  unsigned xdim = 1;
  unsigned ydim = 1;
  unsigned zdim = 1;
  unsigned components = 1;
  unsigned coordSize = 0;
  unsigned dataSize = 1;
  bool coordFile = false;
  bool dataFile = true;
};

inline void Start(LatticeResequencer& lattice, const Sizes& sizes) {
  lattice.Start(sizes.type, sizes.xdim, sizes.ydim, sizes.zdim, sizes.components, sizes.coordSize,
                sizes.dataSize, sizes.coordFile, sizes.dataFile);
}

// The message of the resequencer's own error that `work` raises; "" when it raises none.
template <typename Work>
std::string RaisedBy(Work work) {
  try {
    work();
  } catch (const corvel::Exception& error) {
    if (error.Module() != "Trovan.dll" || error.File() != "Sequence" || error.Line() <= 0) {
      return "from elsewhere: " + std::string(error.what());
    }
    return error.Message();
  }
  return "";
}

// What the file class raises, which tells the file and the reason; "" when it raises nothing.
template <typename Work>
std::string FileErrorOf(Work work) {
  try {
    work();
  } catch (const corvel::Exception& error) {
    EXPECT_EQ(error.File(), "BufferedFile");
    return error.Message();
  }
  return "";
}

inline std::string Numbered(unsigned count, unsigned char first) {
  std::string bytes(count, '\0');
  for (unsigned i = 0; i < count; ++i) bytes[i] = static_cast<char>(first + i);
  return bytes;
}

class ResequencerTest : public testing::Test {
 protected:
  void Start(const Sizes& sizes) { test::Start(lattice_, sizes); }

  // The names of the temporary files that there are, sorted.
  std::vector<std::string> TempFiles() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.Path())) {
      names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  // The bytes of the only temporary file whose name begins so.
  std::string FileBytes(const std::string& prefix) const {
    std::string found;
    for (const std::string& name : TempFiles()) {
      if (name.rfind(prefix, 0) != 0) continue;
      EXPECT_EQ(found, "") << "there are several";
      found = name;
    }
    EXPECT_NE(found, "") << "there is none";
    return found.empty() ? "" : ReadBytes(folder_.Path() / found);
  }
  std::string DataFile() const { return FileBytes("QVD"); }
  std::string CoordFile() const { return FileBytes("QVC"); }

  std::string ReadRow(unsigned y, unsigned z) {
    std::string row(lattice_.GetDataScanlineSize(), '?');
    lattice_.ReadRowOfMultiComponentData(y, z, row.data());
    return row;
  }
  std::string ReadCoordRow(unsigned y, unsigned z) {
    std::string row(lattice_.GetCurviCoordScanlineSize(), '?');
    lattice_.ReadRowOfXYZ(y, z, row.data());
    return row;
  }

  TempFolder folder_;
  ScopedVariable temp_{"TMPDIR", folder_.Path().c_str()};
  LatticeResequencer lattice_;
};

}  // namespace trovan::test
