// The same text through libcsv, which hands each field to a callback.
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>

#include <csv.h>
#include <benchmark/benchmark.h>

#include "BenchText.h"

namespace trovan::bench {
namespace {

void UseField(void* field, std::size_t, void*) { benchmark::DoNotOptimize(field); }
void EndRow(int, void*) {}

void BM_Libcsv(benchmark::State& state) {
  const std::string& path = BenchTextPath();
  std::string block(std::size_t{64} * 1024, '\0');
  for (auto _ : state) {
    std::ifstream file(path, std::ios::binary);
    csv_parser parser;
    if (csv_init(&parser, 0) != 0) state.SkipWithError("cannot start libcsv");
    while (file.read(block.data(), static_cast<std::streamsize>(block.size())), file.gcount() > 0) {
      const auto got = static_cast<std::size_t>(file.gcount());
      if (csv_parse(&parser, block.data(), got, UseField, EndRow, nullptr) != got) {
        state.SkipWithError("libcsv stopped");
        break;
      }
    }
    csv_fini(&parser, UseField, EndRow, nullptr);
    csv_free(&parser);
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                          static_cast<std::int64_t>(BenchTextBytes()));
}
BENCHMARK(BM_Libcsv)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace trovan::bench
