// Draws what arrives into an SVG document (W3C, "Scalable Vector Graphics 1.1", second edition).
//
//   SvgWriter writer(sink);
//   SomeFilter filter(writer);
//   writer.Begin(page);
//   filter.ImportFromFile(path, false);
//   writer.End();
#pragma once

#include <set>
#include <string>
#include <string_view>

#include <corvel/TypeInfo.h>
#include <quillon/IoManager.h>
#include <quillon/TrEllipse.h>
#include <quillon/TrImage.h>
#include <quillon/TrMarkerSet.h>
#include <quillon/TrPolygon.h>
#include <quillon/TrPolyline.h>
#include <quillon/TrRectangle.h>
#include <quillon/TrText.h>

#include "filters/drawing/ElementRuns.h"
#include "filters/drawing/PageCoordinates.h"
#include "filters/drawing/PathData.h"
#include "filters/drawing/SvgPage.h"
#include "filters/drawing/SvgStyle.h"
#include "filters/support/ByteSink.h"
#include "filters/support/OutputBuffer.h"
#include "filters/support/Problems.h"

namespace trovan::filters {

// Writes in the order in which objects arrive, and holds no more than two of them at a time. What
// neither fills nor draws is left out.
//
// A line of the thinnest pen is as thin on every scale. Markers are circles in the colour of the
// pen, of the same size on every page. Places on the page in user units are written so that they
// read back as the same numbers, unless the page wants them rounded; numbers that are computed
// (centres, widths, font sizes) have 15 digits.
class SvgWriter : public quillon::IoManager {
 public:
  enum class Attributes {
    kLeaveOut,
    kKeep,  // parameters of objects become attributes "data-<key>"
  };

  // `sink` outlives the writer.
  explicit SvgWriter(ByteSink& sink, Attributes attributes = Attributes::kLeaveOut);

  // Begins the document: once, before the first object.
  void Begin(const SvgPage& page);

  // Raises quillon::InvalidObject when the object contradicts itself, and what the sink raises.
  void ImportObject(quillon::TrBase& object) override;

  // Ends the document.
  void End();

  // What SVG cannot show: each kind of object once.
  const Problems& Remarks() const { return remarks_; }

 private:
  void RemarkLeftOut(const quillon::TrBase& object);
  bool ImportState(const quillon::TrBase& object);
  bool ImportShape(const quillon::TrBase& object);
  void Write(const quillon::TrPolygon& polygon);
  void Write(const quillon::TrPolyline& line);
  void Write(const quillon::TrRectangle& rectangle);
  void Write(const quillon::TrEllipse& ellipse);
  void Write(const quillon::TrMarkerSet& markers);
  void Write(const quillon::TrText& text);
  void Write(const quillon::TrImage& image);
  void WriteFlat(const quillon::TrBase& object, const corvel::Box2d& box, double angle);
  void AddPath(const quillon::TrBase& object, const std::string& style, const PathData& data,
               std::string_view more = {});

  // Attributes, each with a blank in front.
  std::string Number(const char* name, double value) const;
  std::string Place(const char* xName, const char* yName, const corvel::Vec2d& place) const;
  std::string Turn(double angle, const corvel::Vec2d& center) const;
  std::string TextPlace(const quillon::TrText& text) const;
  std::string ImagePlace(const quillon::TrImage& image) const;
  std::string Data(const quillon::TrBase& object) const;

  OutputBuffer out_;
  PageCoordinates coordinates_;
  bool keepsAttributes_;
  double markerRadius_ = 1.0;
  SvgStyle style_;
  ElementRuns runs_;
  Problems remarks_;
  std::set<const corvel::CTypeInfo*> unknown_;  // what was left out
};

}  // namespace trovan::filters
