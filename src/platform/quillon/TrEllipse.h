// An ellipse: filled with the current brush, its outline drawn with the current pen.
//
//   TrEllipse leaf(Box2d(0, 0, 40, 20), std::numbers::pi / 6);
#pragma once

#include <memory>
#include <string>

#include <corvel/Geometry.h>

#include <quillon/Export.h>
#include <quillon/TrBase.h>

namespace quillon {

// The ellipse fills its box and is then turned about the centre of it, by an angle in radians,
// counter-clockwise in the axes of the drawing.
class QUILLON_API TrEllipse : public TrBase {
 public:
  static const corvel::CTypeInfo* GetClassTypeId();

  // The empty box, not turned.
  TrEllipse() = default;
  explicit TrEllipse(const corvel::Box2d& box, double angle = 0.0) : box_(box), angle_(angle) {}

  const corvel::CTypeInfo* GetTypeId() const override;
  std::unique_ptr<TrBase> Clone() const override;

  // Raises unless box and angle are finite. A flipped box and the empty one are valid.
  void AssertValid() const override;
  std::wstring Description() const override;

  // Before it is turned.
  const corvel::Box2d& Box() const { return box_; }
  void SetBox(const corvel::Box2d& box) { box_ = box; }
  double Angle() const { return angle_; }
  void SetAngle(double angle) { angle_ = angle; }

 private:
  corvel::Box2d box_;
  double angle_ = 0.0;
};

}  // namespace quillon
