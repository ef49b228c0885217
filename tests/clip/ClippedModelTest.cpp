// The filter beside a slow restatement of what it does, over many random drawings.
#include <cstddef>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <brindle/MemoryBitmap.h>
#include <quillon/TrBrush.h>
#include <quillon/TrClipPath.h>
#include <quillon/TrEllipse.h>
#include <quillon/TrFont.h>
#include <quillon/TrImage.h>
#include <quillon/TrMarkerSet.h>
#include <quillon/TrMetafile.h>
#include <quillon/TrPen.h>
#include <quillon/TrPolygon.h>
#include <quillon/TrPolyline.h>
#include <quillon/TrRectangle.h>
#include <quillon/TrText.h>
#include <tarnis/Clipping.h>
#include <tarnis/LineClipPolygon.h>
#include <tarnis/Polygon2.h>
#include <velum/Path.h>

#include "ClippedFixture.h"
#include "support/CapturedLog.h"
#include "support/Random.h"

namespace trovan::test {
namespace {

using corvel::Box2d;
using corvel::Color4b;
using corvel::CParamList;
using corvel::Vec2d;
using corvel::Vec3d;
using quillon::TrBase;
using quillon::TrBrush;
using quillon::TrClipPath;
using quillon::TrEllipse;
using quillon::TrFont;
using quillon::TrImage;
using quillon::TrMarkerSet;
using quillon::TrMetafile;
using quillon::TrPen;
using quillon::TrPolygon;
using quillon::TrPolyline;
using quillon::TrRectangle;
using quillon::TrText;
using tarnis::Polygon2;
using Points = std::vector<Vec2d>;
using Counts = std::vector<unsigned int>;

// --- The model: one function for each kind of object, each from the start, nothing shared or kept
// but the last clip path and the last pen.

class Model {
 public:
  void Take(const TrBase& object) {
    if (const auto* path = Exactly<TrClipPath>(object)) {
      clipPath_ = *path;
      return;
    }
    if (const auto* pen = Exactly<TrPen>(object)) pen_ = *pen;
    const bool isClipping = !clipPath_.Points().empty();
    if (isClipping && Exactly<TrMetafile>(object) != nullptr) ++warnings_;
    if (isClipping && TakeShape(object)) return;
    texts_.push_back(TextOf(object));
  }

  const std::vector<std::string>& Texts() const { return texts_; }
  std::size_t Warnings() const { return warnings_; }

 private:
  template <class Object>
  static const Object* Exactly(const TrBase& object) {
    if (object.GetTypeId() != Object::GetClassTypeId()) return nullptr;
    return dynamic_cast<const Object*>(&object);
  }

  // Whether the object is dealt with: it is not to pass whole.
  bool TakeShape(const TrBase& object) {
    if (const auto* line = Exactly<TrPolyline>(object)) {
      if (line->Points().empty()) return false;
      Line(Plane(line->Points()), line->Params());
      return true;
    }
    if (const auto* polygon = Exactly<TrPolygon>(object)) {
      if (polygon->Points().empty()) return false;
      Counts counts = polygon->Counts();
      if (counts.empty()) counts = {static_cast<unsigned int>(polygon->Points().size())};
      Area(Plane(polygon->Points()), counts, polygon->Params());
      return true;
    }
    if (const auto* box = Exactly<TrRectangle>(object)) return TakeRectangle(*box);
    if (const auto* ellipse = Exactly<TrEllipse>(object)) return TakeEllipse(*ellipse);
    if (const auto* set = Exactly<TrMarkerSet>(object)) return TakeMarkers(*set);
    return false;
  }

  bool TakeRectangle(const TrRectangle& rectangle) {
    velum::Path path(velum::FillMode(0));
    const bool isPlain = rectangle.XRadius() == 0 && rectangle.YRadius() == 0;
    if (isPlain) path.AddRect(rectangle.Box());
    if (!isPlain) path.AddRoundRect(rectangle.Box(), rectangle.XRadius(), rectangle.YRadius());
    return TakePath(rectangle.Box(), path, rectangle.Params());
  }

  bool TakeEllipse(const TrEllipse& ellipse) {
    velum::Path path(velum::FillMode(0));
    path.AddEllipse(ellipse.Box());
    const Vec2d c = ellipse.Box().Center();
    corvel::Mat4d matrix;
    matrix.Translate(-c.x, -c.y, 0, corvel::Order(1));
    matrix.RotateZ(ellipse.Angle(), corvel::Order(1));
    matrix.Translate(c.x, c.y, 0, corvel::Order(1));
    path.Transform(matrix);
    return TakePath(ellipse.Box(), path, ellipse.Params());
  }

