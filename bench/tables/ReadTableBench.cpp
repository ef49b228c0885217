// Reads every record of a table with CDBFReader, and the bytes of the file with nothing but the
// system's read(): the physical limit, since each record has to cross that call.
#include <cstdint>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include <benchmark/benchmark.h>

#include <corvel/Text.h>
#include <trovan/DBFReader.h>

#include "BenchTable.h"
#include "SampleTable.h"

namespace trovan::bench {
namespace {

void CountRecords(benchmark::State& state, std::size_t perIteration) {
  const std::int64_t records = state.iterations() * static_cast<std::int64_t>(perIteration);
  state.SetItemsProcessed(records);
  state.SetBytesProcessed(records * std::int64_t{kSampleRecordLength});
}

// The whole file in blocks of 64 KiB: opening it is part of the work, as it is for the readers.
void BM_RawRead(benchmark::State& state) {
  constexpr std::size_t kBlock = 64 * 1024;
  const std::string& path = BenchTablePath();
  std::vector<char> block(kBlock);
  for (auto _ : state) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    ssize_t got = 0;
    do {
      got = read(file, block.data(), block.size());
      benchmark::DoNotOptimize(block.data());
    } while (got > 0);
    close(file);
    if (file < 0 || got < 0) state.SkipWithError("cannot read the table");
  }
  CountRecords(state, BenchTableRecords());
}
BENCHMARK(BM_RawRead)->Unit(benchmark::kMillisecond);

void BM_EnumRecord(benchmark::State& state, ReadingOrder order) {
  const std::wstring path = corvel::WideFromUtf8(BenchTablePath());
  const std::vector<std::uint32_t> indices = RecordsInOrder(order);
  std::vector<unsigned char> record(kSampleRecordLength);
  for (auto _ : state) {
    CDBFReader reader;
    if (reader.OpenFromFile(path) != CDBFReader::DBF_OK) state.SkipWithError("cannot open");
    for (const std::uint32_t index : indices) {
      if (reader.EnumRecord(index, record.data(), kSampleRecordLength) != CDBFReader::DBF_OK) {
        state.SkipWithError("cannot read a record");
        break;
      }
      benchmark::DoNotOptimize(record.data());
    }
  }
  CountRecords(state, indices.size());
}
BENCHMARK_CAPTURE(BM_EnumRecord, sequential, kSequential)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_EnumRecord, backward, kBackward)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_EnumRecord, every_tenth, kEveryTenth)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_EnumRecord, random, kRandom)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace trovan::bench
