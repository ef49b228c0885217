// Places on the map that are shown by a symbol each.
//
//   TrMarkerSet wells({{10.2, 47.5, 968.0}, {10.3, 47.6, 1012.5}});
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <corvel/Geometry.h>

#include <quillon/Export.h>
#include <quillon/TrBase.h>

namespace quillon {

// A marker is known by its position alone.
class QUILLON_API TrMarkerSet : public TrBase {
 public:
  static const corvel::CTypeInfo* GetClassTypeId();

  TrMarkerSet() = default;
  explicit TrMarkerSet(std::vector<corvel::Vec3d> points);

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
