#include "filters/lattice/NodeSteps.h"

#include <cmath>

#include <trovan/TypedArrays.h>

#include "filters/lattice/NodeTypes.h"
#include "filters/support/FilterError.h"
#include "filters/support/NumberText.h"

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

void CheckVoidValue(const LatticeHeader& header, const NodeOptions& options) {
  if (!header.voidValue) {
    throw FilterError("this lattice has no void value, so there is nothing for another to mark");
  }
  const corvel::PrimType type = options.type.value_or(header.dataType);
  if (!StoredValue(type, *options.voidValue)) {
    throw FilterError(ShortestText(*options.voidValue) +
                      " cannot mark nodes without a value: it is "
                      "no value of the type " +
                      std::string(NodeTypeName(type)));
  }
}

void CheckOptions(const LatticeHeader& header, const NodeOptions& options) {
  if (options.validRange && !CanBeCompared(header.dataType)) {
    throw FilterError(
        "a valid range can be kept by nodes of 16 and 32 bits, floats and doubles; "
        "these are of the type " +
        std::string(NodeTypeName(header.dataType)));
  }
  if (options.validRange && !(options.validRange->lowest <= options.validRange->highest)) {
    throw FilterError(
        "no value lies in the valid range: it needs two numbers, the lower one first");
  }
  if (options.validRange && !IsInteger(header.dataType) &&
      !StoredValue(header.dataType, options.validRange->replacement)) {
    throw FilterError(ShortestText(options.validRange->replacement) +
                      " cannot replace values: as a node of the type " +
                      std::string(NodeTypeName(header.dataType)) + " it would be invalid");
  }
  if (options.voidValue) CheckVoidValue(header, options);
  if (!options.scale) return;
  if (!options.type) throw FilterError("values are scaled to a type; say which");
  if (!IsInteger(*options.type)) {
    throw FilterError("values are scaled to integer types; " +
                      std::string(NodeTypeName(*options.type)) + " takes them as they are");
  }
  // The library scales to 64 bits without an offset, so that the upper half would be lost.
  if (*options.type == corvel::kInt64) {
    throw FilterError("values can be scaled to types of up to 32 bits, not to int64");
  }
  if (!std::isfinite(options.scale->lowest) || !std::isfinite(options.scale->highest) ||
      options.scale->lowest == options.scale->highest) {
    throw FilterError("values can be scaled only from a range between two finite numbers");
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
  const bool newType = options.type && (*options.type != type_ || options.scale);
  const bool newVoid = options.voidValue && options.voidValue != header.voidValue;
  converts_ = newType || newVoid;
  if (converts_) PrepareConversion(header);
}

void NodeSteps::PrepareConversion(const LatticeHeader& header) {
  if (options_.type) result_.dataType = *options_.type;
  converted_.resize(RowSize(result_));
  if (header.voidValue) voidNode_ = StoredValue(type_, *header.voidValue);
  result_.voidValue = options_.voidValue;
  if (!options_.voidValue && !options_.scale && voidNode_ &&
      StoredValue(result_.dataType, *voidNode_) == voidNode_) {
    result_.voidValue = voidNode_;
  }
  if (result_.voidValue) voidResult_ = StoredValue(result_.dataType, *result_.voidValue);
}

void* NodeSteps::Apply(void* nodes) {
  if (options_.invalid != InvalidNodes::kKeep) ReplaceInvalid(nodes);
  if (const auto& valid = options_.validRange) {
    FilterOutOfRangeNodes(nodes, type_, count_, valid->replacement, valid->lowest, valid->highest);
  }
  return converts_ ? Convert(nodes) : nodes;
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
  for (std::size_t i = 0; i < count_; ++i, from += fromSize, to += toSize) {
    if (voidNode_ && corvel::CPrimData::GetWideReal(type_, from) == *voidNode_) {
      MarkVoid(to);
    } else {
      ConvertOne(from, to);
      if (voidResult_) RequireDistinct(from, to);
    }
  }
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

void NodeSteps::MarkVoid(void* to) const {
  if (!voidResult_) {
    throw FilterError("there are nodes without a value (" + ShortestText(*voidNode_) +
                      "), and nothing that marks them among the converted values; --void VALUE "
                      "chooses a mark, --valid with --replace fills them");
  }
  double mark = *voidResult_;
  PTConvertByTruncation(corvel::kDouble, result_.dataType, &mark, to);
}

// A value must not come to look like none.
void NodeSteps::RequireDistinct(void* from, void* to) const {
  if (corvel::CPrimData::GetWideReal(result_.dataType, to) != *voidResult_) return;
  throw FilterError("the value " + ShortestText(corvel::CPrimData::GetWideReal(type_, from)) +
                    " becomes " + ShortestText(*voidResult_) +
                    ", which marks nodes without a value; --void VALUE chooses another mark");
}

}  // namespace trovan::filters
