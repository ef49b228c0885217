// Files that other programs wrote, with what was worked out about them by other means. They lie in
// the folder that the build names as TROVAN_TEST_DATA, outside the project.
#pragma once

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace trovan::test {

inline std::filesystem::path DataFolder() { return TROVAN_TEST_DATA; }

// What the file of expected values of one part of the folder says, by the names of the files;
// nothing if it is not there.
inline nlohmann::json Expectations(const char* part) {
  const std::filesystem::path path = DataFolder() / part / "expected.json";
  if (!std::filesystem::exists(path)) return nlohmann::json::object();
  return nlohmann::json::parse(std::ifstream(path));
}

// Stands for all files where there are none, so that a test is there to be seen skipping.
inline constexpr const char* kNoData = "no data";

inline std::vector<std::string> Keys(const nlohmann::json& expected) {
  std::vector<std::string> keys;
  for (const auto& item : expected.items()) keys.push_back(item.key());
  if (keys.empty()) keys.emplace_back(kNoData);
  return keys;
}

inline std::string TestName(const testing::TestParamInfo<std::string>& info) {
  std::string name = info.param;
  std::replace_if(
      name.begin(), name.end(),
      [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; }, '_');
  return name;
}

// A test for each file, by its name.
class RealFileTest : public testing::TestWithParam<std::string> {
 protected:
  void SetUp() override {
    if (GetParam() != kNoData) return;
    GTEST_SKIP() << "There are no files in " << DataFolder()
                 << ": set the CMake variable TROVAN_TEST_DATA to a folder that has them.";
  }
};

}  // namespace trovan::test
