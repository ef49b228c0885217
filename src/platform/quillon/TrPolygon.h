// An area within rings: filled with the current brush, its rings drawn with the current pen.
//
//   TrPolygon square({{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 4, 0},
//                     {1, 1, 0}, {2, 1, 0}, {2, 2, 0}}, {4, 3});  // with a hole of three corners
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <corvel/Geometry.h>

#include <quillon/Export.h>
#include <quillon/TrBase.h>

namespace quillon {

// What lies within an odd number of rings is inside: a ring within another one is a hole. Rings may
// repeat their first point at their end or not.
class QUILLON_API TrPolygon : public TrBase {
 public:
  static const corvel::CTypeInfo* GetClassTypeId();

  TrPolygon() = default;
  explicit TrPolygon(std::vector<corvel::Vec3d> points, std::vector<unsigned int> counts = {});

  const corvel::CTypeInfo* GetTypeId() const override;
  std::unique_ptr<TrBase> Clone() const override;

  // Raises unless x and y of every point are finite and the counts add up to no more than the
  // points. No points are valid; so are points that no ring has.
  void AssertValid() const override;
  std::wstring Description() const override;

  const std::vector<corvel::Vec3d>& Points() const { return points_; }
  std::vector<corvel::Vec3d>& Points() { return points_; }

  // Of the points of each ring, one ring after the other. No counts: all points form one ring.
  const std::vector<unsigned int>& Counts() const { return counts_; }
  std::vector<unsigned int>& Counts() { return counts_; }

 private:
  std::vector<corvel::Vec3d> points_;
  std::vector<unsigned int> counts_;
};

}  // namespace quillon
