#include "Orientation.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <initializer_list>

namespace tarnis {

using corvel::Vec2d;

namespace {

// A sum of doubles that is never rounded: its terms do not overlap, and each is larger than all
// before it together (Shewchuk 1997, GROW-EXPANSION). Zeros among them do no harm.
class ExactSum {
 public:
  void Add(double number) {
    double carried = number;
    for (std::size_t i = 0; i < size_; ++i) {
      const double sum = carried + terms_[i];
      const double part = sum - carried;
      terms_[i] = (carried - (sum - part)) + (terms_[i] - part);
      carried = sum;
    }
    terms_[size_++] = carried;
  }

  // What rounding takes from the product is a double, too.
  void AddProduct(double a, double b) {
    const double product = a * b;
    Add(std::fma(a, b, -product));
    Add(product);
  }

  // From the smallest term up, so that little is lost; the sign is right.
  double Rounded() const {
    double sum = 0.0;
    for (std::size_t i = 0; i < size_; ++i) sum += terms_[i];
    return sum;
  }

 private:
  std::array<double, 12> terms_{};
  std::size_t size_ = 0;
};

// Areas within these bounds come from products that neither overflow nor lose bits that count.
constexpr double kLeastArea = 0x1p-900;
constexpr double kMostArea = 0x1p1000;

bool IsSure(double area) { return area >= kLeastArea && area <= kMostArea; }

int SignOf(double number) { return number > 0.0 ? 1 : number < 0.0 ? -1 : 0; }

// Brings the largest of some coordinates near 2^500, where products do not overflow, by a power of
// two. The sides on which points lie do not change if x and y are each scaled.
class Scale {
 public:
  Scale(std::initializer_list<double> coordinates) {
    double largest = 0.0;
    for (const double number : coordinates) largest = std::fmax(largest, std::fabs(number));
    if (largest > 0.0) exponent_ = 500 - std::ilogb(largest);
  }
  double operator()(double number) const { return std::ldexp(number, exponent_); }

 private:
  int exponent_ = 0;
};

// (b - a) x (p - a), twice the area of the triangle that turns to the left: the exact number,
// rounded only once or twice at its end.
// It is (a - p) x (b - p), in which p.x p.y stands twice and falls out.
double TwiceArea(const Vec2d& a, const Vec2d& b, const Vec2d& p) {
  ExactSum sum;
  sum.AddProduct(a.x, b.y);
  sum.AddProduct(-a.y, b.x);
  sum.AddProduct(-a.x, p.y);
  sum.AddProduct(a.y, p.x);
  sum.AddProduct(-p.x, b.y);
  sum.AddProduct(p.y, b.x);
  return sum.Rounded();
}

}  // namespace

int OrientationExactly(const Vec2d& a, const Vec2d& b, const Vec2d& p) {
  // Differences have the right signs at every size.
  const int left = SignOf(a.x - p.x) * SignOf(b.y - p.y);
  const int right = SignOf(a.y - p.y) * SignOf(b.x - p.x);
  if (left != right) return left > right ? 1 : -1;
  if (left == 0) return 0;
  const double area = TwiceArea(a, b, p);
  if (IsSure(std::fabs(area))) return SignOf(area);
  const Scale x{a.x, b.x, p.x};
  const Scale y{a.y, b.y, p.y};
  return SignOf(TwiceArea({x(a.x), y(a.y)}, {x(b.x), y(b.y)}, {x(p.x), y(p.y)}));
}

Shares SharesAtLine(const Vec2d& a, const Vec2d& b, const Vec2d& from, const Vec2d& to) {
  double before = std::fabs(TwiceArea(a, b, from));
  double behind = std::fabs(TwiceArea(a, b, to));
  if (!IsSure(before + behind)) {
    const Scale x{a.x, b.x, from.x, to.x};
    const Scale y{a.y, b.y, from.y, to.y};
    const auto scaled = [&](const Vec2d& point) { return Vec2d(x(point.x), y(point.y)); };
    before = std::fabs(TwiceArea(scaled(a), scaled(b), scaled(from)));
    behind = std::fabs(TwiceArea(scaled(a), scaled(b), scaled(to)));
    if (!(before + behind > 0.0)) return {0.5, 0.5};
  }
  return {before / (before + behind), behind / (before + behind)};
}

}  // namespace tarnis
