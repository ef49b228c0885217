// The table that all reading benchmarks share, and the orders in which they read it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace trovan::bench {

// The path of the sample table, which is made on the first call and removed when the program ends.
// It was just written and read once, so that it lies in the page cache.
//
// TROVAN_BENCH_RECORDS sets the number of records instead of 1,000,000; TMPDIR where the table
// lies.
const std::string& BenchTablePath();

std::uint32_t BenchTableRecords();

enum ReadingOrder : int { kSequential, kBackward, kEveryTenth, kRandom };

// The numbers of the records that are read, in that order: all, but for kEveryTenth. The random
// order is always the same.
std::vector<std::uint32_t> RecordsInOrder(ReadingOrder order);

}  // namespace trovan::bench
