// The text files that the benchmarks of the tokenizer share.
#pragma once

#include <cstdint>
#include <string>

namespace trovan::bench {

// Paths of files that are made on the first call and removed when the program ends. They were just
// written and read once, so that they lie in the page cache.
//
// TROVAN_BENCH_TEXT_BYTES sets their size instead of 200,000,000; TMPDIR where they lie.
const std::string& BenchTextPath();
const std::string& BenchNumbersPath();  // with commas
const std::string& BenchColumnsPath();  // the same numbers with blanks, lines that end with CR LF

std::uint64_t BenchTextBytes();

}  // namespace trovan::bench
