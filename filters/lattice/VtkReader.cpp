#include "VtkReader.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

#include <corvel/Text.h>

#include "filters/lattice/SwapBytes.h"
#include "filters/support/FilterError.h"

namespace trovan::filters {
namespace {

// "a, b, c"
std::string Join(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) {
    if (!text.empty()) text += ", ";
    text += name;
  }
  return text;
}

std::string DatasetName(LatticeResequencer::LatticeType type) {
  if (type == LatticeResequencer::Uniform) return "structured points";
  return type == LatticeResequencer::Rectilinear ? "rectilinear grid" : "structured grid";
}

// Packed elements as doubles.
void Widen(std::vector<unsigned char>& elements, corvel::PrimType type) {
  const auto size = static_cast<std::size_t>(corvel::CPrimType(type).Size());
  std::vector<unsigned char> wide(elements.size() / size * sizeof(double));
  for (std::size_t i = 0; i < elements.size() / size; ++i) {
    const double value = corvel::CPrimData::GetWideReal(type, &elements[i * size]);
    std::memcpy(&wide[i * sizeof value], &value, sizeof value);
  }
  elements = std::move(wide);
}

}  // namespace

VtkReader::VtkReader(const std::wstring& path, const std::string& arrayName) : scanner_(file_) {
  file_.Open(path, "rb", corvel::kFileShareRead, false);
  vtk_ = ReadVtkHeader(scanner_);
  ChooseArray(arrayName);
  Describe();
  if (header_.type == LatticeResequencer::Uniform) PlaceUniform();
  if (header_.type == LatticeResequencer::Rectilinear) PlaceRectilinear();
  if (header_.type == LatticeResequencer::Curvilinear) header_.coordType = *vtk_.points->type.prim;
}

void VtkReader::ChooseArray(const std::string& name) {
  const std::string file = corvel::Utf8FromWide(file_.GetPath());
  std::vector<std::string> names;
  for (const VtkArray& array : vtk_.pointArrays) names.push_back(array.name);
  if (names.empty()) {
    throw FilterError(file + " holds no values at its nodes" +
                      (vtk_.cellArrays.empty() ? std::string()
                                               : ", only at its cells: " + Join(vtk_.cellArrays)));
  }
  const auto chosen = name.empty() ? names.begin() : std::find(names.begin(), names.end(), name);
  if (chosen == names.end()) {
    throw FilterError(file + " has no array \"" + name + "\" at its nodes; it has " + Join(names));
  }
  array_ = vtk_.pointArrays[static_cast<std::size_t>(chosen - names.begin())];
  names.erase(chosen);
  const std::string others = Join(names);
  if (!array_.type.prim) {
    throw FilterError(file + ": array \"" + array_.name + "\" has elements of type " +
                      std::string(array_.type.name) + ", which no lattice can have" +
                      (others.empty() ? "" : "; --array chooses another: " + others));
  }
  if (!others.empty()) {
    header_.remarks.push_back("holds " + std::to_string(names.size()) +
                              (names.size() == 1 ? " more array: " : " more arrays: ") + others +
                              "; --array chooses one");
  }
}

void VtkReader::Describe() {
  if (array_.components > std::numeric_limits<unsigned>::max()) {
    throw FilterError(corvel::Utf8FromWide(file_.GetPath()) + ": array \"" + array_.name +
                      "\" has more components than a lattice can have");
  }
  header_.type = vtk_.type;
  header_.columns = vtk_.dimensions[0];
  header_.rows = vtk_.dimensions[1];
  header_.planes = vtk_.dimensions[2];
  header_.components = static_cast<unsigned>(array_.components);
  header_.dataType = *array_.type.prim;
  header_.rowOrder = RowOrder::kBottomUp;
  header_.title = vtk_.title;
  header_.format = "VTK " + DatasetName(vtk_.type) + (vtk_.isBinary ? ", binary" : ", text") +
                   ", version " + vtk_.version;
  // Names take memory: not for the millions of components that a file may promise.
  constexpr unsigned kMostNamed = 4096;
  if (header_.components == 1) {
    header_.componentNames.push_back(array_.name);
  } else if (header_.components <= kMostNamed) {
    for (unsigned i = 0; i < header_.components; ++i) {
      header_.componentNames.push_back(array_.name + '[' + std::to_string(i) + ']');
    }
  }
  if (!vtk_.cellArrays.empty()) {
    header_.remarks.push_back("the values of its cells are left out: " + Join(vtk_.cellArrays));
  }
  if (!vtk_.fieldArrays.empty()) {
    header_.remarks.push_back("the fields of the file as a whole are left out: " +
                              Join(vtk_.fieldArrays));
  }
}

