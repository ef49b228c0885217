// What is done to the values of a lattice between reading and writing, row by row.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <trovan/InvalidNodes.h>

#include "filters/lattice/Lattice.h"

namespace trovan::filters {

// Nodes below `lowest` or above `highest` become `replacement`.
struct ValidRange {
  double lowest;
  double highest;
  double replacement;
};

// The values that are mapped onto the lowest and the highest number of an integer type.
struct ScaleRange {
  double lowest;
  double highest;
};

enum class InvalidNodes {
  kConfirm,  // ask, once, before they are replaced
  kReplace,
  kKeep,
};

struct NodeOptions {
  InvalidNodes invalid = InvalidNodes::kConfirm;
  // What replaces NaN and infinities. Otherwise the lattice's own void value, or 0.
  std::optional<double> invalidReplacement;
  std::optional<ValidRange> validRange;
  // The type to convert to: by truncation, or scaled.
  std::optional<corvel::PrimType> type;
  std::optional<ScaleRange> scale;
  // The void value of the result. Otherwise it stays, if the type can hold it and nothing is
  // scaled.
  std::optional<double> voidValue;
  // Puts the question whether to replace and go on; for InvalidNodes::kConfirm.
  std::function<bool(const std::wstring& question)> confirm;
};

// Raised when the answer is no.
struct Declined {};

// The steps in their order: invalid nodes, the valid range, the conversion of the type.
class NodeSteps {
 public:
  // Raises FilterError for a step that cannot be done to nodes of this type.
  NodeSteps(const LatticeHeader& header, const NodeOptions& options, const std::wstring& fileName);

  // The header of what comes out: the type and the void value change with a conversion. There is no
  // void value when it cannot stay.
  const LatticeHeader& Result() const { return result_; }

  // Works on one row and returns the row that comes out, which may lie in the given place or in one
  // of this object.
  //
  // Raises Declined, and what `confirm` raises; and FilterError for a node without a value when the
  // result has no void value for it, or a value that would become the void value.
  void* Apply(void* nodes);

 private:
  void PrepareConversion(const LatticeHeader& header);
  void ReplaceInvalid(void* nodes);
  void* Convert(void* nodes);
  void ConvertOne(void* from, void* to) const;
  void MarkVoid(void* to) const;
  void RequireDistinct(void* from, void* to) const;

  NodeOptions options_;
  corvel::PrimType type_;
  std::size_t count_;  // elements in a row
  InvalidNodesReplacer replacer_;
  LatticeHeader result_;
  bool converts_ = false;
  std::optional<double> voidNode_;    // what a node without a value holds
  std::optional<double> voidResult_;  // what it will hold
  std::vector<unsigned char> converted_;
};

}  // namespace trovan::filters
