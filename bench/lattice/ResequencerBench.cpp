// Rows of a lattice through its temporary file: with LatticeResequencer, and as one writes it by
// hand with pread, pwrite and a loop. And the limit: the whole file in large blocks. 512 x 512 x 64
// nodes of 3 floats: 201 MB, far more than the caches of a processor.
//
// Making the files (with zeros) is outside of what is measured; they lie in the page cache.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <unistd.h>
#include <vector>

#include <benchmark/benchmark.h>

#include <trovan/Sequence.h>

namespace trovan::bench {
namespace {

constexpr unsigned kColumns = 512;
constexpr unsigned kRows = 512;
constexpr unsigned kPlanes = 64;
constexpr unsigned kComponents = 3;
constexpr std::size_t kRowSize = std::size_t{kColumns} * kComponents * sizeof(float);
constexpr std::int64_t kTotalSize = std::int64_t{kRowSize} * kRows * kPlanes;
constexpr std::size_t kFileBlock = 65536;

// Element by element, with sizes that only the running program knows: what LatticeResequencer
// offers.
struct OpaqueCopy {
  static void Scatter(void* row, const void* from, unsigned component) {
    const std::size_t nodes = columns;
    const std::size_t count = components;
    const std::size_t bytes = size;
    for (std::size_t x = 0; x < nodes; ++x) {
      std::memcpy(static_cast<char*>(row) + (x * count + component) * bytes,
                  static_cast<const char*>(from) + x * bytes, bytes);
    }
  }
  static void Gather(void* to, const void* row, unsigned component) {
    const std::size_t nodes = columns;
    const std::size_t count = components;
    const std::size_t bytes = size;
    for (std::size_t x = 0; x < nodes; ++x) {
      std::memcpy(static_cast<char*>(to) + x * bytes,
                  static_cast<const char*>(row) + (x * count + component) * bytes, bytes);
    }
  }

  // volatile: the compiler must not know them.
  static inline volatile std::size_t columns = kColumns;
  static inline volatile std::size_t components = kComponents;
  static inline volatile std::size_t size = sizeof(float);
};

// For this one kind of lattice only: the compiler knows all sizes.
struct TypedCopy {
  static void Scatter(float* row, const float* from, unsigned component) {
    for (unsigned x = 0; x < kColumns; ++x) row[x * kComponents + component] = from[x];
  }
  static void Gather(float* to, const float* row, unsigned component) {
    for (unsigned x = 0; x < kColumns; ++x) to[x] = row[x * kComponents + component];
  }
};

// Works as one writes it without a library: one system call for each transfer.
template <typename Copy>
class HandMadeLattice {
 public:
  HandMadeLattice() {
    std::string name = (std::filesystem::temp_directory_path() / "trovan-bench-XXXXXX").string();
    file_ = mkstemp(name.data());
    if (file_ < 0) throw std::runtime_error("cannot make a temporary file");
    unlink(name.c_str());
    // The size of the writes that make a file decides in what pieces the system caches it: both
    // files are made alike.
    const std::vector<char> zeros(65536);
    for (std::int64_t at = 0; at < kTotalSize; at += 65536) {
      if (pwrite(file_, zeros.data(), zeros.size(), at) != 65536) {
        throw std::runtime_error("cannot fill the file");
      }
    }
  }
  ~HandMadeLattice() { close(file_); }
  HandMadeLattice(const HandMadeLattice&) = delete;
  HandMadeLattice& operator=(const HandMadeLattice&) = delete;

  // All bytes, in the order of the file.
  void WriteFile(std::vector<char>& block) {
    for (std::int64_t at = 0; at < kTotalSize; at += static_cast<std::int64_t>(block.size())) {
      Check(pwrite(file_, block.data(), block.size(), at), block.size());
    }
  }
  void ReadFile(std::vector<char>& block) {
    for (std::int64_t at = 0; at < kTotalSize; at += static_cast<std::int64_t>(block.size())) {
      Check(pread(file_, block.data(), block.size(), at), block.size());
    }
  }