void VtkReader::PlaceUniform() {
  if (!vtk_.origin) header_.remarks.emplace_back("tells no ORIGIN; 0 0 0 is taken");
  if (!vtk_.spacing) header_.remarks.emplace_back("tells no SPACING; 1 1 1 is taken");
  header_.origin = vtk_.origin.value_or(corvel::Vec3d{0.0, 0.0, 0.0});
  header_.spacing = vtk_.spacing.value_or(corvel::Vec3d{1.0, 1.0, 1.0});
  if (header_.spacing.y >= 0) return;
  header_.rowOrder = RowOrder::kTopDown;
  header_.origin.y += header_.spacing.y * (header_.rows - 1);
  header_.spacing.y = -header_.spacing.y;
  if (!std::isfinite(header_.origin.y)) {
    throw FilterError(corvel::Utf8FromWide(file_.GetPath()) +
                      ": the y coordinate of the bottom row is beyond the range of numbers");
  }
}

// All axes have one type in a lattice: where they differ, they become doubles.
void VtkReader::PlaceRectilinear() {
  const corvel::PrimType type = *vtk_.axes[0]->type.prim;
  const bool alike = std::all_of(vtk_.axes.begin(), vtk_.axes.end(),
                                 [type](const auto& axis) { return axis->type.prim == type; });
  header_.coordType = alike ? type : corvel::kDouble;
  for (std::size_t i = 0; i < vtk_.axes.size(); ++i) {
    const VtkArray& axis = *vtk_.axes[i];
    const std::size_t count = vtk_.dimensions[i];
    header_.axes[i].resize(count * (axis.type.bits / 8));
    scanner_.Return(axis.place);
    ReadRun(axis, header_.axes[i].data(), count);
    if (!alike) Widen(header_.axes[i], *axis.type.prim);
  }
  std::vector<unsigned char> turned = header_.axes[1];
  ReverseElements(turned, static_cast<std::size_t>(corvel::CPrimType(header_.coordType).Size()));
  if (!Ascends(turned, header_.coordType)) return;
  header_.rowOrder = RowOrder::kTopDown;
  header_.axes[1] = std::move(turned);
}

// Rows are counted from the bottom, in the file as they come.
unsigned VtkReader::RowAt(unsigned place) const {
  return header_.rowOrder == RowOrder::kTopDown ? header_.rows - 1 - place : place;
}

void VtkReader::ReadRun(const VtkArray& array, void* elements, std::size_t count) {
  const std::size_t size = array.type.bits / 8;
  if (vtk_.isBinary) {
    const std::size_t wanted = count * size;
    const std::size_t found = scanner_.ReadBytes(elements, wanted);
    if (found < wanted) {
      scanner_.Fail("expected " + std::to_string(wanted) + " bytes of " + Quoted(array.name) +
                    ", found only " + std::to_string(found));
    }
    if (!kMachineIsBigEndian) SwapBytes(elements, count, size);
    return;
  }
  const std::string expected = "a number of type " + std::string(array.type.name);
  auto* element = static_cast<unsigned char*>(elements);
  for (std::size_t i = 0; i < count; ++i, element += size) {
    scanner_.ReadNumber(*array.type.prim, element, expected);
  }
}

void VtkReader::ReadRows(LatticeRowSink& sink) {
  if (header_.type == LatticeResequencer::Curvilinear) {
    scanner_.Return(vtk_.points->place);
    std::vector<unsigned char> row(CoordinateRowSize(header_));
    for (unsigned z = 0; z < header_.planes; ++z) {
      for (unsigned place = 0; place < header_.rows; ++place) {
        ReadRun(*vtk_.points, row.data(), std::size_t{header_.columns} * 3);
        sink.TakeCoordinateRow(RowAt(place), z, row.data());
      }
    }
  }
  scanner_.Return(array_.place);
  std::vector<unsigned char> row(RowSize(header_));
  for (unsigned z = 0; z < header_.planes; ++z) {
    for (unsigned place = 0; place < header_.rows; ++place) {
      ReadRun(array_, row.data(), std::size_t{header_.columns} * header_.components);
      sink.TakeRow(RowAt(place), z, row.data());
    }
  }
}

}  // namespace trovan::filters
