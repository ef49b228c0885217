#include "filters/lattice/Formats.h"

#include <algorithm>
#include <array>
#include <string_view>

#include <corvel/Path.h>
#include <corvel/Text.h>

#include "filters/lattice/AsciiGridReader.h"
#include "filters/lattice/AsciiGridWriter.h"
#include "filters/lattice/EnviReader.h"
#include "filters/lattice/EnviWriter.h"
#include "filters/lattice/HgtReader.h"
#include "filters/lattice/HgtWriter.h"
#include "filters/lattice/VtkReader.h"
#include "filters/lattice/VtkWriter.h"
#include "filters/support/FilterError.h"
#include "filters/support/InputFile.h"

namespace trovan::filters {
namespace {

// What raw files beside an ENVI header are called.
constexpr std::array<std::wstring_view, 8> kEnviExtensions = {L".hdr", L".img", L".dat", L".raw",
                                                              L".bsq", L".bil", L".bip", L".bin"};

std::wstring Extension(const std::wstring& path) {
  return corvel::ToLower(corvel::CPath(path).GetExtension());
}

bool IsEnviExtension(const std::wstring& extension) {
  return std::find(kEnviExtensions.begin(), kEnviExtensions.end(), extension) !=
         kEnviExtensions.end();
}

[[noreturn]] void FailOnExtension(const std::wstring& path) {
  throw FilterError(corvel::Utf8FromWide(path) +
                    ": the name does not tell the format; .asc is an ESRI ASCII grid, .hgt an SRTM "
                    "height tile, .vtk a VTK legacy file, .hdr (or .img, .dat, .raw, .bsq, .bil, "
                    ".bip, .bin with a .hdr beside it) an ENVI raster");
}

// A raw file of any name with its header beside it.
bool HasEnviHeader(const std::wstring& path) {
  corvel::CPath header(path);
  header.SetExtension(L".hdr");
  return corvel::FileExists(path + L".hdr") || corvel::FileExists(header.GetPath());
}

void RefusePlanes(const std::wstring& path, const LatticeReadOptions& options) {
  if (options.planes == 1) return;
  throw FilterError(corvel::Utf8FromWide(path) +
                    ": only the bands of an ENVI raster can be divided into planes");
}

void RefuseArray(const std::wstring& path, const LatticeReadOptions& options) {
  if (options.array.empty()) return;
  throw FilterError(corvel::Utf8FromWide(path) + ": only a VTK file holds arrays to choose from");
}

}  // namespace

std::unique_ptr<LatticeReader> OpenLattice(const std::wstring& path,
                                           const LatticeReadOptions& options) {
  RequireFile(path);
  const std::wstring extension = Extension(path);
  if (extension == L".vtk") {
    RefusePlanes(path, options);
    return std::make_unique<VtkReader>(path, options.array);
  }
  RefuseArray(path, options);
  // A raw file of ENVI may have no extension at all.
  const bool isKnown = extension == L".asc" || extension == L".hgt";
  if (extension.empty() || IsEnviExtension(extension) || (!isKnown && HasEnviHeader(path))) {
    return std::make_unique<EnviReader>(path, options.planes);
  }
  RefusePlanes(path, options);
  if (extension == L".asc") return std::make_unique<AsciiGridReader>(path);
  if (extension == L".hgt") return std::make_unique<HgtReader>(path);
  FailOnExtension(path);
}

std::unique_ptr<LatticeWriter> MakeLatticeWriter(const std::wstring& path,
                                                 const LatticeWriteOptions& options) {
  const std::wstring extension = Extension(path);
  if (extension == L".asc") return std::make_unique<AsciiGridWriter>(path, options);
  if (extension == L".hgt") return std::make_unique<HgtWriter>(path, options);
  if (extension == L".vtk") return std::make_unique<VtkWriter>(path, options);
  if (IsEnviExtension(extension)) return std::make_unique<EnviWriter>(path, options);
  FailOnExtension(path);
}

}  // namespace trovan::filters
