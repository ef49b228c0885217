// Places and lengths of a drawing as texts of a page.
#pragma once

#include <string>

#include <corvel/Geometry.h>
#include <corvel/Matrix.h>

#include "filters/drawing/SvgPage.h"

namespace trovan::filters {

class PageCoordinates {
 public:
  // Those of the page as SvgPage has it at first: the same but for the direction of y.
  PageCoordinates() = default;
  explicit PageCoordinates(const SvgPage& page) : page_(page) {}

  // The place on the page in its user units.
  template <typename Point>
  corvel::Vec2d ToPage(const Point& point) const {
    return {(point.x - page_.origin.x) / page_.scale, (page_.origin.y - point.y) / page_.scale};
  }
  double LengthToPage(double length) const { return length / page_.scale; }

  // Whether coordinates lose digits.
  bool Rounds() const { return page_.decimals.has_value(); }

  // What the page does to a drawing that the matrix has placed, as a matrix of SVG: from the page's
  // axes without its origin to the page.
  corvel::Mat3d ToPage(const corvel::Mat4d& matrix) const;

  // Appends a coordinate of the page that stood in the drawing.
  void AppendPlace(std::string& text, double value) const;

  // Appends a number that was computed here, such as the centre of a box. It has 15 digits at most:
  // the errors of rounding are in those behind them.
  void AppendDerived(std::string& text, double value) const;

 private:
  SvgPage page_;
};

// Appends a number with so many digits behind the point at most, none of them a zero at the end.
void AppendRounded(std::string& text, double value, int decimals);

}  // namespace trovan::filters
