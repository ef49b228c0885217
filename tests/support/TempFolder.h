// Real files for tests.
//
//   TempFolder folder;
//   WriteBytes(folder.Path() / "towns.cpg", "1252");
//   file.Open(folder.File(L"towns.cpg"), "rb", kFileShareRead, false);
#pragma once

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <ios>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace trovan::test {

// A folder of its own for one test, new and empty. It goes away with all that is in it.
class TempFolder {
 public:
  TempFolder() : path_(Create()) {}
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  std::filesystem::path Path() const { return path_; }

  // The path of `name` in the folder as the libraries take it. Makes no file.
  std::wstring File(const std::wstring& name) const { return path_.wstring() + L"/" + name; }

 private:
  static std::filesystem::path Create() {
    // Not a fixed seed: programs that run at the same time must not meet.
    std::random_device random;
    const std::filesystem::path parent = std::filesystem::temp_directory_path();
    for (int attempt = 0; attempt < 100; ++attempt) {
      std::filesystem::path folder = parent / ("trovan-test-" + std::to_string(random()));
      if (std::filesystem::create_directory(folder)) return folder;
    }
    throw std::runtime_error("no folder for temporary files could be made");
  }

  std::filesystem::path path_;
};

// Makes or replaces a file. Raises when the system refuses.
inline void WriteBytes(const std::filesystem::path& path, std::string_view bytes) {
  std::ofstream file;
  file.exceptions(std::ios::badbit | std::ios::failbit);
  file.open(path, std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
}

// All bytes of a file. Raises when the system refuses.
inline std::string ReadBytes(const std::filesystem::path& path) {
  std::ifstream file;
  file.exceptions(std::ios::badbit | std::ios::failbit);
  file.open(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace trovan::test
