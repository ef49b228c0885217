// Reads every feature of the table with GDAL/OGR. This is more work than the bytes of a record: OGR
// makes a value of each field. It shows what a program pays that goes this way.
#include <cstdint>
#include <ogr_api.h>

#include <benchmark/benchmark.h>

#include "BenchTable.h"
#include "SampleTable.h"

namespace trovan::bench {
namespace {

void BM_OgrFeatures(benchmark::State& state) {
  const std::string& path = BenchTablePath();
  OGRRegisterAll();
  for (auto _ : state) {
    const OGRDataSourceH source = OGROpen(path.c_str(), FALSE, nullptr);
    if (source == nullptr) {
      state.SkipWithError("cannot open");
      break;
    }
    const OGRLayerH layer = OGR_DS_GetLayer(source, 0);
    std::uint32_t count = 0;
    while (const OGRFeatureH feature = OGR_L_GetNextFeature(layer)) {
      benchmark::DoNotOptimize(feature);
      OGR_F_Destroy(feature);
      ++count;
    }
    OGR_DS_Destroy(source);
    if (count != BenchTableRecords()) state.SkipWithError("cannot read all features");
  }
  const std::int64_t records = state.iterations() * std::int64_t{BenchTableRecords()};
  state.SetItemsProcessed(records);
  state.SetBytesProcessed(records * std::int64_t{kSampleRecordLength});
}
// One pass each time takes longer than all the others together: three are enough.
BENCHMARK(BM_OgrFeatures)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(3);

}  // namespace
}  // namespace trovan::bench
