// Splits delimited text into tokens: CFileTokenizer, and the C library's strtok and strtod on the
// lines that std::getline gives. The limit is reading the bytes and looking at each.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

#include <benchmark/benchmark.h>

#include <corvel/BufferedFile.h>
#include <corvel/Text.h>
#include <trovan/FileTokenizer.h>

#include "BenchText.h"

namespace trovan::bench {
namespace {

using corvel::CBufferedFile;

void CountBytes(benchmark::State& state) {
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                          static_cast<std::int64_t>(BenchTextBytes()));
}

void Open(CBufferedFile& file, const std::string& path) {
  file.Open(corvel::WideFromUtf8(path), "rb", corvel::kFileShareRead, false);
}

// The system's copy of the bytes and nothing else: what no tokenizer can do without.
void BM_ReadText(benchmark::State& state) {
  const std::string& path = BenchTextPath();
  std::string block(std::size_t{64} * 1024, '\0');
  for (auto _ : state) {
    CBufferedFile file;
    Open(file, path);
    while (file.Read(block.data(), block.size()) > 0) benchmark::DoNotOptimize(block.data());
  }
  CountBytes(state);
}
BENCHMARK(BM_ReadText)->Unit(benchmark::kMillisecond);

void BM_ParseText(benchmark::State& state, bool useQuotes) {
  const std::string& path = BenchTextPath();
  for (auto _ : state) {
    CBufferedFile file;
    Open(file, path);
    CFileTokenizer tokens(&file);
    std::string token;
    while (tokens.Parse(token, useQuotes) != CFileTokenizer::TOKEN_EOF) {
      benchmark::DoNotOptimize(token.data());
    }
  }
  CountBytes(state);
}
BENCHMARK_CAPTURE(BM_ParseText, plain, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ParseText, quotes, true)->Unit(benchmark::kMillisecond);

// Splits each line at the characters that the tokenizer takes for white space and delimiters, and
// at the carriage return if the file has some. Gives the tokens to `use`.
template <typename Use>
void SplitLines(const std::string& path, const char* between, const Use& use) {
  std::ifstream file(path, std::ios::binary);
  std::string line;
  while (std::getline(file, line)) {
    for (char* token = std::strtok(line.data(), between); token != nullptr;
         token = std::strtok(nullptr, between)) {
      use(token);
    }
  }
}

void BM_GetlineStrtok(benchmark::State& state) {
  const std::string& path = BenchTextPath();
  for (auto _ : state) {
    SplitLines(path, ", \t", [](char* token) { benchmark::DoNotOptimize(token); });
  }
  CountBytes(state);
}
BENCHMARK(BM_GetlineStrtok)->Unit(benchmark::kMillisecond);

void BM_ParseNumbers(benchmark::State& state, const std::string& (*pathOf)()) {
  const std::string& path = pathOf();
  for (auto _ : state) {
    CBufferedFile file;
    Open(file, path);
    CFileTokenizer tokens(&file);
    double number = 0.0;
    while (tokens.Parse(number) != CFileTokenizer::TOKEN_EOF) benchmark::DoNotOptimize(number);
  }
  CountBytes(state);
}
BENCHMARK_CAPTURE(BM_ParseNumbers, commas, BenchNumbersPath)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ParseNumbers, blanks, BenchColumnsPath)->Unit(benchmark::kMillisecond);

void BM_GetlineStrtokStrtod(benchmark::State& state, const std::string& (*pathOf)(),
                            const char* between) {
  const std::string& path = pathOf();
  for (auto _ : state) {
    SplitLines(path, between, [](char* token) {
      double number = std::strtod(token, nullptr);
      benchmark::DoNotOptimize(number);
    });
  }
  CountBytes(state);
}
BENCHMARK_CAPTURE(BM_GetlineStrtokStrtod, commas, BenchNumbersPath, ", \t")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_GetlineStrtokStrtod, blanks, BenchColumnsPath, ", \t\r")
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace trovan::bench
