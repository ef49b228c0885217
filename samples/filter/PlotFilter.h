// An import filter for pen plots: text files with one order a line.
//
//   # A garden
//   PEN 40 120 40 0.5        the colour of lines, 0 to 255, and their width
//   FILL 200 230 200         the colour of areas; FILL alone leaves them empty
//   CLIP 0 0 40 0 40 30      cuts what follows to these corners; CLIP alone ends that
//   LINE 0 0 20 10 40 0      through points
//   AREA 5 5 35 5 20 25 / 15 10 25 10 20 20      rings: here a triangle with a hole
//   DISC 10 10 4             centre and radius
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <trovan/IoClippedImportFilter.h>

class PlotFilter : public trovan::IoClippedImportFilter {
 public:
  // A unit of the plot in units of the drawing. Curves that are clipped become lines that leave
  // them by up to a quarter of a unit of the drawing, which nobody should see; and to multiply by a
  // power of two is exact.
  static constexpr double kUnit = 64.0;

  explicit PlotFilter(quillon::IoManager& manager) : IoClippedImportFilter(manager) {}

  std::wstring GetFilterName() const override;
  std::vector<std::wstring> GetFileExtensions() const override;
  bool CanImport(const std::wstring& path) const override;

  // Raise std::runtime_error, which names the line, where an order cannot be understood.
  void ImportFromFile(const std::wstring& path, bool isPreview) override;
  void ImportFromMemory(const unsigned char* bytes, unsigned int count, bool isPreview) override;

 private:
  using Words = std::vector<std::string_view>;  // of a line: an order and what it takes

  struct Order {
    std::string_view name;
    void (PlotFilter::*import)(const Words&);
  };
  static const Order kOrders[];

  void ImportText(std::string_view text);
  void ImportLine(const Words& words);

  void Pen(const Words& words);
  void Fill(const Words& words);
  void Clip(const Words& words);
  void Line(const Words& words);
  void Area(const Words& words);
  void Disc(const Words& words);
};
