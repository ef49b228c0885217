// Documents given as texts, and what is delivered of them.
#pragma once

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "clip/ClippedFixture.h"
#include "filters/svg/SvgImportFilter.h"

namespace trovan::filters {

class SvgTest : public testing::Test {
 protected:
  using Texts = std::vector<std::string>;

  // A document of 1000 by 1000, in which user units are those of the drawing.
  static std::string Page(const std::string& content) {
    return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
           "viewBox='0 0 1000 1000'>\n" +
           content + "</svg>";
  }

  void ImportDocument(const std::string& document) {
    manager_.Clear();
    filter_.ImportFromMemory(reinterpret_cast<const unsigned char*>(document.data()),
                             static_cast<unsigned>(document.size()), false);
  }

  // All that arrives of a page with this content.
  Texts Delivered(const std::string& content) {
    ImportDocument(Page(content));
    return manager_.Texts();
  }

  // What arrives that is no pen, brush or font.
  Texts Drawn(const std::string& content) {
    Texts drawn;
    for (const std::string& text : Delivered(content)) {
      const bool isState =
          text.starts_with("TrPen") || text.starts_with("TrBrush") || text.starts_with("TrFont");
      if (!isState) drawn.push_back(text);
    }
    return drawn;
  }

  // The same, as areas whose rings start where it is told.
  Texts DrawnAreas(const std::string& content) {
    ImportDocument(Page(content));
    Texts drawn;
    for (const std::string& text : manager_.AreaTexts()) {
      if (text.starts_with("TrPolygon")) drawn.push_back(text);
    }
    return drawn;
  }

  void SetRegion(double xMin, double yMin, double xMax, double yMax) {
    filter_.SetRegion({{{xMin, yMin}, {xMax, yMin}, {xMax, yMax}, {xMin, yMax}}, {4}});
  }

  std::vector<std::string> Remarks() const { return filter_.Remarks().First(); }

  test::RecordingManager manager_;
  SvgImportFilter filter_{manager_};
};

}  // namespace trovan::filters
