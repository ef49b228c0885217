#include "SampleText.h"

#include <cstdio>
#include <fstream>
#include <functional>
#include <random>
#include <string>
#include <string_view>

namespace trovan::bench {
namespace {

constexpr std::string_view kStarts[] = {"San", "New", "Stock", "Villa", "Oak",
                                        "Nor", "Bel", "Kirk",  "Lang",  "M\xC3\xBCnch"};
constexpr std::string_view kMiddles[] = {"", "en", "holm", "ing", "a", "er", "ville"};
constexpr std::string_view kEnds[] = {"ton", "berg", "dorf", "city", "by", "mouth", "ara", "ow"};
constexpr std::string_view kCountries[] = {"NO", "DE", "FR", "US", "BR", "JP", "ZA"};
constexpr std::string_view kClasses[] = {"city", "town", "village", "hamlet"};

using Random = std::mt19937_64;

double Between(double low, double high, Random& random) {
  return low + (high - low) * static_cast<double>(random() >> 11) / 9007199254740992.0;
}

template <std::size_t kCount>
std::string_view AnyOf(const std::string_view (&words)[kCount], Random& random) {
  return words[random() % kCount];
}

void AppendNumber(std::string& line, const char* format, double number) {
  char text[40];
  std::snprintf(text, sizeof text, format, number);
  line += text;
}

void AppendPlace(std::string& line, std::string_view separator, Random& random) {
  AppendNumber(line, "%.6f", Between(-60.0, 75.0, random));
  line += separator;
  AppendNumber(line, "%.6f", Between(-180.0, 180.0, random));
}

void AppendTown(std::string& line, Random& random) {
  line += std::to_string(random() % 10'000'000);
  line += ',';
  line += AnyOf(kStarts, random);
  line += AnyOf(kMiddles, random);
  line += AnyOf(kEnds, random);
  line += ',';
  line += AnyOf(kCountries, random);
  line += ',';
  line += AnyOf(kClasses, random);
  line += ',';
  AppendPlace(line, ",", random);
  AppendNumber(line, ",%.1f", Between(0.0, 3000.0, random));
  char date[20];
  std::snprintf(date, sizeof date, ",%04u-%02u-%02u", static_cast<unsigned>(1950 + random() % 75),
                static_cast<unsigned>(1 + random() % 12), static_cast<unsigned>(1 + random() % 28));
  line += date;
}

void AppendMeasurement(std::string& line, std::string_view separator, Random& random) {
  AppendPlace(line, separator, random);
  line += separator;
  AppendNumber(line, "%.2f", Between(0.0, 3000.0, random));
  line += separator;
  AppendNumber(line, "%.17g", Between(0.0, 1.0, random));
}

void WriteLines(const std::filesystem::path& path, std::uint64_t bytes,
                const std::function<void(std::string& line, Random& random)>& append) {
  std::ofstream file;
  file.exceptions(std::ios::failbit | std::ios::badbit);
  file.open(path, std::ios::binary | std::ios::trunc);
  Random random(20240917);
  std::string line;
  for (std::uint64_t written = 0; written < bytes; written += line.size()) {
    line.clear();
    append(line, random);
    file.write(line.data(), static_cast<std::streamsize>(line.size()));
  }
  file.close();
}

}  // namespace

void WriteSampleText(const std::filesystem::path& path, std::uint64_t bytes) {
  WriteLines(path, bytes, [](std::string& line, Random& random) {
    AppendTown(line, random);
    line += '\n';
  });
}

void WriteSampleNumbers(const std::filesystem::path& path, std::uint64_t bytes,
                        std::string_view separator, std::string_view lineEnd) {
  WriteLines(path, bytes, [separator, lineEnd](std::string& line, Random& random) {
    AppendMeasurement(line, separator, random);
    line += lineEnd;
  });
}

}  // namespace trovan::bench
