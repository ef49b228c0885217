#include "SvgTransform.h"

#include <cmath>
#include <cstddef>
#include <numbers>
#include <vector>

#include "SvgScanner.h"

namespace trovan::filters {
namespace {

using corvel::Mat3d;

double Radians(double degrees) { return degrees * (std::numbers::pi / 180.0); }

// Quarter turns are exact.
Mat3d Rotation(double degrees) {
  const double turn = std::remainder(degrees, 360.0);
  if (turn == 90.0) return {0, 1, -1, 0, 0, 0};
  if (turn == -90.0) return {0, -1, 1, 0, 0, 0};
  if (std::fabs(turn) == 180.0) return {-1, 0, 0, -1, 0, 0};
  const double c = std::cos(Radians(turn));
  const double s = std::sin(Radians(turn));
  return {c, s, -s, c, 0, 0};
}

Mat3d Translation(double x, double y) { return {1, 0, 0, 1, x, y}; }

std::optional<Mat3d> Single(std::string_view name, const std::vector<double>& n) {
  const std::size_t count = n.size();
  if (name == "matrix" && count == 6) return Mat3d(n[0], n[1], n[2], n[3], n[4], n[5]);
  if (name == "translate" && (count == 1 || count == 2)) {
    return Translation(n[0], count == 2 ? n[1] : 0.0);
  }
  if (name == "scale" && (count == 1 || count == 2)) return Mat3d(n[0], 0, 0, n.back(), 0, 0);
  if (name == "rotate" && count == 1) return Rotation(n[0]);
  if (name == "rotate" && count == 3) {
    return Translation(-n[1], -n[2]) * Rotation(n[0]) * Translation(n[1], n[2]);
  }
  if (name == "skewX" && count == 1) return Mat3d(1, 0, std::tan(Radians(n[0])), 1, 0, 0);
  if (name == "skewY" && count == 1) return Mat3d(1, std::tan(Radians(n[0])), 0, 1, 0, 0);
  return {};
}

// The numbers between parentheses.
bool ReadArguments(SvgScanner& scanner, std::vector<double>& numbers) {
  scanner.SkipSpace();
  if (!scanner.Skip('(')) return false;
  scanner.SkipSpace();
  double number = 0.0;
  bool comma = false;
  while (scanner.ReadNumber(number)) {
    numbers.push_back(number);
    comma = scanner.SkipComma();
  }
  return !comma && scanner.Skip(')');
}

}  // namespace

std::optional<Mat3d> ParseTransform(std::string_view text) {
  Mat3d all;
  SvgScanner scanner(TrimSpace(text));
  if (scanner.Rest() == "none") return all;
  while (!scanner.AtEnd()) {
    const std::string_view name = scanner.ReadName();
    std::vector<double> numbers;
    if (!ReadArguments(scanner, numbers)) return {};
    const auto single = Single(name, numbers);
    if (!single) return {};
    all = *single * all;
    scanner.SkipComma();
  }
  if (!IsFinite(all)) return {};
  return all;
}

double Determinant(const Mat3d& map) { return map(0, 0) * map(1, 1) - map(0, 1) * map(1, 0); }

double MeanScale(const Mat3d& map) { return std::sqrt(std::fabs(Determinant(map))); }

Mat3d Inverted(const Mat3d& map) {
  const double d = Determinant(map);
  const Mat3d linear(map(1, 1) / d, -map(0, 1) / d, -map(1, 0) / d, map(0, 0) / d, 0, 0);
  return Translation(-map(2, 0), -map(2, 1)) * linear;
}

bool IsFinite(const Mat3d& map) {
  bool finite = true;
  for (int row = 0; row < 3; ++row) {
    finite = finite && std::isfinite(map(row, 0)) && std::isfinite(map(row, 1));
  }
  return finite;
}

corvel::Vec2d Mapped(const corvel::Vec2d& point, const Mat3d& map) {
  corvel::Vec2d mapped;
  map.Transform(&point, &mapped, 1);
  return mapped;
}

}  // namespace trovan::filters
