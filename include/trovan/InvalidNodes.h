// Replaces node values that an application can neither draw nor grid: NaN and infinities, and
// values outside a range.
//
// A filter that reads a lattice block by block asks its user once for the whole file:
//
//   InvalidNodesReplacer replacer(fileName, corvel::kFloat, 0.0, blockSize);
//   while (ReadBlock(block)) {
//     if (!replacer.ReplaceInvalidNodes(block.data(), block.size()) && !Ask(replacer.PromptText()))
//       return;  // the user does not want these nodes replaced
//     Import(block);
//   }
#pragma once

#include <cstddef>
#include <string>

#include <corvel/PrimType.h>
#include <trovan/Export.h>

namespace trovan {

// Overwrites each NaN and each infinity among `n` packed floats or doubles with the replacement
// (with the nearest float). Returns whether there was one. Nodes of all other types are always
// valid: they are not read.
//
// Every finite number is valid, however large. The array may lie at any alignment. Where no node is
// replaced, it is not written.
//
// REQUIRES: `data` points to n packed elements of `type`.
TROVAN_API bool FilterInvalidNodes(void* data, corvel::PrimType type, std::size_t n,
                                   double replacement);

// Overwrites each node strictly below `minValue` or strictly above `maxValue` with the replacement.
// Returns whether there was one. Nodes and bounds are compared as doubles.
//
// Takes 16-bit and 32-bit integers, floats and doubles; bytes, 64-bit integers and what is no
// element type are neither read nor changed. The replacement becomes a node as
// PTConvertByTruncation makes one: -1.5 is stored as 65535 among unsigned 16-bit nodes.
//
// Deliberate: a NaN stays. It is neither below nor above, and FilterInvalidNodes is there for it.
//
// REQUIRES: `data` points to n packed elements of `type`.
TROVAN_API bool FilterOutOfRangeNodes(void* data, corvel::PrimType type, std::size_t n,
                                      double replacement, double minValue, double maxValue);

// Replaces the invalid nodes of one file in every block that is read, and tells so once.
//
// A value: a copy goes on by itself from what the original had told. One thread at a time.
class TROVAN_API InvalidNodesReplacer {
 public:
  // `nodeCount` is the number of nodes of a block for which ReplaceInvalidNodes gets none.
  InvalidNodesReplacer(const std::wstring& fileName, corvel::PrimType type, double replacement,
                       std::size_t nodeCount);

  // The question whether the nodes shall be replaced, with the name of the file and the
  // replacement. The name ends at its first null character.
  std::wstring PromptText() const;

  // Runs FilterInvalidNodes over a block of `n` nodes, or of the default count when n is 0.
  //
  // Returns false once in the object's life: when it replaces nodes for the first time. That is the
  // moment to ask the user.
  bool ReplaceInvalidNodes(void* data, std::size_t n);

 private:
  bool reported_ = false;
  std::wstring fileName_;
  corvel::PrimType type_;
  double replacement_;
  std::size_t nodeCount_;
};

}  // namespace trovan