  void WriteRow(unsigned y, unsigned z, const float* from) {
    Check(pwrite(file_, from, kRowSize, Place(y, z)));
  }
  void ReadRow(unsigned y, unsigned z, float* to) {
    Check(pread(file_, to, kRowSize, Place(y, z)));
  }
  void WriteComponent(unsigned y, unsigned z, unsigned component, const float* from) {
    Get(y, z);
    Copy::Scatter(row_.data(), from, component);
    Put(y, z);
  }
  void ReadComponent(unsigned y, unsigned z, unsigned component, float* to) {
    Get(y, z);
    Copy::Gather(to, row_.data(), component);
  }

 private:
  static off_t Place(unsigned y, unsigned z) {
    return static_cast<off_t>((std::size_t{z} * kRows + y) * kRowSize);
  }
  static void Check(ssize_t moved, std::size_t wanted = kRowSize) {
    if (moved != static_cast<ssize_t>(wanted)) throw std::runtime_error("a transfer came short");
  }
  void Get(unsigned y, unsigned z) { Check(pread(file_, row_.data(), kRowSize, Place(y, z))); }
  void Put(unsigned y, unsigned z) { Check(pwrite(file_, row_.data(), kRowSize, Place(y, z))); }

  int file_ = -1;
  std::vector<float> row_ = std::vector<float>(std::size_t{kColumns} * kComponents);
};

using NaiveLattice = HandMadeLattice<OpaqueCopy>;
using TypedLattice = HandMadeLattice<TypedCopy>;

class OurLattice {
 public:
  OurLattice() {
    lattice_.Start(LatticeResequencer::Uniform, kColumns, kRows, kPlanes, kComponents, 0,
                   sizeof(float), false, true);
  }
  ~OurLattice() { lattice_.Finish(); }
  OurLattice(const OurLattice&) = delete;
  OurLattice& operator=(const OurLattice&) = delete;

  void WriteRow(unsigned y, unsigned z, const float* from) {
    lattice_.WriteRowOfMultiComponentData(y, z, from);
  }
  void ReadRow(unsigned y, unsigned z, float* to) {
    lattice_.ReadRowOfMultiComponentData(y, z, to);
  }
  void WriteComponent(unsigned y, unsigned z, unsigned component, const float* from) {
    lattice_.WriteRowOfSingleComponentData(y, z, component, from);
  }
  void ReadComponent(unsigned y, unsigned z, unsigned component, float* to) {
    lattice_.ReadRowOfSingleComponentData(y, z, component, to);
  }

