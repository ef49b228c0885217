#include "VtkHeader.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>
#include <utility>

#include <corvel/Text.h>

#include "filters/lattice/VtkArrays.h"

namespace trovan::filters {
namespace {

// What a keyword of point or cell data is followed by: a name, and a type unless that is fixed.
struct Attribute {
  std::string_view keyword;
  unsigned components;
};
constexpr Attribute kAttributes[] = {
    {"vectors", 3},    {"normals", 3},      {"tensors", 9},    {"tensors6", 6},
    {"global_ids", 1}, {"pedigree_ids", 1}, {"edge_flags", 1},
};

class HeaderWalker {
 public:
  explicit HeaderWalker(TextScanner& scanner) : scanner_(scanner), arrays_(scanner) {}

  VtkHeader Read() {
    ReadVersion();
    header_.title = corvel::Utf8FromWide(corvel::WideFromUtf8(scanner_.NextLine()));
    ReadForm();
    ReadDataset();
    while (!scanner_.NextWord().empty()) {
      if (!ReadGeometry() && !ReadSection() && !ReadAttribute()) {
        scanner_.FailExpected("a keyword that belongs here");
      }
    }
    RequireGeometry();
    return std::move(header_);
  }

 private:
  enum class Section { kFile, kPoints, kCells };

  bool Is(std::string_view keyword) const { return EqualsAnyCase(scanner_.Word(), keyword); }

  // --- The first lines -------------------------------------------------------------------------

  void ReadVersion() {
    constexpr std::string_view kStart = "# vtk datafile version ";
    const std::string line = scanner_.NextLine();
    if (!EqualsAnyCase(std::string_view(line).substr(0, kStart.size()), kStart)) {
      scanner_.Fail("expected \"# vtk DataFile Version\", found " + Quoted(line));
    }
    const std::string version = line.substr(kStart.size());
    header_.version = version.substr(0, version.find_last_not_of(" \t") + 1);
    double number = 0;
    const bool isNumber = ParseNumber(header_.version, number) == NumberStatus::kNumber;
    if (!isNumber || !(number >= 1 && number < 6)) {
      scanner_.Fail("expected a version from 1.0 to 5.1, found " + Quoted(version));
    }
  }

  void ReadForm() {
    scanner_.ExpectWord("ASCII or BINARY");
    header_.isBinary = Is("binary");
    if (!header_.isBinary && !Is("ascii")) scanner_.FailExpected("ASCII or BINARY");
    arrays_.SetBinary(header_.isBinary);
  }

  void ReadDataset() {
    constexpr std::string_view kExpected =
        "STRUCTURED_POINTS, RECTILINEAR_GRID or STRUCTURED_GRID, which are lattices";
    scanner_.ExpectWord("DATASET");
    if (!Is("dataset")) scanner_.FailExpected("DATASET");
    scanner_.ExpectWord(kExpected);
    if (Is("structured_points")) {
      header_.type = LatticeResequencer::Uniform;
    } else if (Is("rectilinear_grid")) {
      header_.type = LatticeResequencer::Rectilinear;
    } else if (Is("structured_grid")) {
      header_.type = LatticeResequencer::Curvilinear;
    } else {
      scanner_.FailExpected(kExpected);
    }
  }

  // --- Where the nodes lie ---------------------------------------------------------------------

  bool ReadGeometry() {
    if (Is("dimensions")) {
      ReadDimensions();
      return true;
    }
    switch (header_.type) {
      case LatticeResequencer::Uniform:
        return ReadPosition();
      case LatticeResequencer::Rectilinear:
        return ReadAxis();
      case LatticeResequencer::Curvilinear:
        return ReadPoints();
    }
    return false;
  }

  void RequireFirst(bool isFirst) const {
    if (!isFirst) scanner_.Fail("a second " + std::string(scanner_.Word()));
  }

  void ReadDimensions() {
    RequireFirst(nodes_ == 0);
    nodes_ = 1;
    for (unsigned& dimension : header_.dimensions) {
      dimension = scanner_.ReadNumber<unsigned>("the number of nodes along an axis");
      if (dimension == 0) scanner_.FailExpected("a positive number of nodes along each axis");
      if (nodes_ >
          static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()) / dimension) {
        scanner_.Fail("there are more nodes than any file can hold");
      }
      nodes_ *= dimension;
      cells_ *= std::max(dimension, 2U) - 1;
    }
  }

  bool ReadPosition() {
    const bool isOrigin = Is("origin");
    if (!isOrigin && !Is("spacing") && !Is("aspect_ratio")) return false;
    std::optional<corvel::Vec3d>& position = isOrigin ? header_.origin : header_.spacing;
    RequireFirst(!position);
    position.emplace();
    for (double* number : {&position->x, &position->y, &position->z}) {
      *number = scanner_.ReadNumber<double>("a coordinate or step");
      if (!std::isfinite(*number)) scanner_.FailExpected("a finite number");
    }
    return true;
  }

  bool ReadAxis() {
    constexpr std::string_view kKeywords[] = {"x_coordinates", "y_coordinates", "z_coordinates"};
    for (std::size_t axis = 0; axis < 3; ++axis) {
      if (!Is(kKeywords[axis])) continue;
      RequireFirst(!header_.axes[axis]);
      header_.axes[axis] = ReadCoordinates(1, header_.dimensions[axis]);
      return true;
    }
    return false;
  }

  bool ReadPoints() {
    if (!Is("points")) return false;
    RequireFirst(!header_.points);
    header_.points = ReadCoordinates(3, nodes_);
    return true;
  }

