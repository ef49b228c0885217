// make_sample_table FILE.dbf RECORDS [--memos]: writes the table of the benchmarks.
#include <cstdint>
#include <cstdio>
#include <exception>
#include <string>
#include <string_view>

#include "SampleTable.h"

int main(int argc, char** argv) {
  const bool withMemos = argc == 4 && std::string_view(argv[3]) == "--memos";
  if (argc != 3 && !withMemos) {
    std::fputs("usage: make_sample_table FILE.dbf RECORDS [--memos]\n", stderr);
    return 2;
  }
  try {
    using trovan::bench::SampleMemos;
    trovan::bench::WriteSampleTable(argv[1], static_cast<std::uint32_t>(std::stoul(argv[2])),
                                    withMemos ? SampleMemos::kWithMemos : SampleMemos::kNone);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "make_sample_table: %s: %s\n", argv[1], error.what());
    return 1;
  }
}
