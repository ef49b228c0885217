#include "PlotFilter.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <stdexcept>
#include <utility>

#include <corvel/BufferedFile.h>

using corvel::Box2d;
using corvel::Color4b;
using corvel::Vec3d;

namespace {

using Words = std::vector<std::string_view>;

// A line that cannot be understood.
struct Misunderstood : std::runtime_error {
  using std::runtime_error::runtime_error;
};

constexpr std::string_view kBlanks = " \t\r";
constexpr double kFarthest = 1e9;  // no pen gets there

// Takes what stands before the first of `ends` from the front of the text, and that end with it.
std::string_view TakeUpTo(std::string_view ends, std::string_view& text) {
  const std::size_t end = std::min(text.find_first_of(ends), text.size());
  const std::string_view taken = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return taken;
}

Words WordsOf(std::string_view line) {
  Words words;
  line = line.substr(0, line.find('#'));
  while (!line.empty()) {
    if (const std::string_view word = TakeUpTo(kBlanks, line); !word.empty()) words.push_back(word);
  }
  return words;
}

double NumberOf(std::string_view word) {
  double number = 0.0;
  const auto [end, fault] = std::from_chars(word.data(), word.data() + word.size(), number);
  const bool isNumber = fault == std::errc() && end == word.data() + word.size();
  if (!isNumber || !(std::fabs(number) <= kFarthest)) {
    throw Misunderstood("\"" + std::string(word) + "\" is no number");
  }
  return number;
}

std::vector<double> NumbersOf(const Words& words, std::size_t count) {
  if (words.size() != count + 1) {
    throw Misunderstood(std::string(words[0]) + " takes " + std::to_string(count) + " numbers");
  }
  std::vector<double> numbers;
  for (std::size_t i = 1; i < words.size(); ++i) numbers.push_back(NumberOf(words[i]));
  return numbers;
}

double LengthOf(std::string_view word) { return NumberOf(word) * PlotFilter::kUnit; }

unsigned char ByteOf(double value) {
  return static_cast<unsigned char>(std::clamp(value, 0.0, 255.0));
}

Color4b ColorOf(const std::vector<double>& numbers) {
  return {ByteOf(numbers[0]), ByteOf(numbers[1]), ByteOf(numbers[2]), 255};
}

// Points in rings, which a slash sets apart.
struct Rings {
  std::vector<Vec3d> points;
  std::vector<unsigned int> counts;

  explicit Rings(const Words& words) {
    unsigned int count = 0;
    for (std::size_t i = 1; i < words.size(); ++i) {
      if (words[i] == "/") {
        counts.push_back(std::exchange(count, 0U));
        continue;
      }
      const double x = LengthOf(words[i]);
      if (++i == words.size()) throw Misunderstood("the last point has no y");
      points.emplace_back(x, LengthOf(words[i]), 0.0);
      ++count;
    }
    if (count > 0) counts.push_back(count);
  }
};

}  // namespace

std::wstring PlotFilter::GetFilterName() const { return L"Pen plot"; }

std::vector<std::wstring> PlotFilter::GetFileExtensions() const { return {L".plot"}; }

bool PlotFilter::CanImport(const std::wstring& path) const {
  constexpr std::wstring_view kExtension = L".plot";
  return path.size() > kExtension.size() &&
         path.compare(path.size() - kExtension.size(), kExtension.size(), kExtension) == 0;
}

void PlotFilter::ImportFromFile(const std::wstring& path, bool) {
  corvel::CBufferedFile file;
  file.Open(path, "rb", corvel::kFileShareRead, false);
  std::string text(static_cast<std::size_t>(file.GetLength()), '\0');
  text.resize(file.Read(text.data(), text.size()));
  ImportText(text);
}

void PlotFilter::ImportFromMemory(const unsigned char* bytes, unsigned int count, bool) {
  ImportText(std::string(bytes, bytes + count));
}

void PlotFilter::ImportText(std::string_view text) {
  for (int line = 1; !text.empty(); ++line) {
    try {
      const Words words = WordsOf(TakeUpTo("\n", text));
      if (!words.empty()) ImportLine(words);
    } catch (const Misunderstood& fault) {
      throw std::runtime_error("line " + std::to_string(line) + ": " + fault.what());
    }
  }
}

const PlotFilter::Order PlotFilter::kOrders[] = {
    {"PEN", &PlotFilter::Pen},   {"FILL", &PlotFilter::Fill}, {"CLIP", &PlotFilter::Clip},
    {"LINE", &PlotFilter::Line}, {"AREA", &PlotFilter::Area}, {"DISC", &PlotFilter::Disc},
};

void PlotFilter::ImportLine(const Words& words) {
  const auto order = std::find_if(std::begin(kOrders), std::end(kOrders),
                                  [&](const Order& known) { return known.name == words[0]; });
  if (order == std::end(kOrders)) {
    throw Misunderstood("\"" + std::string(words[0]) + "\" is no order");
  }
  (this->*order->import)(words);
}

void PlotFilter::Pen(const Words& words) {
  const std::vector<double> numbers = NumbersOf(words, 4);
  quillon::TrPen pen(quillon::TrPen::kSolid, ColorOf(numbers), numbers[3] * kUnit);
  ImportObject(pen);
}

void PlotFilter::Fill(const Words& words) {
  quillon::TrBrush brush(quillon::TrBrush::kNone);
  if (words.size() > 1) {
    brush = quillon::TrBrush(quillon::TrBrush::kSolid, ColorOf(NumbersOf(words, 3)));
  }
  ImportObject(brush);
}

void PlotFilter::Clip(const Words& words) {
  const Rings rings(words);
  quillon::TrClipPath region(rings.points, rings.counts);
  ImportObject(region);
}

void PlotFilter::Line(const Words& words) {
  quillon::TrPolyline line(Rings(words).points);
  ImportObject(line);
}

void PlotFilter::Area(const Words& words) {
  const Rings rings(words);
  quillon::TrPolygon area(rings.points, rings.counts);
  ImportObject(area);
}

void PlotFilter::Disc(const Words& words) {
  const std::vector<double> numbers = NumbersOf(words, 3);
  const double x = numbers[0] * kUnit;
  const double y = numbers[1] * kUnit;
  const double radius = numbers[2] * kUnit;
  quillon::TrEllipse disc(Box2d(x - radius, y - radius, x + radius, y + radius));
  ImportObject(disc);
}