  bool TakePath(const Box2d& box, const velum::Path& path, const CParamList& params) {
    if (Contains(box) || Contains(path.GetBounds())) return false;
    const Polygon2 flat = path.GetFlatPolygon(0.25, 10);
    Area(flat.Points(), flat.Counts(), params);
    return true;
  }

  bool TakeMarkers(const TrMarkerSet& set) {
    if (set.Points().empty()) return false;
    TrMarkerSet inside;
    inside.Params() = set.Params();
    for (const Vec3d& point : set.Points()) {
      if (PointInPolygon(Vec2d(point.x, point.y), Region())) inside.Points().push_back(point);
    }
    if (!inside.Points().empty()) texts_.push_back(TextOf(inside));
    return true;
  }

  void Area(const Points& points, const Counts& counts, const CParamList& params) {
    if (points.empty() || counts.empty()) return;
    const Polygon2 subject(points, counts);
    if (Contains(GetBoundingBox(subject))) return Pass(points, counts, params);
    const Polygon2 clipped = ClipPolygonToPolygon(subject, Region());
    if (clipped.Points().empty()) return;
    texts_.push_back(TextOf(TrPen(TrPen::Style(2), Color4b(0), 0.0)));
    Pass(clipped.Points(), clipped.Counts(), params);
    texts_.push_back(TextOf(pen_));
    std::size_t next = 0;
    for (const unsigned int count : counts) {
      const Points ring(points.begin() + static_cast<std::ptrdiff_t>(next),
                        points.begin() + static_cast<std::ptrdiff_t>(next + count));
      next += count;
      if (ring.empty()) continue;
      Line(ring, params);
      const bool isClosed = ring.front().x == ring.back().x && ring.front().y == ring.back().y;
      if (!isClosed) Line({ring.back(), ring.front()}, params);
    }
  }

  void Pass(const Points& points, const Counts& counts, const CParamList& params) {
    TrPolygon polygon(Space(points), counts);
    polygon.Params() = params;
    texts_.push_back(TextOf(polygon));
  }

  void Line(const Points& points, const CParamList& params) {
    Points pieces;
    Counts counts;
    Box2d box;
    const auto count = static_cast<unsigned int>(points.size());
    if (GetIfRect(Region(), box)) {
      tarnis::ClipPolylinesToRect(points.data(), &count, 1, box, pieces, counts);
    } else {
      tarnis::LineClipPolygon(Region()).Clip(points.data(), count, pieces, counts);
    }
    std::size_t next = 0;
    for (const unsigned int size : counts) {
      TrPolyline piece(Space(Points(pieces.begin() + static_cast<std::ptrdiff_t>(next),
                                    pieces.begin() + static_cast<std::ptrdiff_t>(next + size))));
      next += size;
      piece.Params() = params;
      texts_.push_back(TextOf(piece));
    }
  }

  Polygon2 Region() const {
    Counts counts = clipPath_.Counts();
    if (counts.empty()) counts = {static_cast<unsigned int>(clipPath_.Points().size())};
    return {Plane(clipPath_.Points()), counts};
  }

  bool Contains(const Box2d& box) const {
    const Polygon2 corners({box.min, {box.max.x, box.min.y}, box.max, {box.min.x, box.max.y}}, {4});
    return PolygonContains(Region(), corners);
  }

  static Points Plane(const std::vector<Vec3d>& points) {
    Points plane;
    for (const Vec3d& point : points) plane.emplace_back(point.x, point.y);
    return plane;
  }
  static std::vector<Vec3d> Space(const Points& points) {
    std::vector<Vec3d> space;
    for (const Vec2d& point : points) space.emplace_back(point.x, point.y, 0.0);
    return space;
  }

  TrClipPath clipPath_;
  TrPen pen_;
  std::vector<std::string> texts_;
  std::size_t warnings_ = 0;
};

// --- Random drawings, on a coarse grid so that points and edges often meet

class Shuffled : public TrPolygon {
 public:
  using TrPolygon::TrPolygon;
  static const corvel::CTypeInfo* GetClassTypeId() {
    static const corvel::CTypeInfo record("Shuffled", TrPolygon::GetClassTypeId());
    return &record;
  }
  const corvel::CTypeInfo* GetTypeId() const override { return GetClassTypeId(); }
  std::unique_ptr<TrBase> Clone() const override { return std::make_unique<Shuffled>(*this); }
};

class Drawing {
 public:
  explicit Drawing(unsigned seed) : random_(seed) {}

