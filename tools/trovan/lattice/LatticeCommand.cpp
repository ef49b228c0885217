#include "lattice/LatticeCommand.h"

#include <cmath>
#include <cstdio>
#include <limits>
#include <string>

#include <corvel/Path.h>
#include <corvel/Text.h>

#include "Printable.h"
#include "lattice/LatticeArguments.h"

namespace trovan::tool {
namespace {

// Whether the text is a number in the range. Text that is none is left to the parser of numbers.
std::string CheckNumber(const std::string& text, double lowest, const char* otherwise) {
  double number = 0.0;
  if (!CLI::detail::lexical_cast(text, number)) return {};
  return std::isfinite(number) && number >= lowest ? "" : otherwise + text;
}

}  // namespace

const CLI::Validator kFinite(
    [](const std::string& text) {
      return CheckNumber(text, std::numeric_limits<double>::lowest(), "no finite number: ");
    },
    "");
const CLI::Validator kPercent(
    [](const std::string& text) { return CheckNumber(text, 0.0, "no percentage: "); }, "PERCENT");

std::wstring LatticeInput::Path() const { return corvel::PathFromSystem(file); }

std::string LatticeInput::Name() const { return corvel::Utf8FromWide(Path()); }

std::unique_ptr<filters::LatticeReader> LatticeInput::Open() const {
  return filters::OpenLattice(Path(), options);
}

void AddLatticeInput(CLI::App& command, LatticeInput& input) {
  command
      .add_option("file", input.file,
                  "The lattice: an ESRI ASCII grid (.asc), an SRTM height tile (.hgt), an ENVI "
                  "raster (.hdr or the raw file beside it), or a VTK legacy file (.vtk)")
      ->required();
  command
      .add_option("--planes", input.options.planes,
                  "ENVI: the bands are this many planes; band = plane x components + component")
      ->check(CLI::Range(1U, 0xFFFFFFFFU).description("COUNT"))
      ->capture_default_str();
  command.add_option("--array", input.options.array,
                     "VTK: take this array of point data instead of the first");
}

void Warn(const std::string& message) {
  std::fprintf(stderr, "trovan: %s\n", Printable(message).c_str());
}

void ShowRemarks(const LatticeInput& input, const filters::LatticeReader& reader) {
  for (const std::string& remark : reader.Header().remarks) Warn(input.Name() + ": " + remark);
}

void AddLatticeCommand(CLI::App& app, std::function<int()>& work) {
  auto* lattice = app.add_subcommand(
      "lattice", "Look into lattices (grids, rasters, volumes), convert and draw them");
  lattice->require_subcommand(1);
  AddLatticeInfo(*lattice, work);
  AddLatticeConvert(*lattice, work);
  AddLatticePreview(*lattice, work);
}

}  // namespace trovan::tool
