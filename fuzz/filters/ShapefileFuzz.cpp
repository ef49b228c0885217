// Any bytes as a shapefile, clipped to a region and drawn: an error, or valid objects whose
// documents differ in nothing but the attributes when there are none.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

#include <tarnis/Polygon2.h>

#include "Require.h"
#include "filters/drawing/SvgWriter.h"
#include "filters/geometry/ShapeImportFilter.h"
#include "filters/support/FilterError.h"
#include "support/TempFolder.h"

namespace {

using trovan::filters::ByteSink;
using trovan::filters::FilterError;
using trovan::filters::MapPage;
using trovan::filters::ShapeImportFilter;
using trovan::filters::SvgWriter;
using trovan::fuzz::Require;

class StringSink : public ByteSink {
 public:
  void Write(std::string_view bytes) override { text += bytes; }

  std::string text;
};

std::string Draw(const std::wstring& path, bool isClipped) {
  StringSink sink;
  SvgWriter writer(sink);
  ShapeImportFilter filter(writer);
  filter.GetImportFileInfo(ShapeImportFilter::kScanFile, path);
  writer.Begin(MapPage({0, 0, 10, 10}));
  if (isClipped) filter.SetRegion({{{0, 0}, {9, 1}, {8, 9}, {1, 8}}, {4}});
  filter.ImportFromFile(path, false);
  writer.End();
  const auto& counts = filter.Statistics();
  Require(isClipped || counts.whole == counts.Objects(), "objects are cut without a region");
  return sink.text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const trovan::test::TempFolder folder;
  trovan::test::WriteBytes(folder.Path() / "in.shp", std::string(data, data + size));
  const std::wstring path = folder.File(L"in.shp");
  try {
    for (const bool isClipped : {false, true}) {
      const std::string text = Draw(path, isClipped);
      Require(text.ends_with("</svg>\n"), "the document does not end");
      Require(text.find("nan") == std::string::npos, "a place is no number");
    }
  } catch (const FilterError&) {  // NOLINT(bugprone-empty-catch): as it must be
  }
  return 0;
}
