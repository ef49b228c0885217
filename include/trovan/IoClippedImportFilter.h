// The base of filters that import drawings: it cuts what they read to the clip region that the
// drawing itself sets.
//
//   class PlotterFilter : public IoClippedImportFilter {
//    public:
//     explicit PlotterFilter(quillon::IoManager& manager) : IoClippedImportFilter(manager) {}
//     void ImportFromFile(const std::wstring& path, bool) override {
//       ...
//       TrClipPath frame({{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}});
//       ImportObject(frame);
//       TrPolyline line({{5, 5, 0}, {15, 5, 0}});
//       ImportObject(line);  // the manager gets the line from (5, 5) to (10, 5)
//       ...
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include <corvel/Geometry.h>
#include <corvel/ParamList.h>
#include <quillon/IoImportFilter.h>
#include <quillon/IoManager.h>
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
#include <tarnis/LineClipPolygon.h>
#include <tarnis/Polygon2.h>
#include <velum/Path.h>

#include <trovan/Export.h>

namespace trovan {

// A concrete filter derives from this class and hands each object that it reads to ImportObject, in
// the order of the drawing. Each object that comes of it is delivered to the manager, by the base's
// IoImportFilter::ImportObject and before this class's ImportObject returns.
//
// Before the first clip path there is no clip region: nothing is clipped. One filter serves one
// import on one thread.
class TROVAN_API IoClippedImportFilter : public quillon::IoImportFilter {
 public:
  ~IoClippedImportFilter() override;

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Woverloaded-virtual"
#endif
  // Takes the next object of the drawing; what becomes of it depends on its exact class:
  //
  // - A clip path becomes the clip region, in the place of the one before, and is not delivered.
  // - Pens, brushes and fonts are delivered, and the filter keeps a copy of the last one of each.
  // - While there is a clip region, shapes are delivered whole, cut to it, or not at all: lines,
  //   polygons, rectangles, ellipses and marker sets. Texts and images are not clipped yet.
  //   Metafiles cannot be, and log a warning.
  // - All else is delivered as it is, objects of derived classes too.
  //
  // Raises what the object's AssertValid raises; the object then counts as not given. Whatever the
  // manager and memory raise passes through.
  //
  // Deliberate: hides the virtual operation of the base, which delivers without clipping, so that
  // objects on their way out never come back here.
  void ImportObject(quillon::TrBase& object);
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

 protected:
  // `manager` is borrowed and must outlive the filter.
  explicit IoClippedImportFilter(quillon::IoManager& manager);

  // State of the drawing. A clip path without points ends clipping. It is not cut to the region
  // before: a later one may as well be larger.
  void ImportClipPath(quillon::TrClipPath& clipPath);
  void ImportPen(quillon::TrPen& pen);
  void ImportBrush(quillon::TrBrush& brush);
  void ImportFont(quillon::TrFont& font);

  // Shapes, each for a clip region that there is. Objects without points are delivered as they are.

  // Its pieces within the region arrive as lines of their own, even where that is all of it.
  void ImportPolyline(quillon::TrPolyline& polyline);
  void ImportPolygon(quillon::TrPolygon& polygon);

  // Is delivered as it is where its box, or that of its rounded outline, lies within the region;
  // else its outline is clipped as a polygon.
  void ImportRectangle(quillon::TrRectangle& rectangle);

  // The same. Deliberate: the first look is at the box before it is turned; an ellipse whose box
  // lies within the region passes whole, even where it reaches out of it once it is turned.
  void ImportEllipse(quillon::TrEllipse& ellipse);

  // Its markers within the region arrive as one set, whose points keep their heights.
  void ImportMarkerSet(quillon::TrMarkerSet& markers);

  // Not clipped yet: delivered as they are.
  void ImportText(quillon::TrText& text);
  void ImportImage(quillon::TrImage& image);

  // Delivered as it is; logs a warning.
  void ImportMetafile(quillon::TrMetafile& metafile);

  // Clips what the path encloses, its curves replaced by lines that leave them by at most a quarter
  // of a unit of the drawing.
  void ClipAndPass2DPath(const velum::Path& path, const corvel::CParamList& params);

  // Clips an area, whose rings have `counts` points each, one ring after the other. Where the
  // region holds its bounding box, it arrives as one polygon. Otherwise its part within the region,
  // if there is any, arrives as a polygon that no line is drawn around, between a pen that draws
  // none and the current pen; and then what lies within the region of the area's own outline, as
  // polylines. So the boundary of the region is never drawn.
  //
  // Without points or without counts nothing is delivered. Points beyond the counts are in no ring.
  void ClipAndPass2DPolygon(const std::vector<corvel::Vec2d>& points,
                            const std::vector<unsigned int>& counts,
                            const corvel::CParamList& params);

  // Delivers a polygon with these points, counts and parameters; nothing if there are no points.
  void PassClippedPolygon(const std::vector<corvel::Vec2d>& points,
                          const std::vector<unsigned int>& counts,
                          const corvel::CParamList& params);

  // Delivers the pieces of one open line that lie within the region.
  //
  // REQUIRES: `points` points to `count` points.
  void ClipAndPass2DPolyline(const corvel::Vec2d* points, std::size_t count,
                             const corvel::CParamList& params);

  // Delivers a polyline for each count, of as many of the points as it says, one after the other;
  // none for a count of 0. Counts beyond the points find none.
  void PassClippedPolylines(const std::vector<corvel::Vec2d>& points,
                            const std::vector<unsigned int>& counts,
                            const corvel::CParamList& params);

  // Delivers a polyline with these points and parameters; nothing if there are no points.
  //
  // REQUIRES: `points` points to `count` points.
  void PassPolyline(const corvel::Vec2d* points, std::size_t count,
                    const corvel::CParamList& params);

  // To points of height 0, and to points without their heights.
  //
  // REQUIRES: both point to `count` points and do not overlap.
  static void CopyCoords(corvel::Vec3d* to, const corvel::Vec2d* from, std::size_t count);
  static void CopyCoords(corvel::Vec2d* to, const corvel::Vec3d* from, std::size_t count);

 private:
  void StrokeRings(const std::vector<corvel::Vec2d>& points,
                   const std::vector<unsigned int>& counts, const corvel::CParamList& params);

  // Without rings: there is no clip region.
  tarnis::Polygon2 clipPolygon_;
  tarnis::LineClipPolygon lineClipper_;  // of the same region

  // Copies of the last ones; never null.
  std::unique_ptr<quillon::TrPen> currentPen_;
  std::unique_ptr<quillon::TrBrush> currentBrush_;
  std::unique_ptr<quillon::TrFont> currentFont_;
};

}  // namespace trovan
