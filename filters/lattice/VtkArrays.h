// The arrays of a VTK legacy file, one after the other.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "filters/lattice/TextScanner.h"
#include "filters/lattice/VtkHeader.h"

namespace trovan::filters {

// Walks over arrays. Each function starts behind the keyword, and raises FilterError for what is
// wrong.
class VtkArrayWalker {
 public:
  explicit VtkArrayWalker(TextScanner& scanner) : scanner_(scanner) {}

  // Whether the elements are bytes. At first they are text.
  void SetBinary(bool isBinary) { isBinary_ = isBinary; }

  // A count that the file states, such as that of components.
  std::uint64_t ReadCount(std::string_view expected);

  // The name of an array as UTF-8.
  std::string ReadName();

  // The name of a type, which must be known.
  const VtkType& ReadType();

  // The elements, which begin with the next word, or in a binary file on the next line. Fills in
  // their place.
  void Skip(VtkArray& array);

  // Calls `take` for each array of a FIELD, whose elements have been skipped. With `tuples`, each
  // array must have so many.
  template <typename Take>
  void ReadField(std::optional<std::uint64_t> tuples, Take&& take) {
    ReadName();
    const std::uint64_t count = ReadCount("the number of arrays of a field");
    for (std::uint64_t i = 0; i < count; ++i) take(ReadFieldArray(tuples));
  }

  // A METADATA block, which ends with an empty line.
  void SkipMetadata();

 private:
  VtkArray ReadFieldArray(std::optional<std::uint64_t> tuples);
  std::uint64_t CountElements(const VtkArray& array) const;
  void SkipBinary(const VtkArray& array);
  void SkipText(const VtkArray& array);

  TextScanner& scanner_;
  bool isBinary_ = false;
};

}  // namespace trovan::filters
