// The functions that pass over large arrays, and the limit: one pass over the same memory that only
// reads, or that reads and writes.
//
// 100 million nodes (TROVAN_BENCH_NODES changes that), doubles or floats in one allocation: what
// lies there is changed, when the next benchmark needs other nodes, outside of what is measured.
//
// Arrays with bad nodes have one in 16, at places without a pattern. Their replacement is bad
// again, so that every pass finds and writes the same nodes.
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>

#include <benchmark/benchmark.h>

#include <trovan/InvalidNodes.h>
#include <trovan/TypedArrays.h>

namespace trovan::bench {
namespace {

std::size_t NodeCount() {
  static const std::size_t count = [] {
    const char* const text = std::getenv("TROVAN_BENCH_NODES");
    const unsigned long long given = text == nullptr ? 100'000'000 : std::stoull(text);
    if (given < 2) throw std::invalid_argument("TROVAN_BENCH_NODES must be 2 at least");
    return static_cast<std::size_t>(given);
  }();
  return count;
}

constexpr double kInvalid = std::numeric_limits<double>::quiet_NaN();
constexpr double kTooLow = -1.0;
// Clean nodes are 0, 1, 2, ...
constexpr double kLowest = 0.0;
constexpr double kHighest = 1e18;
// Floats that large cannot all be whole numbers: steps of 0 and 8 stand for steps of 1.
constexpr double kTolerance = 1e6;

template <typename T>
constexpr corvel::PrimType kTypeOf = sizeof(T) == sizeof(double) ? corvel::kDouble : corvel::kFloat;

enum class Nodes { kClean, kWithInvalid, kWithTooLow };

// One of 16 numbers, without a pattern that a processor could learn (the finalizer of Steele, Lea
// and Flood, "Fast splittable pseudorandom number generators").
bool IsBad(std::uint64_t i) {
  i *= 0x9E3779B97F4A7C15U;
  i = (i ^ i >> 30) * 0xBF58476D1CE4E5B9U;
  i = (i ^ i >> 27) * 0x94D049BB133111EBU;
  return (i ^ i >> 31) % 16 == 0;
}

// The one allocation. A word is as large as a double.
class Memory {
 public:
  static Memory& Shared() {
    static Memory memory;
    return memory;
  }

  std::uint64_t* Words() { return words_.get(); }

  // The array with such nodes; filled unless it holds them already.
  template <typename T>
  T* Holding(Nodes nodes) {
    T* const values = reinterpret_cast<T*>(words_.get());
    if (filled_ && nodes_ == nodes && type_ == kTypeOf<T>) return values;
    const auto bad = static_cast<T>(nodes == Nodes::kWithInvalid ? kInvalid : kTooLow);
    for (std::size_t i = 0; i < NodeCount(); ++i) {
      values[i] = nodes != Nodes::kClean && IsBad(i) ? bad : static_cast<T>(i);
    }
    nodes_ = nodes;
    type_ = kTypeOf<T>;
    filled_ = true;
    return values;
  }

  // To be called by who changes the words.
  void Forget() { filled_ = false; }

 private:
  std::unique_ptr<std::uint64_t[]> words_ = std::make_unique<std::uint64_t[]>(NodeCount());
  bool filled_ = false;
  Nodes nodes_ = Nodes::kClean;
  corvel::PrimType type_ = corvel::kDouble;
};

template <typename T>
std::size_t WordCount() {
  return NodeCount() * sizeof(T) / sizeof(std::uint64_t);
}

// Compiled for several kinds of vectors, of which the processor takes the widest that it has.
#if defined(__x86_64__) && defined(__linux__)
#define TROVAN_WIDEST_VECTORS __attribute__((target_clones("default", "avx2", "avx512f")))
#else
#define TROVAN_WIDEST_VECTORS
#endif

// Lines a page ahead are asked for, as the processor's own prefetching ends with each page.
constexpr std::size_t kBlock = 64;  // words
constexpr std::size_t kAhead = 512;

TROVAN_WIDEST_VECTORS std::uint64_t SumOf(const std::uint64_t* words, std::size_t count) {
  std::uint64_t sums[kBlock] = {};
  std::size_t i = 0;
  for (; i + kBlock <= count; i += kBlock) {
    for (std::size_t j = 0; j < kBlock; j += 8) __builtin_prefetch(words + i + kAhead + j);
    for (std::size_t j = 0; j < kBlock; ++j) sums[j] += words[i + j];
  }
  std::uint64_t sum = 0;
  for (const std::uint64_t one : sums) sum += one;
  for (; i < count; ++i) sum += words[i];
  return sum;
}

TROVAN_WIDEST_VECTORS void Increment(std::uint64_t* words, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) ++words[i];
}

template <typename T>
void CountBytes(benchmark::State& state) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(NodeCount() * sizeof(T)));
}

