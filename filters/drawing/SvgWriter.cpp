#include "SvgWriter.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include <corvel/Text.h>

#include "filters/drawing/ImageData.h"
#include "filters/drawing/XmlText.h"
#include "filters/support/NumberText.h"

namespace trovan::filters {
namespace {

using corvel::Box2d;
using corvel::Mat3d;
using corvel::Vec2d;
using corvel::Vec3d;
using quillon::TrText;

// Of the larger side of the page.
constexpr double kMarkerRadius = 0.003;

double MarkerRadius(const SvgPage& page) {
  const double larger = std::max(page.viewBox.Width(), page.viewBox.Height());
  return larger > 0.0 ? larger * kMarkerRadius : 1.0;
}

std::string Size(const char* name, const std::string& length) {
  std::string text;
  if (length.empty()) return text;
  text += std::string(" ") + name + "=\"";
  AppendXmlText(text, corvel::WideFromUtf8(length));
  return text + '"';
}

std::string Root(const SvgPage& page, const PageCoordinates& coordinates) {
  std::string root =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\"";
  root += Size("width", page.width) + Size("height", page.height) + " viewBox=\"";
  const Box2d& box = page.viewBox;
  for (const double value : {box.min.x, box.min.y, box.Width(), box.Height()}) {
    if (root.back() != '"') root += ' ';
    coordinates.AppendDerived(root, value);
  }
  if (!page.aspectRatio.empty()) {
    root += "\" preserveAspectRatio=\"";
    AppendXmlText(root, corvel::WideFromUtf8(page.aspectRatio));
  }
  // What SVG would do otherwise: fill everything, by the non-zero rule.
  return root + "\" fill=\"none\" fill-rule=\"evenodd\">\n";
}

const char* Anchor(TrText::HorizontalAlignment alignment) {
  switch (alignment) {
    case TrText::kCenter:
      return " text-anchor=\"middle\"";
    case TrText::kRight:
      return " text-anchor=\"end\"";
    default:
      return "";
  }
}

const char* Baseline(TrText::VerticalAlignment alignment) {
  switch (alignment) {
    case TrText::kTop:
      return " dominant-baseline=\"text-before-edge\"";
    case TrText::kMiddle:
      return " dominant-baseline=\"central\"";
    case TrText::kBottom:
      return " dominant-baseline=\"text-after-edge\"";
    default:
      return "";
  }
}

// SVG makes one blank of several, and none at both ends.
const char* Space(const std::wstring& text) {
  const bool matters =
      text.front() == L' ' || text.back() == L' ' || text.find(L"  ") != std::wstring::npos;
  return matters ? " xml:space=\"preserve\"" : "";
}

bool IsIdentity(const Mat3d& map) {
  return map(0, 0) == 1.0 && map(0, 1) == 0.0 && map(1, 0) == 0.0 && map(1, 1) == 1.0;
}

Box2d Upright(const Box2d& box) {
  Box2d upright;
  const Vec2d corners[] = {box.min, box.max};
  upright.BoundPoints(corners, 2);
  return upright;
}

}  // namespace

SvgWriter::SvgWriter(ByteSink& sink, Attributes attributes)
    : out_(sink),
      keepsAttributes_(attributes == Attributes::kKeep),
      style_(coordinates_),
      runs_(out_) {}

void SvgWriter::Begin(const SvgPage& page) {
  coordinates_ = PageCoordinates(page);
  markerRadius_ = MarkerRadius(page);
  out_.Put(Root(page, coordinates_));
}

void SvgWriter::End() {
  runs_.End();
  out_.Put("</svg>\n");
  out_.Flush();
}

void SvgWriter::ImportObject(quillon::TrBase& object) {
  object.AssertValid();
  if (!ImportState(object) && !ImportShape(object)) RemarkLeftOut(object);
}

void SvgWriter::RemarkLeftOut(const quillon::TrBase& object) {
  if (unknown_.insert(object.GetTypeId()).second) {
    remarks_.Add("SVG cannot hold this, which was left out, and what is like it: " +
                 corvel::Utf8FromWide(object.Description()));
  }
}

bool SvgWriter::ImportState(const quillon::TrBase& object) {
  if (const auto* pen = dynamic_cast<const quillon::TrPen*>(&object)) {
    style_.Set(*pen);
  } else if (const auto* brush = dynamic_cast<const quillon::TrBrush*>(&object)) {
    style_.Set(*brush);
  } else if (const auto* font = dynamic_cast<const quillon::TrFont*>(&object)) {
    style_.Set(*font);
  } else {
    return false;
  }
  return true;
}

bool SvgWriter::ImportShape(const quillon::TrBase& object) {
  if (const auto* polygon = dynamic_cast<const quillon::TrPolygon*>(&object)) {
    Write(*polygon);
  } else if (const auto* line = dynamic_cast<const quillon::TrPolyline*>(&object)) {
    Write(*line);
  } else if (const auto* rectangle = dynamic_cast<const quillon::TrRectangle*>(&object)) {
    Write(*rectangle);
  } else if (const auto* ellipse = dynamic_cast<const quillon::TrEllipse*>(&object)) {
    Write(*ellipse);
  } else if (const auto* markers = dynamic_cast<const quillon::TrMarkerSet*>(&object)) {
    Write(*markers);
  } else if (const auto* text = dynamic_cast<const TrText*>(&object)) {
    Write(*text);
  } else if (const auto* image = dynamic_cast<const quillon::TrImage*>(&object)) {
    Write(*image);
  } else {
    return false;
  }
  return true;
}

// --- Shapes --------------------------------------------------------------------------------------

void SvgWriter::Write(const quillon::TrPolygon& polygon) {
  const std::string style = style_.OfAreas();
  if (style.empty()) return;
  PathData data(coordinates_);
  const Vec3d* point = polygon.Points().data();
  if (polygon.Counts().empty()) data.AddRing(point, polygon.Points().size());
  for (const unsigned int count : polygon.Counts()) {
    data.AddRing(point, count);
    point += count;
  }
  AddPath(polygon, style, data);
}

void SvgWriter::Write(const quillon::TrPolyline& line) {
  const std::string style = style_.OfLines();
  if (style.empty()) return;
  PathData data(coordinates_);
  data.AddLine(line.Points().data(), line.Points().size());
  AddPath(line, style, data);
}

void SvgWriter::Write(const quillon::TrRectangle& rectangle) {
  const std::string style = style_.OfAreas();
  if (style.empty() || rectangle.Box().IsEmpty()) return;
  const Box2d box = Upright(rectangle.Box());
  if (box.Width() == 0.0 || box.Height() == 0.0) return WriteFlat(rectangle, box, 0.0);
  std::string rest = Data(rectangle) + style_.ThinLine();
  rest += Place("x", "y", coordinates_.ToPage(Vec2d(box.min.x, box.max.y)));
  rest += Number("width", coordinates_.LengthToPage(box.Width()));
  rest += Number("height", coordinates_.LengthToPage(box.Height()));
  const double xRadius = coordinates_.LengthToPage(std::fabs(rectangle.XRadius()));
  const double yRadius = coordinates_.LengthToPage(std::fabs(rectangle.YRadius()));
  if (xRadius > 0.0 && yRadius > 0.0) {
    rest += Number("rx", xRadius);
    if (yRadius != xRadius) rest += Number("ry", yRadius);
  }
  runs_.Add(style, "rect", rest + "/>");
}

void SvgWriter::Write(const quillon::TrEllipse& ellipse) {
  const std::string style = style_.OfAreas();
  if (style.empty() || ellipse.Box().IsEmpty()) return;
  const Box2d box = Upright(ellipse.Box());
  if (box.Width() == 0.0 || box.Height() == 0.0) return WriteFlat(ellipse, box, ellipse.Angle());
  const Vec2d center = coordinates_.ToPage(box.Center());
  std::string rest =
      Data(ellipse) + style_.ThinLine() + Number("cx", center.x) + Number("cy", center.y);
  const double xRadius = coordinates_.LengthToPage(box.Width() / 2);
  const double yRadius = coordinates_.LengthToPage(box.Height() / 2);
  // Compared as they are written: bounds have errors of rounding.
  if (Number("r", xRadius) == Number("r", yRadius)) {
    return runs_.Add(style, "circle", rest + Number("r", xRadius) + "/>");
  }
  rest += Number("rx", xRadius) + Number("ry", yRadius) + Turn(ellipse.Angle(), center);
  runs_.Add(style, "ellipse", rest + "/>");
}

// SVG draws no rectangle or ellipse of no width or height, but a line.
void SvgWriter::WriteFlat(const quillon::TrBase& object, const Box2d& box, double angle) {
  const std::string style = style_.OfLines();
  if (style.empty()) return;
  PathData data(coordinates_);
  const Vec3d ends[] = {Vec3d(box.min, 0.0), Vec3d(box.max, 0.0)};
  data.AddLine(ends, 2);
  AddPath(object, style, data, Turn(angle, coordinates_.ToPage(box.Center())));
}

void SvgWriter::Write(const quillon::TrMarkerSet& markers) {
  const std::string style = style_.OfMarkers();
  if (style.empty() || markers.Points().empty()) return;
  const std::string radius = Number("r", markerRadius_) + "/>";
  const auto circle = [&](const Vec3d& point) {
    return Place("cx", "cy", coordinates_.ToPage(point)) + radius;
  };
  std::string rest = Data(markers);
  if (markers.Points().size() == 1) {
    return runs_.Add(style, "circle", rest + circle(markers.Points().front()));
  }
  rest += '>';
  for (const Vec3d& point : markers.Points()) rest += "<circle" + circle(point);
  runs_.Add(style, "g", rest + "</g>");
}

void SvgWriter::Write(const TrText& text) {
  const std::string style = style_.OfTexts(text.HasOutline());
  if (style.empty() || text.String().empty()) return;
  std::string rest = Data(text);
  if (text.HasOutline()) rest += style_.ThinLine();
  rest += TextPlace(text);
  rest += Anchor(text.GetHorizontalAlignment());
  rest += Baseline(text.GetVerticalAlignment());
  rest += Space(text.String());
  rest += '>';
  AppendXmlText(rest, text.String());
  runs_.Add(style, "text", rest + "</text>");
}

void SvgWriter::Write(const quillon::TrImage& image) {
  const brindle::GBitmap* bitmap = image.Bitmap();
  if (bitmap == nullptr || image.Placement().IsEmpty()) return;
  if (!CanHoldImage(*bitmap)) return RemarkLeftOut(image);
  std::string rest = Data(image) + ImagePlace(image) + R"( preserveAspectRatio="none" href=")";
  rest += ImageDataUri(*bitmap);
  runs_.Add({}, "image", rest + "\"/>");
}

