// A writer of SVG that draws into memory, for tests.
#pragma once

#include <cstddef>
#include <string>

#include <gtest/gtest.h>
#include <quillon/TrBrush.h>
#include <quillon/TrPen.h>

#include "filters/drawing/SvgWriter.h"
#include "filters/support/StringSink.h"

namespace trovan::filters {

// Draws on a page of 100 by 50 on which a user unit is a unit of the drawing, y mirrored.
class SvgWriterTest : public testing::Test {
 protected:
  SvgWriterTest() : SvgWriterTest(SvgWriter::Attributes::kLeaveOut) {}
  explicit SvgWriterTest(SvgWriter::Attributes attributes) : writer_(sink_, attributes) {
    page_.viewBox = corvel::Box2d(0, 0, 100, 50);
  }

  template <typename T>
  void Add(T object) {
    if (!begun_) writer_.Begin(page_);
    begun_ = true;
    writer_.ImportObject(object);
  }
  void Pen(corvel::Color4b color, double width) {
    Add(quillon::TrPen(quillon::TrPen::kSolid, color, width));
  }
  void NoPen() { Add(quillon::TrPen(quillon::TrPen::kNone, {}, 0)); }
  void Brush(corvel::Color4b color) { Add(quillon::TrBrush(quillon::TrBrush::kSolid, color)); }

  // What stands between the tags of the root.
  std::string Body() {
    if (!begun_) writer_.Begin(page_);
    writer_.End();
    const std::string tail = "</svg>\n";
    const std::size_t head = sink_.text.find(">\n", 45) + 2;
    EXPECT_TRUE(sink_.text.ends_with(tail));
    return sink_.text.substr(head, sink_.text.size() - head - tail.size());
  }

  StringSink sink_;
  SvgPage page_;
  SvgWriter writer_;
  bool begun_ = false;
};

}  // namespace trovan::filters
