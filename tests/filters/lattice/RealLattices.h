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

// A fixture on the real files; `Base` is the one that a test needs besides.
template <typename Base>
class RealLatticesOn : public Base {
 protected:
  void SetUp() override {
    if (std::filesystem::exists(DataFolder() / "lattice" / "expected.json")) return;
    GTEST_SKIP() << "no lattices in " << DataFolder()
                 << ": set the CMake variable TROVAN_TEST_DATA to a folder that has them.";
  }

  static std::filesystem::path DataFolder() { return TROVAN_TEST_DATA; }

  // `name` counts from the folder, as the names of Expected do.
  static std::wstring Path(const std::string& name) {
    return corvel::PathFromSystem((DataFolder() / name).string());
  }

  // What is known of each file, by its name.
  static nlohmann::ordered_json Expected() {
    return nlohmann::ordered_json::parse(ReadBytes(DataFolder() / "lattice" / "expected.json"));
  }
};

using RealLattices = RealLatticesOn<testing::Test>;

}  // namespace trovan::test
