// Small text files, and the command on them.
#pragma once

#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Process.h"
#include "support/TempFolder.h"

namespace trovan::test {

class TextCommandFixture : public testing::Test {
 protected:
  std::string Path(const std::string& name) const { return (folder_.Path() / name).string(); }
  std::string Bytes(const std::string& name) const { return ReadBytes(folder_.Path() / name); }

  // Makes a file and gives its path as an argument.
  std::string Save(const std::string& name, const std::string& bytes) const {
    WriteBytes(folder_.Path() / name, bytes);
    return Path(name);
  }

  std::set<std::string> Files() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.Path())) {
      names.insert(entry.path().filename().string());
    }
    return names;
  }

  // Rows of 36 bytes below the names of three columns.
  static std::string ManyRows(std::size_t count) {
    std::string text = "name,x,y\n";
    for (std::size_t i = 0; i < count; ++i) text += "a town of some name,1234.5678,-0.25\n";
    return text;
  }

  static Outcome Columns(const std::vector<std::string>& arguments,
                         const std::string& outputFile = "") {
    std::vector<std::string> all = {"text", "columns"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return RunTrovan(all, outputFile);
  }

  TempFolder folder_;
};

}  // namespace trovan::test
