// A file for benchmarks that lies in the page cache and is gone when its object is.
#pragma once

#include <filesystem>
#include <functional>
#include <string>

namespace trovan::bench {

class BenchFile {
 public:
  // Calls `write` to make the file `name` in a folder of its own below TMPDIR, and reads it once.
  BenchFile(const std::string& name,
            const std::function<void(const std::filesystem::path& path)>& write);
  ~BenchFile();
  BenchFile(const BenchFile&) = delete;
  BenchFile& operator=(const BenchFile&) = delete;

  const std::string& Path() const { return path_; }

 private:
  std::filesystem::path folder_;
  std::string path_;
};

}  // namespace trovan::bench
