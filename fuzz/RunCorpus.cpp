// Runs a harness over the files of a folder: the main program where there is no fuzzer, so that the
// harnesses and their seeds are tried by every compiler and in every test run.
//
//   DBFReaderFuzz fuzz/corpus/DBFReaderFuzz
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>

#include "support/TempFolder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
    return 2;
  }
  try {
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
      const std::string bytes = trovan::test::ReadBytes(entry.path());
      std::printf("%s\n", entry.path().filename().string().c_str());
      std::fflush(stdout);  // the last name tells on which input it fails
      LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
      ++files;
    }
    if (files > 0) return 0;
    std::fprintf(stderr, "no seeds in %s\n", argv[1]);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
  }
  return 1;
}
