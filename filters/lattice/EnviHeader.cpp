#include "filters/lattice/EnviHeader.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "filters/lattice/EnviFields.h"
#include "filters/support/FilterError.h"
#include "filters/support/NumberText.h"

namespace trovan::filters {
namespace {

constexpr struct {
  unsigned code;
  corvel::PrimType type;
} kTypes[] = {
    {1, corvel::kUInt8},  {2, corvel::kInt16},   {3, corvel::kInt32},   {4, corvel::kFloat},
    {5, corvel::kDouble}, {12, corvel::kUInt16}, {13, corvel::kUInt32}, {14, corvel::kInt64},
};

constexpr struct {
  unsigned code;
  const char* what;
} kRefusedTypes[] = {
    {6, "complex numbers of two 32-bit floats"},
    {9, "complex numbers of two doubles"},
    {15, "unsigned 64-bit integers"},
};

constexpr struct {
  std::string_view name;
  Interleave interleave;
} kInterleaves[] = {
    {"bsq", Interleave::kBandSequential},
    {"bil", Interleave::kBandByLine},
    {"bip", Interleave::kBandByPixel},
};

// Fields that say where values lie in a raw file that is not just packed values, unless they are 0.
constexpr struct {
  std::string_view name;
  const char* what;
} kOtherLayouts[] = {
    {"file compression", "the values are compressed"},
    {"major frame offsets", "there are gaps between the rows"},
    {"minor frame offsets", "there are gaps between the rows"},
};

constexpr std::size_t kMapNumbers = 6;
constexpr std::size_t kMapItems = 1 + kMapNumbers;  // what follows them is kept as text

template <typename T>
bool ReadsAs(std::string_view text, T& value) {
  return ParseNumber(text, value) == NumberStatus::kNumber;
}

std::string InSmallLetters(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return text;
}

class Parser {
 public:
  Parser(std::string_view text, const std::string& file)
      : file_(file), fields_(SplitEnviFields(text, file)) {
    RefuseTwins();
  }

  EnviHeader Parse() {
    EnviHeader header;
    header.samples = ReadCount("samples");
    header.lines = ReadCount("lines");
    header.bands = ReadCount("bands");
    if (const EnviField* field = Take("header offset")) {
      if (!ReadsAs(field->value, header.headerOffset)) {
        FailInField(file_, *field, "a whole number of bytes, 0 or more");
      }
    }
    header.dataType = ReadDataType();
    header.interleave = ReadInterleave(header.bands > 1);
    header.byteOrder = ReadByteOrder(corvel::CPrimType(header.dataType).Size() > 1);
    header.dataIgnoreValue = ReadIgnoreValue();
    header.mapInfo = ReadMapInfo();
    if (const EnviField* field = Take("band names")) header.bandNames = SplitEnviList(field->value);
    if (const EnviField* field = Take("description")) header.description = field->value;
    for (const auto& [name, what] : kOtherLayouts) RefuseLayout(name, what);
    header.otherFields = NamesOfTheRest();
    return header;
  }

 private:
  void RefuseTwins() const {
    std::vector<const EnviField*> byName;
    byName.reserve(fields_.size());
    for (const EnviField& field : fields_) byName.push_back(&field);
    std::stable_sort(byName.begin(), byName.end(),
                     [](const auto* a, const auto* b) { return a->name < b->name; });
    const auto twin =
        std::adjacent_find(byName.begin(), byName.end(),
                           [](const auto* a, const auto* b) { return a->name == b->name; });
    if (twin == byName.end()) return;
    FailInLine(file_, twin[1]->line,
               twin[1]->name + " stands in line " + std::to_string(twin[0]->line) + " already");
  }

  // The field of that name, or null.
  const EnviField* Take(std::string_view name) {
    taken_.push_back(name);
    const auto found = std::find_if(fields_.begin(), fields_.end(),
                                    [name](const EnviField& f) { return f.name == name; });
    return found == fields_.end() ? nullptr : &*found;
  }

  const EnviField& Require(std::string_view name) {
    const EnviField* field = Take(name);
    if (field == nullptr) FailForMissing(name, "");
    return *field;
  }

  [[noreturn]] void FailForMissing(std::string_view name, const char* why) const {
    throw FilterError(file_ + " has no \"" + std::string(name) + "\"" + why);
  }

  std::uint32_t ReadCount(std::string_view name) {
    const EnviField& field = Require(name);
    std::uint32_t count = 0;
    if (!ReadsAs(field.value, count) || count == 0) {
      FailInField(
          file_, field,
          "a whole number from 1 to " + std::to_string(std::numeric_limits<std::uint32_t>::max()));
    }
    return count;
  }

  corvel::PrimType ReadDataType() {
    const EnviField& field = Require("data type");
    unsigned code = 0;
    if (ReadsAs(field.value, code)) {
      for (const auto& [known, type] : kTypes) {
        if (code == known) return type;
      }
      for (const auto& [known, what] : kRefusedTypes) {
        if (code != known) continue;
        FailInLine(
            file_, field.line,
            "data type " + std::to_string(code) + " (" + what + ") has no place in a lattice");
      }
    }
    FailInField(file_, field, "one of 1, 2, 3, 4, 5, 12, 13 and 14");
  }

  Interleave ReadInterleave(bool isNeeded) {
    const EnviField* field = Take("interleave");
    if (field == nullptr) {
      if (isNeeded) FailForMissing("interleave", ", and more than one band");
      return Interleave::kBandSequential;
    }
    const std::string value = InSmallLetters(field->value);
    for (const auto& [name, interleave] : kInterleaves) {
      if (value == name) return interleave;
    }
    FailInField(file_, *field, "bsq, bil or bip");
  }

