// Reads every record of the table with shapelib's DBFReadTuple: the bytes of a record, as
// CDBFReader delivers them.
#include <cstdint>
#include <shapefil.h>
#include <vector>

#include <benchmark/benchmark.h>

#include "BenchTable.h"
#include "SampleTable.h"

namespace trovan::bench {
namespace {

// DBFReadTuple hands out its own buffer, so that nothing is copied for the caller.
void BM_DBFReadTuple(benchmark::State& state, ReadingOrder order) {
  const std::string& path = BenchTablePath();
  const std::vector<std::uint32_t> indices = RecordsInOrder(order);
  for (auto _ : state) {
    const DBFHandle table = DBFOpen(path.c_str(), "rb");
    if (table == nullptr) {
      state.SkipWithError("cannot open");
      break;
    }
    for (const std::uint32_t index : indices) {
      const char* record = DBFReadTuple(table, static_cast<int>(index));
      if (record == nullptr) {
        state.SkipWithError("cannot read a record");
        break;
      }
      benchmark::DoNotOptimize(record);
    }
    DBFClose(table);
  }
  const std::int64_t records = state.iterations() * static_cast<std::int64_t>(indices.size());
  state.SetItemsProcessed(records);
  state.SetBytesProcessed(records * std::int64_t{kSampleRecordLength});
}
BENCHMARK_CAPTURE(BM_DBFReadTuple, sequential, kSequential)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_DBFReadTuple, backward, kBackward)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_DBFReadTuple, every_tenth, kEveryTenth)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_DBFReadTuple, random, kRandom)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace trovan::bench
