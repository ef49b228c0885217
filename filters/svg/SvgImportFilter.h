// Reads drawings in Scalable Vector Graphics.
//
//   SvgImportFilter filter(manager);
//   filter.Open(L"flag.svg");
//   filter.Scale();            // 2: a user unit of the document is two units of the drawing
//   filter.SetRegion(region);  // in units of the drawing
//   filter.ImportFromFile(L"flag.svg", false);
//   filter.Remarks();          // what could not be taken over
//
// A point (x, y) of the document is (x * Scale(), -y * Scale()) in the drawing, whose y points up.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <quillon/IoManager.h>

#include "filters/drawing/DrawingFilter.h"
#include "filters/drawing/SvgPage.h"

namespace trovan::filters {

class SvgDocument;

// Shapes become polygons, rectangles and ellipses of plain colours, without curves but for the last
// two; lines come behind the areas that they bound, each as a polyline, with the parameters
// "line-cap", "line-join" and "miter-limit" on the pen. Texts are objects of their own. Clip paths
// are intersected with each other and with the region; a line that a clip path of the document may
// cut comes as the area that its pen covers.
//
// Pictures are PNG and JPEG files, in the document or beside it; they come as TrImage objects that
// have their pixels in memory.
//
// Gradients become their mean colour; patterns, masks, filters, markers and the like are left out,
// with a remark for each kind.
class SvgImportFilter : public DrawingFilter {
 public:
  // `manager` is borrowed and must outlive the filter.
  explicit SvgImportFilter(quillon::IoManager& manager);
  ~SvgImportFilter() override;

  // Reads the document, and delivers nothing yet. The file is not read once more when it is the
  // next one that is imported.
  //
  // Raises FilterError with line and column where the file is no SVG document, and
  // corvel::Exception when the system cannot read it.
  void Open(const std::wstring& path);

  // Of the document that was read last.
  const SvgPage& Page() const { return page_; }
  double Scale() const { return page_.scale; }

  std::wstring GetFilterName() const override;
  std::vector<std::wstring> GetFileExtensions() const override;

  // Whether the root element of the file is "svg". Never raises.
  bool CanImport(const std::wstring& path) const override;

  // The extent is that of the page, in units of the drawing; empty where only the start of the file
  // is looked at, and does not tell it.
  ImportFileInfo GetImportFileInfo(FileScanMode mode, const std::wstring& path) override;

  // Raise what Open raises, and quillon::AbortError when the user stops the work.
  void ImportFromFile(const std::wstring& path, bool isPreview) override;
  void ImportFromMemory(const unsigned char* bytes, unsigned int count, bool isPreview) override;

 private:
  void Read(std::string_view bytes, const std::string& name);
  void Deliver();

  std::unique_ptr<SvgDocument> document_;  // null: none is open
  std::wstring path_;                      // of the document; empty: it came from memory
  SvgPage page_;
};

}  // namespace trovan::filters
