// What becomes of an object: the dispatch by its class, the state of the drawing, and the objects
// that are not clipped.
#include <trovan/IoClippedImportFilter.h>

#include <utility>

#include <corvel/Color.h>
#include <corvel/Logger.h>
#include <corvel/TypeInfo.h>

#include "FlatPoints.h"

namespace trovan {

using corvel::Color4b;
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

namespace {

constexpr int kMetafileWarningLine = 557;  // fixed: logs are searched for it

// A clone is of its object's class.
template <class Object>
std::unique_ptr<Object> CloneOf(const Object& object) {
  std::unique_ptr<TrBase> clone = object.Clone();
  auto& typed = dynamic_cast<Object&>(*clone);
  static_cast<void>(clone.release());
  return std::unique_ptr<Object>(&typed);
}

tarnis::Polygon2 RegionOf(const TrClipPath& clipPath) {
  const auto& points = clipPath.Points();
  if (points.empty()) return {};
  return {Flat(points), RingCounts(clipPath.Counts(), points.size())};
}

// A log that fails stops no import.
void WarnOfMetafile() noexcept {
  try {
    corvel::g_Logger(corvel::kLogWarning,
                     L"Import of TrMetafile with clipping region! [Module %s, File %s, Line %d]",
                     L"Trovan", L"IoClippedImportFilter", kMetafileWarningLine);
  } catch (...) {
  }
}

}  // namespace

IoClippedImportFilter::IoClippedImportFilter(quillon::IoManager& manager)
    : IoImportFilter(manager),
      currentPen_(std::make_unique<TrPen>(TrPen::kDefault, Color4b(0), 0.0)),
      currentBrush_(std::make_unique<TrBrush>(TrBrush::kNone)),
      currentFont_(std::make_unique<TrFont>(L"")) {}

IoClippedImportFilter::~IoClippedImportFilter() = default;

// Deliberate: exact classes only; an object of a derived class may be anything.
void IoClippedImportFilter::ImportObject(TrBase& object) {
  const corvel::CTypeInfo* type = object.GetTypeId();
  const auto is = [type](const corvel::CTypeInfo* other) { return type == other; };

  if (is(TrClipPath::GetClassTypeId())) return ImportClipPath(dynamic_cast<TrClipPath&>(object));
  if (is(TrPen::GetClassTypeId())) return ImportPen(dynamic_cast<TrPen&>(object));
  if (is(TrBrush::GetClassTypeId())) return ImportBrush(dynamic_cast<TrBrush&>(object));
  if (is(TrFont::GetClassTypeId())) return ImportFont(dynamic_cast<TrFont&>(object));

  if (!clipPolygon_.IsEmpty()) {
    if (is(TrPolyline::GetClassTypeId())) return ImportPolyline(dynamic_cast<TrPolyline&>(object));
    if (is(TrPolygon::GetClassTypeId())) return ImportPolygon(dynamic_cast<TrPolygon&>(object));
    if (is(TrText::GetClassTypeId())) return ImportText(dynamic_cast<TrText&>(object));
    if (is(TrRectangle::GetClassTypeId()))
      return ImportRectangle(dynamic_cast<TrRectangle&>(object));
    if (is(TrEllipse::GetClassTypeId())) return ImportEllipse(dynamic_cast<TrEllipse&>(object));
    if (is(TrImage::GetClassTypeId())) return ImportImage(dynamic_cast<TrImage&>(object));
    if (is(TrMarkerSet::GetClassTypeId()))
      return ImportMarkerSet(dynamic_cast<TrMarkerSet&>(object));
    if (is(TrMetafile::GetClassTypeId())) return ImportMetafile(dynamic_cast<TrMetafile&>(object));
  }
  IoImportFilter::ImportObject(object);
}

// Both are made before either is replaced: what fails leaves the region before in place.
void IoClippedImportFilter::ImportClipPath(TrClipPath& clipPath) {
  clipPath.AssertValid();
  tarnis::Polygon2 region = RegionOf(clipPath);
  tarnis::LineClipPolygon lineClipper(region);
  clipPolygon_ = std::move(region);
  lineClipper_ = std::move(lineClipper);
}

void IoClippedImportFilter::ImportPen(TrPen& pen) {
  pen.AssertValid();
  currentPen_ = CloneOf(pen);
  IoImportFilter::ImportObject(pen);
}

void IoClippedImportFilter::ImportBrush(TrBrush& brush) {
  brush.AssertValid();
  currentBrush_ = CloneOf(brush);
  IoImportFilter::ImportObject(brush);
}

void IoClippedImportFilter::ImportFont(TrFont& font) {
  font.AssertValid();
  currentFont_ = CloneOf(font);
  IoImportFilter::ImportObject(font);
}

void IoClippedImportFilter::ImportText(TrText& text) {
  text.AssertValid();
  IoImportFilter::ImportObject(text);
}

void IoClippedImportFilter::ImportImage(TrImage& image) {
  image.AssertValid();
  IoImportFilter::ImportObject(image);
}

void IoClippedImportFilter::ImportMetafile(TrMetafile& metafile) {
  metafile.AssertValid();
  WarnOfMetafile();
  IoImportFilter::ImportObject(metafile);
}

}  // namespace trovan
