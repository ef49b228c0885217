#include "SvgViewBox.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "SvgNumbers.h"
#include "SvgScanner.h"

namespace trovan::filters {
namespace {

// "Min", "Mid" or "Max"; nothing for others.
std::optional<double> ParseAlign(std::string_view text) {
  if (text == "Min") return 0.0;
  if (text == "Mid") return 0.5;
  if (text == "Max") return 1.0;
  return {};
}

bool ReadAlign(std::string_view word, AspectRatio& ratio) {
  if (word.size() != 8 || word[0] != 'x' || word[4] != 'Y') return false;
  const auto x = ParseAlign(word.substr(1, 3));
  const auto y = ParseAlign(word.substr(5, 3));
  if (!x || !y) return false;
  ratio.xAlign = *x;
  ratio.yAlign = *y;
  return true;
}

}  // namespace

std::optional<corvel::Box2d> ParseViewBox(std::string_view text) {
  bool isWhole = false;
  const std::vector<double> n = ParseNumbers(text, &isWhole);
  if (!isWhole || n.size() != 4 || n[2] < 0.0 || n[3] < 0.0) return {};
  const corvel::Box2d box(n[0], n[1], n[0] + n[2], n[1] + n[3]);
  const bool isFinite = std::isfinite(box.min.x) && std::isfinite(box.min.y) &&
                        std::isfinite(box.max.x) && std::isfinite(box.max.y);
  if (!isFinite) return {};
  return box;
}

AspectRatio ParseAspectRatio(std::string_view text) {
  AspectRatio ratio;
  SvgScanner scanner(text);
  scanner.SkipSpace();
  std::string_view word = scanner.ReadName();
  if (word == "defer") {
    scanner.SkipSpace();
    word = scanner.ReadName();
  }
  if (word == "none") {
    ratio.isKept = false;
    return ratio;
  }
  if (!ReadAlign(word, ratio)) return {};
  scanner.SkipSpace();
  ratio.isSliced = scanner.ReadName() == "slice";
  return ratio;
}

corvel::Mat3d FitInto(const corvel::Box2d& box, const corvel::Box2d& space,
                      const AspectRatio& ratio) {
  double x = space.Width() / box.Width();
  double y = space.Height() / box.Height();
  if (ratio.isKept) x = y = ratio.isSliced ? std::max(x, y) : std::min(x, y);
  const double xSpare = space.Width() - box.Width() * x;
  const double ySpare = space.Height() - box.Height() * y;
  return {x,
          0,
          0,
          y,
          space.min.x + xSpare * ratio.xAlign - box.min.x * x,
          space.min.y + ySpare * ratio.yAlign - box.min.y * y};
}

}  // namespace trovan::filters