void SvgWriter::AddPath(const quillon::TrBase& object, const std::string& style,
                        const PathData& data, std::string_view more) {
  if (data.Text().empty()) return;
  std::string rest = Data(object) + style_.ThinLine();
  rest += more;
  rest += " d=\"";
  rest += data.Text();
  runs_.Add(style, "path", rest + "\"/>");
}

// --- Attributes ----------------------------------------------------------------------------------

std::string SvgWriter::Number(const char* name, double value) const {
  std::string text = std::string(" ") + name + "=\"";
  coordinates_.AppendDerived(text, value);
  return text + '"';
}

std::string SvgWriter::Place(const char* xName, const char* yName, const Vec2d& place) const {
  std::string text = std::string(" ") + xName + "=\"";
  coordinates_.AppendPlace(text, place.x);
  text += std::string("\" ") + yName + "=\"";
  coordinates_.AppendPlace(text, place.y);
  return text + '"';
}

// Angles of drawings run counter-clockwise, those of pages clockwise.
std::string SvgWriter::Turn(double angle, const Vec2d& center) const {
  if (angle == 0.0) return {};
  std::string text = " transform=\"rotate(";
  constexpr int kDecimals = 9;
  AppendRounded(text, -angle * 180.0 / std::numbers::pi, kDecimals);
  for (const double value : {center.x, center.y}) {
    text += ' ';
    coordinates_.AppendDerived(text, value);
  }
  return text + ")\"";
}