  ByteOrder ReadByteOrder(bool isNeeded) {
    const EnviField* field = Take("byte order");
    if (field == nullptr) {
      if (isNeeded) FailForMissing("byte order", ", and values of several bytes");
      return ByteOrder::kLittleEndian;
    }
    unsigned order = 0;
    if (!ReadsAs(field->value, order) || order > 1) {
      FailInField(file_, *field, "0 (little-endian) or 1 (big-endian)");
    }
    return order == 0 ? ByteOrder::kLittleEndian : ByteOrder::kBigEndian;
  }

  std::optional<double> ReadIgnoreValue() {
    const EnviField* field = Take("data ignore value");
    if (field == nullptr) return std::nullopt;
    double value = 0.0;
    if (!ReadsAs(field->value, value)) FailInField(file_, *field, "a number");
    return value;
  }

  std::optional<EnviMapInfo> ReadMapInfo() {
    const EnviField* field = Take("map info");
    if (field == nullptr || field->value.empty()) return std::nullopt;
    std::vector<std::string> items = SplitEnviList(field->value);
    if (items.size() < kMapItems) {
      FailInField(file_, *field,
                  "a projection, the reference pixel's x and y, its easting and northing, and the "
                  "x and y size of a pixel");
    }
    EnviMapInfo info;
    info.projection = items[0];
    double* const numbers[kMapNumbers] = {&info.pixelX,   &info.pixelY, &info.easting,
                                          &info.northing, &info.xSize,  &info.ySize};
    for (std::size_t i = 0; i < kMapNumbers; ++i) {
      if (ReadsAs(items[i + 1], *numbers[i]) && std::isfinite(*numbers[i])) continue;
      FailInLine(file_, field->line,
                 "item " + std::to_string(i + 2) + " of map info is \"" + items[i + 1] +
                     "\", expected a number");
    }
    if (info.xSize == 0.0 || info.ySize == 0.0) {
      FailInLine(file_, field->line, "the pixels of map info have the size 0");
    }
    info.further.assign(items.begin() + kMapItems, items.end());
    return info;
  }

  void RefuseLayout(std::string_view name, const char* what) {
    const EnviField* field = Take(name);
    if (field == nullptr) return;
    for (const std::string& item : SplitEnviList(field->value)) {
      double value = 0.0;
      if (ReadsAs(item, value) && value == 0.0) continue;
      FailInLine(file_, field->line,
                 std::string(what) + " (" + field->name + "), which cannot be read");
    }
  }

  std::vector<std::string> NamesOfTheRest() const {
    std::vector<std::string> names;
    for (const EnviField& field : fields_) {
      const bool isPlainRaster =
          field.name == "file type" && InSmallLetters(field.value).starts_with("envi");
      const bool isTaken = std::find(taken_.begin(), taken_.end(), field.name) != taken_.end();
      if (!isPlainRaster && !isTaken) names.push_back(field.name);
    }
    return names;
  }

  const std::string& file_;
  std::vector<EnviField> fields_;
  std::vector<std::string_view> taken_;
};

unsigned CodeOf(corvel::PrimType type) {
  const auto* const found = std::find_if(std::begin(kTypes), std::end(kTypes),
                                         [type](const auto& known) { return known.type == type; });
  return found == std::end(kTypes) ? 0 : found->code;
}

// On one line: a name that holds a closing brace would else end the list.
std::string Braced(const std::vector<std::string>& items) {
  std::string text = "{";
  for (std::size_t i = 0; i < items.size(); ++i) text += (i == 0 ? "" : ", ") + items[i];
  return text + "}";
}

std::vector<std::string> MapItems(const EnviMapInfo& info) {
  std::vector<std::string> items{info.projection};
  for (const double number :
       {info.pixelX, info.pixelY, info.easting, info.northing, info.xSize, info.ySize}) {
    items.push_back(ShortestText(number));
  }
  items.insert(items.end(), info.further.begin(), info.further.end());
  return items;
}

}  // namespace

EnviHeader ParseEnviHeader(std::string_view text, const std::string& file) {
  return Parser(text, file).Parse();
}

std::string FormatEnviHeader(const EnviHeader& header) {
  std::string text = "ENVI\n";
  const auto add = [&text](std::string_view name, const std::string& value) {
    text.append(name).append(" = ").append(value).append("\n");
  };
  if (!header.description.empty()) add("description", Braced({header.description}));
  add("samples", std::to_string(header.samples));
  add("lines", std::to_string(header.lines));
  add("bands", std::to_string(header.bands));
  add("header offset", std::to_string(header.headerOffset));
  add("file type", "ENVI Standard");
  add("data type", std::to_string(CodeOf(header.dataType)));
  add("interleave", std::string(InterleaveName(header.interleave)));
  add("byte order", header.byteOrder == ByteOrder::kBigEndian ? "1" : "0");
  if (header.dataIgnoreValue) add("data ignore value", ShortestText(*header.dataIgnoreValue));
  if (header.mapInfo) add("map info", Braced(MapItems(*header.mapInfo)));
  if (!header.bandNames.empty()) add("band names", Braced(header.bandNames));
  return text;
}

std::string_view InterleaveName(Interleave interleave) {
  for (const auto& [name, known] : kInterleaves) {
    if (known == interleave) return name;
  }
  return {};
}

}  // namespace trovan::filters
