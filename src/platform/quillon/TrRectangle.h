// An axis-parallel rectangle, perhaps with rounded corners: filled with the current brush, its
// outline drawn with the current pen.
//
//   TrRectangle plate(Box2d(0, 0, 40, 20), 3, 3);
#pragma once

#include <memory>
#include <string>

#include <corvel/Geometry.h>

#include <quillon/Export.h>
#include <quillon/TrBase.h>

namespace quillon {

// The corners are quarters of ellipses with the two radii as half axes; 0 in both: right angles.
class QUILLON_API TrRectangle : public TrBase {
 public:
  static const corvel::CTypeInfo* GetClassTypeId();

  // The empty box.
  TrRectangle() = default;
  explicit TrRectangle(const corvel::Box2d& box, double xRadius = 0.0, double yRadius = 0.0)
      : box_(box), xRadius_(xRadius), yRadius_(yRadius) {}

  const corvel::CTypeInfo* GetTypeId() const override;
  std::unique_ptr<TrBase> Clone() const override;

  // Raises unless box and radii are finite. A flipped box and the empty one are valid.
  void AssertValid() const override;
  std::wstring Description() const override;

  const corvel::Box2d& Box() const { return box_; }
  void SetBox(const corvel::Box2d& box) { box_ = box; }
  double XRadius() const { return xRadius_; }
  double YRadius() const { return yRadius_; }
  void SetRadii(double x, double y) {
    xRadius_ = x;
    yRadius_ = y;
  }

 private:
  corvel::Box2d box_;
  double xRadius_ = 0.0;
  double yRadius_ = 0.0;
};

}  // namespace quillon