  std::unique_ptr<TrBase> Next() {
    std::unique_ptr<TrBase> object = Any();
    if (OneIn(random_, 2)) object->Params().Set(L"id", std::to_wstring(Below(random_, 100)));
    return object;
  }

 private:
  std::unique_ptr<TrBase> Any() {
    switch (Below(random_, 18)) {
      case 0:
      case 1:
        return ClipPath();
      case 2:
        return std::make_unique<TrPen>(TrPen::Style(Below(random_, 3)), Color4b(Below(random_, 99)),
                                       Coordinate());
      case 3:
        return std::make_unique<TrBrush>(TrBrush::Pattern(1 + Below(random_, 2)));
      case 4:
        return std::make_unique<TrFont>(L"Font " + std::to_wstring(Below(random_, 9)));
      case 5:
        return std::make_unique<TrText>(L"Text", Vec2d(Coordinate(), Coordinate()));
      case 6:
        return std::make_unique<TrImage>(new brindle::MemoryBitmap(1, 1, corvel::kColorFormat8),
                                         true);
      case 7:
        return std::make_unique<TrMetafile>(std::vector<unsigned char>{1}, Box());
      case 8:
        return Rings<Shuffled>();
      case 9:
      case 10:
        return Rings<TrPolygon>();
      case 11:
        return std::make_unique<TrMarkerSet>(SomePoints(Below(random_, 8)));
      case 12:
      case 13:
        return std::make_unique<TrRectangle>(Box(), Radius(), Radius());
      case 14:
      case 15:
        return std::make_unique<TrEllipse>(Box(), OneIn(random_, 3) ? 0.0 : Coordinate());
      default:
        return std::make_unique<TrPolyline>(SomePoints(Below(random_, 12)));
    }
  }

  double Coordinate() {
    const double whole = static_cast<double>(Below(random_, 41)) - 20;
    return OneIn(random_, 4) ? whole + Below(random_, 1000) / 1000.0 : whole;
  }
  double Radius() { return OneIn(random_, 2) ? 0.0 : static_cast<double>(Below(random_, 6)); }
  Box2d Box() {
    if (OneIn(random_, 20)) return {};
    return {Coordinate(), Coordinate(), Coordinate(), Coordinate()};
  }

  std::vector<Vec3d> SomePoints(unsigned count) {
    std::vector<Vec3d> points;
    for (unsigned i = 0; i < count; ++i) {
      points.emplace_back(Coordinate(), Coordinate(), static_cast<double>(Below(random_, 5)));
    }
    if (count > 3 && OneIn(random_, 2)) points.back() = points.front();
    return points;
  }

  template <class Object>
  std::unique_ptr<Object> Rings() {
    const std::vector<Vec3d> points = SomePoints(Below(random_, 16));
    Counts counts;
    for (std::size_t left = points.size(); left > 0 && !OneIn(random_, 4);) {
      counts.push_back(Below(random_, static_cast<unsigned>(left) + 1));
      left -= counts.back();
    }
    return std::make_unique<Object>(points, counts);
  }

  std::unique_ptr<TrBase> ClipPath() {
    if (OneIn(random_, 8)) return std::make_unique<TrClipPath>();
    if (OneIn(random_, 2)) return Rings<TrClipPath>();
    const Box2d box(-static_cast<double>(Below(random_, 20)), -10, 10,
                    1.0 + static_cast<double>(Below(random_, 20)));
    Vec2d corners[4];
    box.GetCorners(corners);
    std::vector<Vec3d> points;
    for (const Vec2d& corner : corners) points.emplace_back(corner, 0.0);
    return std::make_unique<TrClipPath>(points);
  }

  std::mt19937 random_;
};

TEST(IoClippedImportFilter, DeliversWhatItsSlowModelDelivers) {
  std::size_t delivered = 0;
  for (unsigned seed = 1; seed <= 3000; ++seed) {
    SCOPED_TRACE(testing::Message() << "drawing " << seed);
    const CapturedLog log;
    RecordingManager manager;
    OpenFilter filter(manager);
    Model model;
    Drawing drawing(seed);
    for (int i = 0; i < 40; ++i) {
      const std::unique_ptr<TrBase> object = drawing.Next();
      const std::string before = TextOf(*object);
      model.Take(*object);
      filter.ImportObject(*object);
      ASSERT_EQ(TextOf(*object), before) << "the caller's object has changed";
    }
    ASSERT_EQ(manager.Texts(), model.Texts());
    ASSERT_EQ(log.Messages().size(), model.Warnings());
    delivered += manager.Size();
  }
  EXPECT_GT(delivered, 100'000U) << "the drawings show too little";
}

}  // namespace
}  // namespace trovan::test
