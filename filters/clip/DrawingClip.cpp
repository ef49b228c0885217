#include "DrawingClip.h"

#include "filters/drawing/SvgWriter.h"

namespace trovan::filters {
namespace {

// A part of the whole work as the whole of its own.
class PartOfProgress : public corvel::IProgress {
 public:
  PartOfProgress(corvel::IProgress* whole, double from, double to)
      : whole_(whole), from_(from), to_(to) {}

  bool Update(double fraction) override {
    return corvel::UpdateProgress(whole_, from_ + (to_ - from_) * fraction);
  }

 private:
  corvel::IProgress* whole_;
  double from_;
  double to_;
};

bool NothingIsLeft(const ClipStatistics& counts) {
  return counts.dropped > 0 && counts.dropped == counts.Objects();
}

}  // namespace

DrawingClipResult ClipDrawing(const std::wstring& path, const DrawingOptions& options,
                              const tarnis::Polygon2& region, ByteSink& sink,
                              corvel::IProgress* progress) {
  // Reading alone takes less time than clipping what was read.
  constexpr double kPageFound = 0.25;
  SvgWriter writer(sink, options.keepAttributes ? SvgWriter::Attributes::kKeep
                                                : SvgWriter::Attributes::kLeaveOut);
  const auto drawing = OpenDrawing(path, options, writer);
  DrawingFilter& filter = drawing->Filter();

  PartOfProgress finding(progress, 0.0, kPageFound);
  filter.SetProgress(&finding);
  const tarnis::Polygon2 clip = drawing->ToDrawing(region);
  writer.Begin(drawing->Page(GetBoundingBox(clip)));

  PartOfProgress importing(progress, kPageFound, 1.0);
  filter.SetProgress(&importing);
  filter.SetRegion(clip);
  drawing->Import();
  writer.End();
  DrawingClipResult result{
      filter.Statistics(), filter.Losses(), filter.Remarks(), writer.Remarks(), {}};
  if (NothingIsLeft(result.statistics)) {
    result.apart = Extents{drawing->Extent(), GetBoundingBox(region)};
  }
  return result;
}

}  // namespace trovan::filters
