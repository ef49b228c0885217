// Real lattice files of other programs, with what is known about them. Tests skip where they are
// missing.
#pragma once

#include <filesystem>
#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <corvel/Path.h>

#include "support/TempFolder.h"

namespace trovan::test {

class RealLattices : public testing::Test {
 protected:
  void SetUp() override {
    if (std::filesystem::exists(Folder() / "lattice" / "expected.json")) return;
    GTEST_SKIP() << "no lattices in " << Folder()
                 << ": set the CMake variable TROVAN_TEST_DATA to a folder that has them.";
  }

  static std::filesystem::path Folder() { return TROVAN_TEST_DATA; }

  // `name` counts from the folder, as the names of Expected do.
  static std::wstring Path(const std::string& name) {
    return corvel::PathFromSystem((Folder() / name).string());
  }

  // What is known of each file, by its name.
  static nlohmann::ordered_json Expected() {
    return nlohmann::ordered_json::parse(ReadBytes(Folder() / "lattice" / "expected.json"));
  }
};

}  // namespace trovan::test
