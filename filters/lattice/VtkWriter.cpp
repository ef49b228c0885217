#include "VtkWriter.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string_view>
#include <vector>

#include "filters/lattice/ElementText.h"
#include "filters/lattice/SwapBytes.h"
#include "filters/lattice/VtkTypes.h"
#include "filters/support/FilterError.h"
#include "filters/support/OutputFile.h"

namespace trovan::filters {
namespace {

bool IsFinite(const corvel::Vec3d& v) {
  return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

double TopOf(const LatticeHeader& header) {
  return header.origin.y + header.spacing.y * (header.rows - 1);
}

// Whether y, turned around, is read as rows from the top down.
bool TellsTopFromBottom(const LatticeHeader& header) {
  if (header.rows == 1 || header.type == LatticeResequencer::Curvilinear) return true;
  if (header.type == LatticeResequencer::Uniform) return header.spacing.y > 0;
  return Ascends(header.axes[1], header.coordType);
}

std::string Numbers(const corvel::Vec3d& v) {
  std::string text;
  for (const double number : {v.x, v.y, v.z}) {
    text += ' ';
    AppendNumber(text, number);
  }
  return text;
}

// A line of up to 255 bytes, cut between characters of UTF-8.
std::string OneLine(std::string_view title) {
  constexpr std::size_t kLongest = 255;
  std::string line(title);
  std::replace_if(
      line.begin(), line.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
  if (line.size() > kLongest) {
    std::size_t end = kLongest;
    while (end > 0 && (static_cast<unsigned char>(line[end]) & 0xC0) == 0x80) --end;
    line.resize(end);
  }
  return line;
}

// The name of all components: of NAME[0], NAME[1] and so on. Else empty.
std::string SharedName(const std::vector<std::string>& names) {
  std::string name = names.front().substr(0, names.front().rfind('['));
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (names[i] != name + '[' + std::to_string(i) + ']') return {};
  }
  return name;
}

// As a word that is no keyword; some readers take "%" and two digits for a character.
std::string ArrayName(const LatticeHeader& header) {
  std::string name;
  if (header.componentNames.size() == 1) {
    name = header.componentNames.front();
  } else if (!header.componentNames.empty()) {
    name = SharedName(header.componentNames);
  }
  if (name.empty()) return "values";
  name = OneLine(name);
  std::replace_if(
      name.begin(), name.end(), [](char c) { return c == ' ' || c == '%' || c == '\x7F'; }, '_');
  return EqualsAnyCase(name, "metadata") ? name + '_' : name;
}

class VtkFileWriter {
 public:
  VtkFileWriter(corvel::CBufferedFile& file, const LatticeHeader& header,
                const LatticeWriteOptions& options)
      : file_(file),
        header_(header),
        asText_(options.asText),
        topDown_(options.rowOrder == RowOrder::kTopDown) {}

  void Write(LatticeRowSource& source) {
    WriteStart();
    if (header_.type == LatticeResequencer::Uniform) WritePosition();
    if (header_.type == LatticeResequencer::Rectilinear) WriteAxes();
    if (header_.type == LatticeResequencer::Curvilinear) WritePoints(source);
    WriteValues(source);
  }

 private:
  void Put(std::string_view text) { file_.Write(text.data(), text.size()); }

  std::string NodeCount() const {
    return std::to_string(std::uint64_t{header_.columns} * header_.rows * header_.planes);
  }

  void WriteStart() {
    std::string text = "# vtk DataFile Version 3.0\n" + OneLine(header_.title);
    text += asText_ ? "\nASCII\nDATASET " : "\nBINARY\nDATASET ";
    if (header_.type == LatticeResequencer::Uniform) text += "STRUCTURED_POINTS";
    if (header_.type == LatticeResequencer::Rectilinear) text += "RECTILINEAR_GRID";
    if (header_.type == LatticeResequencer::Curvilinear) text += "STRUCTURED_GRID";
    text += "\nDIMENSIONS " + std::to_string(header_.columns) + ' ' + std::to_string(header_.rows) +
            ' ' + std::to_string(header_.planes) + '\n';
    Put(text);
  }

  void WritePosition() {
    corvel::Vec3d origin = header_.origin;
    corvel::Vec3d spacing = header_.spacing;
    if (topDown_) {
      origin.y = TopOf(header_);
      spacing.y = -spacing.y;
    }
    Put("ORIGIN" + Numbers(origin) + "\nSPACING" + Numbers(spacing) + '\n');
  }

  void WriteAxes() {
    constexpr std::string_view kKeywords[] = {"X_COORDINATES ", "Y_COORDINATES ", "Z_COORDINATES "};
    const auto size = static_cast<std::size_t>(corvel::CPrimType(header_.coordType).Size());
    for (std::size_t i = 0; i < header_.axes.size(); ++i) {
      std::vector<unsigned char> axis = header_.axes[i];
      if (i == 1 && topDown_) ReverseElements(axis, size);
      const std::size_t count = axis.size() / size;
      Put(std::string(kKeywords[i]) + std::to_string(count) + ' ' +
          std::string(VtkTypeName(header_.coordType)) + '\n');
      WriteRun(header_.coordType, axis.data(), count);
      EndArray();
    }
  }

  void WritePoints(LatticeRowSource& source) {
    Put("POINTS " + NodeCount() + ' ' + std::string(VtkTypeName(header_.coordType)) + '\n');
    std::vector<unsigned char> row(CoordinateRowSize(header_));
    ForEachRow([&](unsigned y, unsigned z) {
      source.GiveCoordinateRow(y, z, row.data());
      WriteRun(header_.coordType, row.data(), std::size_t{header_.columns} * 3);
    });
    EndArray();
  }

  void WriteValues(LatticeRowSource& source) {
    constexpr unsigned kMostOfScalars = 4;
    const std::string name = ArrayName(header_);
    const std::string type(VtkTypeName(header_.dataType));
    const std::string components = std::to_string(header_.components);
    Put("POINT_DATA " + NodeCount() + '\n');
    if (header_.components <= kMostOfScalars) {
      Put("SCALARS " + name + ' ' + type + ' ' + components + "\nLOOKUP_TABLE default\n");
    } else {
      Put("FIELD FieldData 1\n" + name + ' ' + components + ' ' + NodeCount() + ' ' + type + '\n');
    }
    std::vector<unsigned char> row(RowSize(header_));
    ForEachRow([&](unsigned y, unsigned z) {
      source.GiveRow(y, z, row.data());
      WriteRun(header_.dataType, row.data(), std::size_t{header_.columns} * header_.components);
    });
    EndArray();
  }

  template <typename Visit>
  void ForEachRow(Visit&& visit) {
    for (unsigned z = 0; z < header_.planes; ++z) {
      for (unsigned place = 0; place < header_.rows; ++place) {
        visit(topDown_ ? header_.rows - 1 - place : place, z);
      }
    }
  }

  // Changes the elements.
  void WriteRun(corvel::PrimType type, unsigned char* elements, std::size_t count) {
    if (asText_) {
      WriteLineOfNumbers(file_, type, elements, count);
      return;
    }
    const auto size = static_cast<std::size_t>(corvel::CPrimType(type).Size());
    if (!kMachineIsBigEndian) SwapBytes(elements, count, size);
    file_.Write(elements, count * size);
  }

  void EndArray() {
    if (!asText_) Put("\n");
  }

  corvel::CBufferedFile& file_;
  const LatticeHeader& header_;
  bool asText_;
  bool topDown_;
};

}  // namespace

void VtkWriter::Check(const LatticeHeader& header) const {
  const auto require = [](bool isSo, std::string_view problem) {
    if (!isSo) throw FilterError("a VTK file " + std::string(problem));
  };
  require(
      !options_.interleave,
      "keeps the components of a node together and has no interleave; leave it out, or write an "
      "ENVI raster (.hdr)");
  require(options_.byteOrder != ByteOrder::kLittleEndian,
          "is big-endian; leave the byte order out, or write an ENVI raster (.hdr)");
  require(header.type != LatticeResequencer::Uniform ||
              (IsFinite(header.origin) && IsFinite(header.spacing)),
          "needs a finite position and finite steps");
  require(header.type != LatticeResequencer::Uniform || std::isfinite(TopOf(header)),
          "needs a finite position of its top row");
  require(options_.rowOrder != RowOrder::kTopDown || TellsTopFromBottom(header),
          "tells by descending y that its rows go from the top down, and y does not ascend in this "
          "lattice; leave the row order out");
}

void VtkWriter::Write(const LatticeHeader& header, LatticeRowSource& source) {
  OutputFile output(path_);
  output.Fill(
      [&](corvel::CBufferedFile& to) { VtkFileWriter(to, header, options_).Write(source); });
  output.Commit();
}

}  // namespace trovan::filters
