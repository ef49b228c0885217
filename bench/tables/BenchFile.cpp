#include "BenchFile.h"

#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <system_error>
#include <vector>

namespace trovan::bench {
namespace {

namespace fs = std::filesystem;

fs::path MakeFolder() {
  std::string name = (fs::temp_directory_path() / "trovan-bench-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("cannot make a folder: " + name);
  return name;
}

}  // namespace

BenchFile::BenchFile(const std::string& name, const std::function<void(const fs::path&)>& write)
    : folder_(MakeFolder()), path_((folder_ / name).string()) {
  write(path_);
  std::vector<char> block(1 << 20);
  std::ifstream file(path_, std::ios::binary);
  while (file.read(block.data(), static_cast<std::streamsize>(block.size()))) {
  }
}

BenchFile::~BenchFile() {
  std::error_code ignored;
  fs::remove_all(folder_, ignored);
}

}  // namespace trovan::bench
