#include "filters/lattice/NodeSteps.h"

#include <cmath>
#include <cstring>

#include <trovan/TypedArrays.h>

#include "filters/lattice/NodeTypes.h"
#include "filters/support/FilterError.h"

namespace trovan::filters {
namespace {

// The types whose values FilterOutOfRangeNodes compares.
bool CanBeCompared(corvel::PrimType type) {
  return type != corvel::kInt8 && type != corvel::kUInt8 && type != corvel::kInt64;
}

double Replacement(const LatticeHeader& header, const NodeOptions& options) {
  if (options.invalidReplacement) return *options.invalidReplacement;
  return header.voidValue && std::isfinite(*header.voidValue) ? *header.voidValue : 0.0;
}

void CheckOptions(const LatticeHeader& header, const NodeOptions& options) {
  if (options.validRange && !CanBeCompared(header.dataType)) {
    throw FilterError(
        "a valid range can be kept by nodes of 16 and 32 bits, floats and doubles; "
        "these are of the type " +
        std::string(NodeTypeName(header.dataType)));
  }
  if (options.validRange && !(options.validRange->lowest <= options.validRange->highest)) {
    throw FilterError("no value lies in the valid range: its lowest value has to come first");
  }
  if (!options.scale) return;
  if (!options.type) throw FilterError("values are scaled to a type; say which");
  if (!IsInteger(*options.type)) {
    throw FilterError("values are scaled to integer types; " +
                      std::string(NodeTypeName(*options.type)) + " takes them as they are");
  }
  if (options.scale->lowest == options.scale->highest) {
    throw FilterError("values cannot be scaled from a range that is empty");
  }
}

}  // namespace

NodeSteps::NodeSteps(const LatticeHeader& header, const NodeOptions& options,
                     const std::wstring& fileName)
    : options_(options),
      type_(header.dataType),
      count_(std::size_t{header.columns} * header.components),
      replacer_(fileName, header.dataType, Replacement(header, options), count_),
      result_(header) {
  CheckOptions(header, options);
  if (!options.type || *options.type == type_) {
    if (!options.scale) options_.type.reset();
  }
  if (!options_.type) return;
  result_.dataType = *options_.type;
  converted_.resize(RowSize(result_));
  result_.voidValue = header.voidValue ? ConvertedVoid(*header.voidValue) : std::nullopt;
}

// As a node of that value would be converted. When there can be no such node, whatever the value
// became would mark nodes that were valid.
std::optional<double> NodeSteps::ConvertedVoid(double voidValue) const {
  auto stored = StoredValue(type_, voidValue);
  if (!stored) return std::nullopt;
  unsigned char from[sizeof(double)];
  unsigned char to[sizeof(double)];
  PTConvertByTruncation(corvel::kDouble, type_, &*stored, &from[0]);
  ConvertOne(&from[0], &to[0]);
  return corvel::CPrimData::GetWideReal(result_.dataType, &to[0]);
}

void* NodeSteps::Apply(void* nodes) {
  if (options_.invalid != InvalidNodes::kKeep) ReplaceInvalid(nodes);
  if (const auto& valid = options_.validRange) {
    FilterOutOfRangeNodes(nodes, type_, count_, valid->replacement, valid->lowest, valid->highest);
  }
  return options_.type ? Convert(nodes) : nodes;
}

void NodeSteps::ReplaceInvalid(void* nodes) {
  if (replacer_.ReplaceInvalidNodes(nodes, count_)) return;
  if (options_.invalid == InvalidNodes::kReplace) return;
  if (!options_.confirm || !options_.confirm(replacer_.PromptText())) throw Declined();
}

void* NodeSteps::Convert(void* nodes) {
  const auto fromSize = static_cast<std::size_t>(corvel::CPrimType(type_).Size());
  const auto toSize = static_cast<std::size_t>(corvel::CPrimType(result_.dataType).Size());
  auto* from = static_cast<unsigned char*>(nodes);
  unsigned char* to = converted_.data();
  for (std::size_t i = 0; i < count_; ++i, from += fromSize, to += toSize) ConvertOne(from, to);
  return converted_.data();
}

void NodeSteps::ConvertOne(void* from, void* to) const {
  if (const auto& scale = options_.scale) {
    const double value = corvel::CPrimData::GetWideReal(type_, from);
    PTScaleDoubleToOtherType(result_.dataType, to, value, scale->lowest, scale->highest);
  } else {
    PTConvertByTruncation(type_, result_.dataType, from, to);
  }
}

}  // namespace trovan::filters
