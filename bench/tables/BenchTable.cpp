#include "BenchTable.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <numeric>
#include <random>

#include "BenchFile.h"
#include "SampleTable.h"

namespace trovan::bench {
namespace {

// 150 MB of records: far more than the caches of a processor, far less than the memory of a
// machine.
constexpr std::uint32_t kRecords = 1'000'000;

}  // namespace

const std::string& BenchTablePath() {
  static const BenchFile table("places.dbf", [](const std::filesystem::path& path) {
    WriteSampleTable(path, BenchTableRecords(), SampleMemos::kNone);
  });
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
