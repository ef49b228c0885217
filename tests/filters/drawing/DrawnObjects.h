// A manager that keeps what it gets as texts, for tests.
//
//   polygon 0 0, 4 0, 4 4 | 1 1, 2 1, 2 2 {NAME=Oslo}
//   line 0 0, 4 1     markers 1 2, 3 4     pen none     pen 0.5     brush
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <corvel/Text.h>
#include <quillon/IoManager.h>
#include <quillon/TrBrush.h>
#include <quillon/TrMarkerSet.h>
#include <quillon/TrPen.h>
#include <quillon/TrPolygon.h>
#include <quillon/TrPolyline.h>

#include "filters/support/NumberText.h"

namespace trovan::test {

class DrawnObjects : public quillon::IoManager {
 public:
  void ImportObject(quillon::TrBase& object) override {
    object.AssertValid();
    texts_.push_back(TextOf(object) + ParamsOf(object));
  }

  const std::vector<std::string>& Texts() const { return texts_; }

  // Without pens and brushes.
  std::vector<std::string> Drawables() const {
    std::vector<std::string> drawables;
    for (const std::string& text : texts_) {
      if (!text.starts_with("pen") && !text.starts_with("brush")) drawables.push_back(text);
    }
    return drawables;
  }

 private:
  static std::string PointsText(const corvel::Vec3d* points, std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
      text += (i == 0 ? " " : ", ") + filters::ShortestText(points[i].x) + ' ' +
              filters::ShortestText(points[i].y);
      if (points[i].z != 0.0) text += ' ' + filters::ShortestText(points[i].z);
    }
    return text;
  }

  static std::string TextOf(const quillon::TrBase& object) {
    if (const auto* pen = dynamic_cast<const quillon::TrPen*>(&object)) {
      return pen->Draws() ? "pen " + filters::ShortestText(pen->Width()) : "pen none";
    }
    if (const auto* line = dynamic_cast<const quillon::TrPolyline*>(&object)) {
      return "line" + PointsText(line->Points().data(), line->Points().size());
    }
    if (const auto* markers = dynamic_cast<const quillon::TrMarkerSet*>(&object)) {
      return "markers" + PointsText(markers->Points().data(), markers->Points().size());
    }
    if (const auto* polygon = dynamic_cast<const quillon::TrPolygon*>(&object)) {
      std::string text = "polygon";
      const corvel::Vec3d* point = polygon->Points().data();
      if (polygon->Counts().empty()) text += PointsText(point, polygon->Points().size());
      for (std::size_t i = 0; i < polygon->Counts().size(); ++i) {
        if (i > 0) text += " |";
        text += PointsText(point, polygon->Counts()[i]);
        point += polygon->Counts()[i];
      }
      return text;
    }
    if (dynamic_cast<const quillon::TrBrush*>(&object) != nullptr) return "brush";
    return corvel::Utf8FromWide(object.Description());
  }

  static std::string ParamsOf(const quillon::TrBase& object) {
    if (object.Params().IsEmpty()) return {};
    std::string text;
    for (const auto& [key, value] : object.Params()) {
      text += (text.empty() ? " {" : ", ") + corvel::Utf8FromWide(key) + '=' +
              corvel::Utf8FromWide(value);
    }
    return text + '}';
  }

  std::vector<std::string> texts_;
};

}  // namespace trovan::test
