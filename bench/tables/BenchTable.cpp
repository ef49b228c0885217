#include "BenchTable.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <numeric>
#include <random>
#include <stdexcept>
#include <unistd.h>

#include "SampleTable.h"

namespace trovan::bench {
namespace {

namespace fs = std::filesystem;

// 150 MB of records: far more than the caches of a processor, far less than the memory of a
// machine.
constexpr std::uint32_t kRecords = 1'000'000;

class TemporaryTable {
 public:
  TemporaryTable() : folder_(MakeFolder()), path_((folder_ / "places.dbf").string()) {
    WriteSampleTable(path_, BenchTableRecords(), SampleMemos::kNone);
    std::vector<char> block(1 << 20);
    std::ifstream file(path_, std::ios::binary);
    while (file.read(block.data(), static_cast<std::streamsize>(block.size()))) {
    }
  }
  ~TemporaryTable() {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }
  TemporaryTable(const TemporaryTable&) = delete;
  TemporaryTable& operator=(const TemporaryTable&) = delete;

  const std::string& Path() const { return path_; }

 private:
  static fs::path MakeFolder() {
    std::string name = (fs::temp_directory_path() / "trovan-bench-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("cannot make a folder: " + name);
    return name;
  }

  fs::path folder_;
  std::string path_;
};

}  // namespace

const std::string& BenchTablePath() {
  static const TemporaryTable table;
  return table.Path();
}

std::uint32_t BenchTableRecords() {
  const char* asked = std::getenv("TROVAN_BENCH_RECORDS");
  return asked == nullptr ? kRecords : static_cast<std::uint32_t>(std::stoul(asked));
}

std::vector<std::uint32_t> RecordsInOrder(ReadingOrder order) {
  std::vector<std::uint32_t> records(BenchTableRecords());
  std::iota(records.begin(), records.end(), 0U);
  if (order == kBackward) std::reverse(records.begin(), records.end());
  if (order == kEveryTenth) std::erase_if(records, [](std::uint32_t i) { return i % 10 != 0; });
  if (order == kRandom) std::shuffle(records.begin(), records.end(), std::mt19937_64{7});
  return records;
}

}  // namespace trovan::bench
