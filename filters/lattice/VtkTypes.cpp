#include "VtkTypes.h"

#include <algorithm>
#include <cstring>

#include "filters/lattice/NodeTypes.h"
#include "filters/support/NumberText.h"

namespace trovan::filters {
namespace {

// The first name of a type is the one that is written. A long has the width that it has where most
// such files are made; newer programs write vtktypeint64 instead. Identifiers are written as int.
constexpr VtkType kTypes[] = {
    {"char", 8, corvel::kInt8},
    {"signed_char", 8, corvel::kInt8},
    {"vtktypeint8", 8, corvel::kInt8},
    {"unsigned_char", 8, corvel::kUInt8},
    {"vtktypeuint8", 8, corvel::kUInt8},
    {"short", 16, corvel::kInt16},
    {"vtktypeint16", 16, corvel::kInt16},
    {"unsigned_short", 16, corvel::kUInt16},
    {"vtktypeuint16", 16, corvel::kUInt16},
    {"int", 32, corvel::kInt32},
    {"vtktypeint32", 32, corvel::kInt32},
    {"vtkidtype", 32, corvel::kInt32},
    {"unsigned_int", 32, corvel::kUInt32},
    {"vtktypeuint32", 32, corvel::kUInt32},
    {"vtktypeint64", 64, corvel::kInt64},
    {"long", 64, corvel::kInt64},
    {"float", 32, corvel::kFloat},
    {"double", 64, corvel::kDouble},
    {"bit", 1, std::nullopt},
    {"unsigned_long", 64, std::nullopt},
    {"vtktypeuint64", 64, std::nullopt},
};

}  // namespace

const VtkType* FindVtkType(std::string_view name) {
  const auto* const found =
      std::find_if(std::begin(kTypes), std::end(kTypes),
                   [&](const auto& type) { return EqualsAnyCase(name, type.name); });
  return found == std::end(kTypes) ? nullptr : found;
}

std::string_view VtkTypeName(corvel::PrimType type) {
  return std::find_if(std::begin(kTypes), std::end(kTypes),
                      [type](const auto& candidate) { return candidate.prim == type; })
      ->name;
}

bool EqualsAnyCase(std::string_view text, std::string_view small) {
  return std::equal(text.begin(), text.end(), small.begin(), small.end(), [](char a, char b) {
    return a == b || (a >= 'A' && a <= 'Z' && a - 'A' + 'a' == b);
  });
}

void ReverseElements(std::vector<unsigned char>& elements, std::size_t size) {
  std::reverse(elements.begin(), elements.end());
  for (std::size_t at = 0; at < elements.size(); at += size) {
    std::reverse(elements.data() + at, elements.data() + at + size);
  }
}

bool Ascends(const std::vector<unsigned char>& elements, corvel::PrimType type) {
  return VisitElementType(type, [&elements](auto first) {
    auto last = first;
    std::memcpy(&first, elements.data(), sizeof first);
    std::memcpy(&last, elements.data() + elements.size() - sizeof last, sizeof last);
    return first < last;
  });
}

}  // namespace trovan::filters
