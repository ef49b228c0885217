#include "Orientation.h"

#include <array>
#include <cstddef>

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

}  // namespace

// (a - p) x (b - p), in which p.x p.y stands twice and falls out.
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

int OrientationExactly(const Vec2d& a, const Vec2d& b, const Vec2d& p) {
  const double area = TwiceArea(a, b, p);
  return area > 0.0 ? 1 : area < 0.0 ? -1 : 0;
}

}  // namespace tarnis
