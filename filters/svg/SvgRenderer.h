// Walks through a document and draws what it shows.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <pugixml.hpp>
#include <corvel/Geometry.h>

#include "filters/svg/SvgClipPaths.h"
#include "filters/svg/SvgContext.h"
#include "filters/svg/SvgDocument.h"
#include "filters/svg/SvgGuard.h"
#include "filters/svg/SvgPainter.h"
#include "filters/svg/SvgPictures.h"
#include "filters/svg/SvgRemarks.h"
#include "filters/svg/SvgShapes.h"

namespace trovan::filters {

class SvgRenderer {
 public:
  // Gets told now and then which part of the work is done.
  using Progress = std::function<void(double)>;

  // `path` is where the document lies; empty: nowhere. All others are borrowed.
  SvgRenderer(const SvgDocument& document, std::wstring path, SvgPainter& painter,
              SvgRemarks& remarks, Progress progress);

  // `outer` is the space in which the document stands.
  void Draw(const SvgContext& outer);

 private:
  class Clip;

  void DrawElement(const pugi::xml_node& node, const SvgContext& parent);
  void DrawContent(const pugi::xml_node& node, const SvgContext& context);
  void DrawGroup(const pugi::xml_node& node, const SvgContext& context);
  void DrawShape(const pugi::xml_node& node, const SvgShape& shape, const SvgContext& context);
  void Fill(const SvgShape& shape, const std::vector<FlatLine>& lines, const SvgContext& context,
            const corvel::Color4b& color);
  bool FillPlainly(const SvgShape& shape, const SvgContext& context, const corvel::Color4b& color);
  void DrawLines(const pugi::xml_node& node, const std::vector<FlatLine>& lines,
                 const SvgContext& context, const corvel::Color4b& color);
  void DrawImage(const pugi::xml_node& node, const SvgContext& context);
  void DrawTexts(const pugi::xml_node& node, const SvgContext& context);
  void NoteOmissions(const pugi::xml_node& node, const SvgContext& context);

  const SvgDocument& document_;
  SvgPainter& painter_;
  SvgRemarks& remarks_;
  Progress progress_;
  SvgGuard guard_;
  SvgClipPaths clipPaths_;
  SvgPictures pictures_;
};

}  // namespace trovan::filters