template <typename T>
void BM_ReadPass(benchmark::State& state) {
  const std::uint64_t* const words = Memory::Shared().Words();
  for (auto _ : state) benchmark::DoNotOptimize(SumOf(words, WordCount<T>()));
  CountBytes<T>(state);
}

template <typename T>
void BM_ReadAndWritePass(benchmark::State& state) {
  Memory::Shared().Forget();
  std::uint64_t* const words = Memory::Shared().Words();
  for (auto _ : state) {
    Increment(words, WordCount<T>());
    benchmark::ClobberMemory();
  }
  CountBytes<T>(state);
}

template <typename T>
void BM_FilterInvalidNodes(benchmark::State& state, Nodes nodes) {
  T* const values = Memory::Shared().Holding<T>(nodes);
  for (auto _ : state) {
    if (FilterInvalidNodes(values, kTypeOf<T>, NodeCount(), kInvalid) != (nodes != Nodes::kClean)) {
      state.SkipWithError("invalid nodes where there are none, or none where they are");
    }
  }
  CountBytes<T>(state);
}

template <typename T>
void BM_FilterOutOfRangeNodes(benchmark::State& state, Nodes nodes) {
  T* const values = Memory::Shared().Holding<T>(nodes);
  for (auto _ : state) {
    if (FilterOutOfRangeNodes(values, kTypeOf<T>, NodeCount(), kTooLow, kLowest, kHighest) !=
        (nodes != Nodes::kClean)) {
      state.SkipWithError("nodes out of range where there are none, or none where they are");
    }
  }
  CountBytes<T>(state);
}

template <typename T>
void BM_IsEquallySpaced(benchmark::State& state) {
  const T* const values = Memory::Shared().Holding<T>(Nodes::kClean);
  for (auto _ : state) {
    if (!IsEquallySpaced(kTypeOf<T>, NodeCount(), values, kTolerance)) {
      state.SkipWithError("a step is not equal");  // and the pass has ended there
    }
  }
  CountBytes<T>(state);
}

template <typename T>
void BM_MaxDeviationFromUniform(benchmark::State& state) {
  const T* const values = Memory::Shared().Holding<T>(Nodes::kClean);
  for (auto _ : state) {
    benchmark::DoNotOptimize(MaxDeviationFromUniform(kTypeOf<T>, NodeCount(), values));
  }
  CountBytes<T>(state);
}

template <typename T>
void Register(const std::string& type) {
  const auto add = [&type](const std::string& name, auto work) {
    benchmark::RegisterBenchmark((name + "/" + type).c_str(), work)->Unit(benchmark::kMillisecond);
  };
  add("ReadPass", BM_ReadPass<T>);
  add("ReadAndWritePass", BM_ReadAndWritePass<T>);
  add("IsEquallySpaced", BM_IsEquallySpaced<T>);
  add("MaxDeviationFromUniform", BM_MaxDeviationFromUniform<T>);
  const auto addFilter = [&add](const std::string& name, auto filter, Nodes nodes) {
    add(name, [filter, nodes](benchmark::State& state) { filter(state, nodes); });
  };
  addFilter("FilterInvalidNodes/clean", BM_FilterInvalidNodes<T>, Nodes::kClean);
  addFilter("FilterInvalidNodes/bad", BM_FilterInvalidNodes<T>, Nodes::kWithInvalid);
  addFilter("FilterOutOfRangeNodes/clean", BM_FilterOutOfRangeNodes<T>, Nodes::kClean);
  addFilter("FilterOutOfRangeNodes/bad", BM_FilterOutOfRangeNodes<T>, Nodes::kWithTooLow);
}

}  // namespace
}  // namespace trovan::bench

int main(int argc, char** argv) {
  trovan::bench::Register<double>("double");
  trovan::bench::Register<float>("float");
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
