// The application's side: a manager that draws what it gets into an SVG picture.
#pragma once

#include <string>

#include <corvel/Geometry.h>
#include <quillon/IoManager.h>
#include <quillon/TrBrush.h>
#include <quillon/TrPen.h>

class SvgPicture : public quillon::IoManager {
 public:
  void ImportObject(quillon::TrBase& object) override;

  // The whole picture, as large as what was drawn.
  std::string Text() const;

 private:
  void Draw(const std::string& shape, bool isFilled);
  std::string Point(const corvel::Vec2d& point);
  std::string Path(const std::vector<corvel::Vec3d>& points,
                   const std::vector<unsigned int>& counts, const char* end);

  quillon::TrPen pen_;
  quillon::TrBrush brush_;
  corvel::Box2d extent_;
  std::string shapes_;
};
