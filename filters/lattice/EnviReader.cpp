#include "filters/lattice/EnviReader.h"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <corvel/Path.h>
#include <corvel/Text.h>

#include "filters/lattice/EnviPlace.h"
#include "filters/lattice/RasterValues.h"
#include "filters/support/FilterError.h"
#include "filters/support/NumberText.h"

namespace trovan::filters {
namespace {

std::string Name(const std::wstring& path) { return corvel::Utf8FromWide(path); }

std::string ReadHeaderText(const std::wstring& path) {
  // Bands by the ten thousand with all that can be said of each take a few mebibytes.
  constexpr std::size_t kMost = std::size_t{64} << 20;
  corvel::CBufferedFile file;
  file.Open(path, "rb", corvel::kFileShareRead, false);
  std::string text;
  char piece[16384];
  for (;;) {
    const std::size_t count = file.Read(&piece[0], sizeof piece);
    text.append(piece, count);
    if (count < sizeof piece) return text;
    if (text.size() > kMost) {
      throw FilterError(Name(path) + " is no ENVI header: it has more than 64 MiB");
    }
  }
}

std::string Joined(const std::vector<std::string>& items) {
  std::string text;
  for (const std::string& item : items) text += (text.empty() ? "" : ", ") + item;
  return text;
}

std::string Describe(const EnviHeader& header) {
  std::string text = "ENVI raster, band ";
  switch (header.interleave) {
    case Interleave::kBandSequential:
      text += "sequential";
      break;
    case Interleave::kBandByLine:
      text += "interleaved by line";
      break;
    case Interleave::kBandByPixel:
      text += "interleaved by pixel";
      break;
  }
  if (corvel::CPrimType(header.dataType).Size() == 1) return text;
  return text + (header.byteOrder == ByteOrder::kBigEndian ? ", big-endian" : ", little-endian");
}

// The angle of an item such as "rotation=30"; 0 when it is none.
double RotationIn(const std::string& item) {
  constexpr std::string_view kName = "rotation";
  const std::string name =
      corvel::Utf8FromWide(corvel::ToLower(corvel::WideFromUtf8(item.substr(0, kName.size()))));
  const std::size_t sign = item.find('=');
  if (name != kName || sign == std::string::npos) return 0.0;
  const std::size_t begin = item.find_first_not_of(" \t", sign + 1);
  if (begin == std::string::npos) return 0.0;
  double angle = 0.0;
  std::from_chars(item.data() + begin, item.data() + item.size(), angle);
  return angle;
}

}  // namespace

EnviReader::EnviReader(const std::wstring& path, unsigned planes)
    : files_(FindEnviFiles(path)),
      envi_(ParseEnviHeader(ReadHeaderText(files_.header), Name(files_.header))) {
  FillHeader(planes);
  raw_.Open(files_.raw, "rb", corvel::kFileShareRead, false);
  AddRemarks();
  CheckRawSize();
}

void EnviReader::FillHeader(unsigned planes) {
  if (planes == 0 || envi_.bands % planes != 0) {
    throw FilterError(Name(files_.header) + " has " + std::to_string(envi_.bands) +
                      " bands, which cannot be divided into " + std::to_string(planes) + " planes");
  }
  header_.columns = envi_.samples;
  header_.rows = envi_.lines;
  header_.planes = planes;
  header_.components = envi_.bands / planes;
  header_.dataType = envi_.dataType;
  header_.voidValue = envi_.dataIgnoreValue;
  header_.title = envi_.description;
  header_.format = Describe(envi_);
  if (planes == 1 && envi_.bandNames.size() == header_.components) {
    header_.componentNames = envi_.bandNames;
  }
  if (envi_.mapInfo) PlaceLattice(*envi_.mapInfo, header_);
  if (!std::isfinite(header_.origin.x) || !std::isfinite(header_.origin.y)) {
    throw FilterError(Name(files_.header) + ": by its map info the raster lies beyond all numbers");
  }
}

void EnviReader::AddRemarks() {
  if (envi_.mapInfo) AddMapRemarks(*envi_.mapInfo);
  if (!envi_.bandNames.empty() && header_.componentNames.empty()) {
    const std::size_t count = envi_.bandNames.size();
    header_.remarks.push_back(
        "The header has names for " + std::to_string(count) + " bands" +
        (count == envi_.bands ? "." : ", the raster has " + std::to_string(envi_.bands) + '.'));
  }
  if (!envi_.otherFields.empty()) {
    header_.remarks.push_back("The header also has: " + Joined(envi_.otherFields) + '.');
  }
}

void EnviReader::AddMapRemarks(const EnviMapInfo& info) {
  const std::string projection =
      corvel::Utf8FromWide(corvel::ToLower(corvel::WideFromUtf8(info.projection)));
  if (projection != "arbitrary") {
    std::vector<std::string> all{info.projection};
    all.insert(all.end(), info.further.begin(), info.further.end());
    header_.remarks.push_back("The map info has a projection: " + Joined(all) + '.');
  }
  for (const std::string& item : info.further) {
    const double angle = RotationIn(item);
    if (angle == 0.0) continue;
    header_.remarks.push_back("By the map info the raster is rotated by " + ShortestText(angle) +
                              " degrees; the lattice is not.");
  }
}

std::string EnviReader::ValuesText() const {
  return std::to_string(envi_.samples) + " x " + std::to_string(envi_.lines) + " x " +
         std::to_string(envi_.bands) + " values of " +
         std::to_string(corvel::CPrimType(envi_.dataType).Size()) + " bytes from byte " +
         std::to_string(envi_.headerOffset) + " on";
}

void EnviReader::CheckRawSize() {
  const auto present = static_cast<std::uint64_t>(raw_.GetLength());
  const auto values = RasterSize(header_);
  const bool isWhole =
      values && envi_.headerOffset <= present && *values <= present - envi_.headerOffset;
  if (!isWhole) {
    const bool isCountable = values && *values <= UINT64_MAX - envi_.headerOffset;
    throw FilterError(
        Name(files_.raw) + " has " + std::to_string(present) + " bytes, but by " +
        Name(files_.header) + " it should have " +
        (isCountable ? std::to_string(envi_.headerOffset + *values) : "more than any file can") +
        ": " + ValuesText());
  }
  const std::uint64_t rest = present - envi_.headerOffset - *values;
  if (rest > 0) {
    header_.remarks.push_back("The raw file has " + std::to_string(rest) +
                              " bytes after its last value.");
  }
}

void EnviReader::ReadRows(LatticeRowSink& sink) {
  const RasterLayout layout(header_, envi_.interleave, envi_.byteOrder, envi_.headerOffset);
  ReadRasterValues(raw_, layout, sink);
}

}  // namespace trovan::filters