  VtkArray ReadCoordinates(unsigned components, std::uint64_t tuples) {
    VtkArray array;
    array.name = scanner_.Word();
    RequireDimensions();
    array.components = components;
    array.tuples = ReadCountOf(tuples, "coordinates");
    array.type = arrays_.ReadType();
    if (!array.type.prim) scanner_.FailExpected("a type that a lattice can have");
    arrays_.Skip(array);
    return array;
  }

  std::uint64_t ReadCountOf(std::uint64_t expected, std::string_view what) {
    const std::string text = std::to_string(expected) + ", the number of " + std::string(what);
    if (arrays_.ReadCount(text) != expected) scanner_.FailExpected(text);
    return expected;
  }

  void RequireDimensions() const {
    if (nodes_ == 0) scanner_.FailExpected("DIMENSIONS");
  }

  void RequireGeometry() const {
    RequireDimensions();
    if (header_.type == LatticeResequencer::Rectilinear) {
      for (const auto& axis : header_.axes) {
        if (!axis) scanner_.FailExpected("X_COORDINATES, Y_COORDINATES and Z_COORDINATES");
      }
    }
    if (header_.type == LatticeResequencer::Curvilinear && !header_.points) {
      scanner_.FailExpected("POINTS");
    }
  }

  // --- What is known of them -------------------------------------------------------------------

  bool ReadSection() {
    if (Is("point_data")) {
      RequireDimensions();
      tuples_ = ReadCountOf(nodes_, "nodes");
      section_ = Section::kPoints;
    } else if (Is("cell_data")) {
      RequireDimensions();
      tuples_ = ReadCountOf(cells_, "cells");
      section_ = Section::kCells;
    } else if (Is("field")) {
      ReadField();
    } else if (Is("metadata")) {
      arrays_.SkipMetadata();
    } else {
      return false;
    }
    return true;
  }

  void ReadField() {
    const bool isOfFile = section_ == Section::kFile;
    arrays_.ReadField(isOfFile ? std::nullopt : std::optional(tuples_),
                      [this](VtkArray&& array) { Note(std::move(array)); });
  }

  // Attributes of points or cells.
  bool ReadAttribute() {
    if (section_ == Section::kFile) return false;
    if (Is("scalars")) return ReadScalars();
    if (Is("color_scalars")) return ReadColors();
    if (Is("lookup_table")) return SkipColorTable();
    if (Is("texture_coordinates")) return ReadTextureCoordinates();
    const auto* const attribute =
        std::find_if(std::begin(kAttributes), std::end(kAttributes),
                     [this](const Attribute& candidate) { return Is(candidate.keyword); });
    if (attribute == std::end(kAttributes)) return false;
    VtkArray array = NamedArray();
    array.components = attribute->components;
    array.type = arrays_.ReadType();
    return Take(std::move(array));
  }

  VtkArray NamedArray() {
    VtkArray array;
    array.name = arrays_.ReadName();
    array.tuples = tuples_;
    return array;
  }

  bool Take(VtkArray&& array) {
    arrays_.Skip(array);
    Note(std::move(array));
    return true;
  }

  bool ReadScalars() {
    VtkArray array = NamedArray();
    array.type = arrays_.ReadType();
    const std::string_view components = scanner_.NextWordOnLine();
    if (!components.empty() &&
        (ParseNumber(components, array.components) != NumberStatus::kNumber ||
         array.components < 1 || array.components > 4)) {
      scanner_.FailExpected("1 to 4 components");
    }
    scanner_.ExpectWord("LOOKUP_TABLE");
    if (!Is("lookup_table")) scanner_.FailExpected("LOOKUP_TABLE");
    scanner_.ExpectWord("the name of a lookup table");
    return Take(std::move(array));
  }

  // Colours are bytes in a binary file, and fractions of 1 as text.
  const VtkType& ColorType() const {
    return *FindVtkType(header_.isBinary ? "unsigned_char" : "float");
  }

  bool ReadColors() {
    VtkArray array = NamedArray();
    array.components = arrays_.ReadCount("the number of components");
    array.type = ColorType();
    return Take(std::move(array));
  }

  bool SkipColorTable() {
    VtkArray array;
    array.name = arrays_.ReadName();
    array.tuples = arrays_.ReadCount("the number of colours");
    array.components = 4;
    array.type = ColorType();
    arrays_.Skip(array);
    return true;
  }

  bool ReadTextureCoordinates() {
    VtkArray array = NamedArray();
    array.components = arrays_.ReadCount("1 to 3 components");
    if (array.components < 1 || array.components > 3) scanner_.FailExpected("1 to 3 components");
    array.type = arrays_.ReadType();
    return Take(std::move(array));
  }

  void Note(VtkArray&& array) {
    if (section_ == Section::kFile) header_.fieldArrays.push_back(std::move(array.name));
    if (section_ == Section::kCells) header_.cellArrays.push_back(std::move(array.name));
    if (section_ == Section::kPoints && array.components > 0) {
      header_.pointArrays.push_back(std::move(array));
    }
  }

  TextScanner& scanner_;
  VtkArrayWalker arrays_;
  VtkHeader header_;
  std::uint64_t nodes_ = 0;  // 0: not known yet
  std::uint64_t cells_ = 1;
  Section section_ = Section::kFile;
  std::uint64_t tuples_ = 0;  // of each array of the section
};

}  // namespace

VtkHeader ReadVtkHeader(TextScanner& scanner) { return HeaderWalker(scanner).Read(); }

}  // namespace trovan::filters
