// An open line through points, drawn with the current pen.
//
//   TrPolyline line({{0, 0, 0}, {4, 1, 0}, {2, 3, 0}});
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <corvel/Geometry.h>

#include <quillon/Export.h>
#include <quillon/TrBase.h>

namespace quillon {

// A closed line has its first point once more at its end.
class QUILLON_API TrPolyline : public TrBase {
 public:
  static const corvel::CTypeInfo* GetClassTypeId();

  TrPolyline() = default;
  explicit TrPolyline(std::vector<corvel::Vec3d> points);

  const corvel::CTypeInfo* GetTypeId() const override;
  std::unique_ptr<TrBase> Clone() const override;

  // Raises unless x and y of every point are finite. No points are valid.
  void AssertValid() const override;
  std::wstring Description() const override;

  const std::vector<corvel::Vec3d>& Points() const { return points_; }
  std::vector<corvel::Vec3d>& Points() { return points_; }

 private:
  std::vector<corvel::Vec3d> points_;
};

}  // namespace quillon
