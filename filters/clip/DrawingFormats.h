// The formats of drawings that can be read, and how each is opened.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include <corvel/Geometry.h>
#include <corvel/Progress.h>
#include <quillon/IoManager.h>
#include <tarnis/Polygon2.h>

#include "filters/drawing/DrawingFilter.h"
#include "filters/drawing/SvgPage.h"

namespace trovan::filters {

struct DrawingOptions {
  bool keepAttributes = false;
  std::optional<int> codePage;  // of attributes beside a drawing; nothing: what their file says
};

// A file that is to be imported.
class Drawing {
 public:
  virtual ~Drawing() = default;

  virtual DrawingFilter& Filter() = 0;

  // Delivers the drawing to the manager.
  virtual void Import() = 0;

  // A region whose coordinates are those of the file, in those of the drawing.
  virtual tarnis::Polygon2 ToDrawing(const tarnis::Polygon2& region) const = 0;
  // And back.
  virtual tarnis::Polygon2 ToFile(const tarnis::Polygon2& region) const = 0;

  // The page for what remains of the drawing within a box, in units of the drawing; the empty box:
  // for all of it. May read the whole file.
  virtual SvgPage Page(const corvel::Box2d& box) = 0;

  // What the drawing covers, in coordinates of the file; of a document, its page. May read the
  // whole file.
  virtual corvel::Box2d Extent() = 0;
};

// Whether the name of the file, or else its content, is that of a format that can be read.
bool IsDrawing(const std::wstring& path);

// Opens a drawing whose format its name tells, or else its content. `manager` is borrowed.
//
// Raises FilterError when the file is missing, or in none of the formats.
std::unique_ptr<Drawing> OpenDrawing(const std::wstring& path, const DrawingOptions& options,
                                     quillon::IoManager& manager);

}  // namespace trovan::filters
