#include "BenchText.h"

#include <cstdlib>
#include <filesystem>

#include "BenchFile.h"
#include "SampleText.h"

namespace trovan::bench {

const std::string& BenchTextPath() {
  static const BenchFile file("towns.csv", [](const std::filesystem::path& path) {
    WriteSampleText(path, BenchTextBytes());
  });
  return file.Path();
}

const std::string& BenchNumbersPath() {
  static const BenchFile file("soundings.csv", [](const std::filesystem::path& path) {
    WriteSampleNumbers(path, BenchTextBytes(), ",", "\n");
  });
  return file.Path();
}

const std::string& BenchColumnsPath() {
  static const BenchFile file("soundings.xyz", [](const std::filesystem::path& path) {
    WriteSampleNumbers(path, BenchTextBytes(), " ", "\r\n");
  });
  return file.Path();
}

// Far more than the caches of a processor, far less than the memory of a machine.
std::uint64_t BenchTextBytes() {
  constexpr std::uint64_t kBytes = 200'000'000;
  const char* asked = std::getenv("TROVAN_BENCH_TEXT_BYTES");
  return asked == nullptr ? kBytes : std::stoull(asked);
}

}  // namespace trovan::bench