 private:
  LatticeResequencer lattice_;
};

template <typename Lattice>
Lattice& Shared() {
  static Lattice lattice;
  return lattice;
}

template <typename Row>
void ForEachRow(Row row) {
  for (unsigned z = 0; z < kPlanes; ++z) {
    for (unsigned y = 0; y < kRows; ++y) row(y, z);
  }
}

// The orders in which single components come and go.
enum class Order {
  kBandSequential,  // one component of a whole plane after the other, as bands in a file
  kBandByLine,      // one component of a row after the other
};

template <Order kOrder, typename Row>
void ForEachRowOfComponent(Row row) {
  for (unsigned z = 0; z < kPlanes; ++z) {
    if constexpr (kOrder == Order::kBandSequential) {
      for (unsigned c = 0; c < kComponents; ++c) {
        for (unsigned y = 0; y < kRows; ++y) row(y, z, c);
      }
    } else {
      for (unsigned y = 0; y < kRows; ++y) {
        for (unsigned c = 0; c < kComponents; ++c) row(y, z, c);
      }
    }
  }
}

template <typename Lattice, Order kOrder>
void BM_WriteComponents(benchmark::State& state) {
  Lattice& lattice = Shared<Lattice>();
  std::vector<float> row(kColumns, 1.5F);
  for (auto _ : state) {
    ForEachRowOfComponent<kOrder>([&](unsigned y, unsigned z, unsigned component) {
      lattice.WriteComponent(y, z, component, row.data());
    });
  }
  state.SetBytesProcessed(state.iterations() * kTotalSize);
}

// Flipped, as most conversions between pictures and grids read.
template <typename Lattice, Order kOrder>
void BM_ReadComponentsFlipped(benchmark::State& state) {
  Lattice& lattice = Shared<Lattice>();
  std::vector<float> row(kColumns);
  for (auto _ : state) {
    ForEachRowOfComponent<kOrder>([&](unsigned y, unsigned z, unsigned component) {
      lattice.ReadComponent(kRows - 1 - y, z, component, row.data());
      benchmark::DoNotOptimize(row.data());
    });
  }
  state.SetBytesProcessed(state.iterations() * kTotalSize);
}

template <typename Lattice>
void BM_WriteRows(benchmark::State& state) {
  Lattice& lattice = Shared<Lattice>();
  std::vector<float> row(std::size_t{kColumns} * kComponents, 1.5F);
  for (auto _ : state) {
    ForEachRow([&](unsigned y, unsigned z) { lattice.WriteRow(y, z, row.data()); });
  }
  state.SetBytesProcessed(state.iterations() * kTotalSize);
}

template <typename Lattice>
void BM_ReadRowsFlipped(benchmark::State& state) {
  Lattice& lattice = Shared<Lattice>();
  std::vector<float> row(std::size_t{kColumns} * kComponents);
  for (auto _ : state) {
    ForEachRow([&](unsigned y, unsigned z) {
      lattice.ReadRow(kRows - 1 - y, z, row.data());
      benchmark::DoNotOptimize(row.data());
    });
  }
  state.SetBytesProcessed(state.iterations() * kTotalSize);
}

static_assert(kTotalSize % kFileBlock == 0);

void BM_WriteFile(benchmark::State& state) {
  auto& lattice = Shared<TypedLattice>();
  std::vector<char> block(kFileBlock);
  for (auto _ : state) lattice.WriteFile(block);
  state.SetBytesProcessed(state.iterations() * kTotalSize);
}
BENCHMARK(BM_WriteFile)->Unit(benchmark::kMillisecond);

void BM_ReadFile(benchmark::State& state) {
  auto& lattice = Shared<TypedLattice>();
  std::vector<char> block(kFileBlock);
  for (auto _ : state) {
    lattice.ReadFile(block);
    benchmark::DoNotOptimize(block.data());
  }
  state.SetBytesProcessed(state.iterations() * kTotalSize);
}
BENCHMARK(BM_ReadFile)->Unit(benchmark::kMillisecond);

#define TROVAN_COMPARE(name, ...) \
  BENCHMARK_TEMPLATE(__VA_ARGS__)->Name(name)->Unit(benchmark::kMillisecond)

TROVAN_COMPARE("WriteComponents/bsq/ours", BM_WriteComponents, OurLattice, Order::kBandSequential);
TROVAN_COMPARE("WriteComponents/bsq/typed", BM_WriteComponents, TypedLattice,
               Order::kBandSequential);
TROVAN_COMPARE("WriteComponents/bsq/naive", BM_WriteComponents, NaiveLattice,
               Order::kBandSequential);
TROVAN_COMPARE("WriteComponents/bil/ours", BM_WriteComponents, OurLattice, Order::kBandByLine);
TROVAN_COMPARE("WriteComponents/bil/typed", BM_WriteComponents, TypedLattice, Order::kBandByLine);
TROVAN_COMPARE("WriteComponents/bil/naive", BM_WriteComponents, NaiveLattice, Order::kBandByLine);
TROVAN_COMPARE("ReadComponents/bsq/ours", BM_ReadComponentsFlipped, OurLattice,
               Order::kBandSequential);
TROVAN_COMPARE("ReadComponents/bsq/typed", BM_ReadComponentsFlipped, TypedLattice,
               Order::kBandSequential);
TROVAN_COMPARE("ReadComponents/bsq/naive", BM_ReadComponentsFlipped, NaiveLattice,
               Order::kBandSequential);
TROVAN_COMPARE("ReadComponents/bil/ours", BM_ReadComponentsFlipped, OurLattice, Order::kBandByLine);
TROVAN_COMPARE("ReadComponents/bil/typed", BM_ReadComponentsFlipped, TypedLattice,
               Order::kBandByLine);
TROVAN_COMPARE("ReadComponents/bil/naive", BM_ReadComponentsFlipped, NaiveLattice,
               Order::kBandByLine);
TROVAN_COMPARE("WriteRows/ours", BM_WriteRows, OurLattice);
TROVAN_COMPARE("WriteRows/naive", BM_WriteRows, NaiveLattice);
TROVAN_COMPARE("ReadRows/ours", BM_ReadRowsFlipped, OurLattice);
TROVAN_COMPARE("ReadRows/naive", BM_ReadRowsFlipped, NaiveLattice);

}  // namespace
}  // namespace trovan::bench
