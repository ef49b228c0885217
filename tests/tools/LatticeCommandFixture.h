// Small lattices as files, a folder for temporary ones, and the command between them.
#pragma once

#include <cctype>
#include <cstring>
#include <filesystem>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Process.h"
#include "support/Environment.h"
#include "support/TempFolder.h"

namespace trovan::test {

class LatticeCommandFixture : public testing::Test {
 protected:
  std::filesystem::path Folder() const { return folder_.Path(); }
  std::string Path(const std::string& name) const { return (folder_.Path() / name).string(); }
  std::string Bytes(const std::string& name) const { return ReadBytes(folder_.Path() / name); }

  // Makes a file and gives its path as an argument.
  std::string Save(const std::string& name, const std::string& bytes) const {
    WriteBytes(folder_.Path() / name, bytes);
    return Path(name);
  }

  // Three columns and two rows, one node of them void.
  std::string SaveGrid() const {
    return Save("grid.asc",
                "ncols 3\nnrows 2\nxllcorner 9.5\nyllcorner 19.5\ncellsize 1\n"
                "NODATA_value -1\n1 2 3\n4 -1 6.5\n");
  }

  // An ENVI raster of floats, one row, whose values are given.
  std::string SaveFloats(const std::string& name, const std::vector<float>& values) const {
    Save(name + ".hdr", EnviHeader(values.size(), 1, 4));
    std::string bytes(values.size() * sizeof(float), '\0');
    std::memcpy(bytes.data(), values.data(), bytes.size());
    return Save(name + ".img", bytes);
  }

  static std::string EnviHeader(std::size_t samples, std::size_t lines, int type,
                                std::size_t bands = 1) {
    return "ENVI\nsamples = " + std::to_string(samples) + "\nlines = " + std::to_string(lines) +
           "\nbands = " + std::to_string(bands) + "\ndata type = " + std::to_string(type) +
           "\ninterleave = bsq\nbyte order = 0\n";
  }

  // A raster of bytes that is a hole of the file.
  std::string SaveLarge(const std::string& name, std::size_t samples, std::size_t lines) const {
    Save(name + ".hdr", EnviHeader(samples, lines, 1));
    Save(name + ".img", "");
    std::filesystem::resize_file(folder_.Path() / (name + ".img"), samples * lines);
    return Path(name + ".img");
  }

  std::set<std::string> Files() const { return FilesIn(folder_.Path()); }
  std::set<std::string> TempFiles() const { return FilesIn(temporary_.Path()); }

  static Outcome Run(const std::vector<std::string>& arguments) {
    std::vector<std::string> all = {"lattice"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return RunTrovan(all);
  }

  // The nodes of a lattice as text: the lines of an ESRI ASCII grid below its header.
  std::string NodesOf(const std::string& path) const {
    const Outcome outcome = Run({"convert", path, Path("nodes.asc")});
    EXPECT_EQ(outcome.code, 0) << outcome.errors;
    std::string lines;
    std::istringstream text(Bytes("nodes.asc"));
    for (std::string line; std::getline(text, line);) {
      const bool isHeader = !line.empty() && std::isalpha(static_cast<unsigned char>(line[0])) != 0;
      if (!isHeader) lines += line + '\n';
    }
    std::filesystem::remove(folder_.Path() / "nodes.asc");
    return lines;
  }

 private:
  static std::set<std::string> FilesIn(const std::filesystem::path& folder) {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      names.insert(entry.path().filename().string());
    }
    return names;
  }

  TempFolder folder_;
  TempFolder temporary_;
  ScopedVariable variable_{"TMPDIR", temporary_.Path().c_str()};
};

}  // namespace trovan::test