std::string SvgWriter::TextPlace(const TrText& text) const {
  const Mat3d map = coordinates_.ToPage(text.Transform());
  const Vec2d anchor(coordinates_.LengthToPage(text.Anchor().x),
                     -coordinates_.LengthToPage(text.Anchor().y));
  if (IsIdentity(map)) {
    return Place("x", "y", {anchor.x + map(2, 0), anchor.y + map(2, 1)});
  }
  std::string attributes = " transform=\"matrix(";
  for (int row = 0; row < 2; ++row) {
    for (int column = 0; column < 2; ++column) {
      AppendNumber(attributes, map(row, column) == 0.0 ? 0.0 : map(row, column));
      attributes += ' ';
    }
  }
  coordinates_.AppendPlace(attributes, map(2, 0));
  attributes += ' ';
  coordinates_.AppendPlace(attributes, map(2, 1));
  return attributes + ")\"" + Place("x", "y", anchor);
}

// The top left corner of the picture and the ways along its top and its left side, on the page.
std::string SvgWriter::ImagePlace(const quillon::TrImage& image) const {
  const Box2d& box = image.Placement();
  Vec2d corners[] = {{box.min.x, box.max.y}, box.max, box.min};
  image.Transform().Transform(corners, corners, 3);
  const Vec2d start = coordinates_.ToPage(corners[0]);
  const Vec2d along = coordinates_.ToPage(corners[1]) - start;
  const Vec2d down = coordinates_.ToPage(corners[2]) - start;
  const bool isUpright = along.y == 0.0 && down.x == 0.0 && along.x > 0.0 && down.y > 0.0;
  if (isUpright) {
    return Place("x", "y", start) + Number("width", along.x) + Number("height", down.y);
  }
  std::string text = R"( width="1" height="1" transform="matrix()";
  for (const double value : {along.x, along.y, down.x, down.y, start.x, start.y}) {
    if (text.back() != '(') text += ' ';
    coordinates_.AppendDerived(text, value);
  }
  return text + ")\"";
}

std::string SvgWriter::Data(const quillon::TrBase& object) const {
  std::string data;
  if (!keepsAttributes_) return data;
  std::set<std::string> names;
  for (const auto& [key, value] : object.Params()) {
    std::string base = "data-";
    AppendXmlName(base, key);
    std::string name = base;
    for (int number = 2; !names.insert(name).second; ++number) {
      name = base + '_' + std::to_string(number);
    }
    data += ' ' + name + "=\"";
    AppendXmlText(data, value);
    data += '"';
  }
  return data;
}

}  // namespace trovan::filters
