#include "VtkArrays.h"

#include <limits>

#include <corvel/Text.h>

namespace trovan::filters {
namespace {

// Enough to see that a word is no keyword; only the array that is read is parsed.
bool LooksLikeNumber(std::string_view word) {
  const char first = word.front();
  if ((first >= '0' && first <= '9') || first == '-' || first == '+' || first == '.') return true;
  double ignored = 0;
  return ParseNumber(word, ignored) == NumberStatus::kNumber;  // such as "nan"
}

}  // namespace

std::uint64_t VtkArrayWalker::ReadCount(std::string_view expected) {
  return scanner_.ReadNumber<std::uint64_t>(expected);
}

std::string VtkArrayWalker::ReadName() {
  const std::string_view name = scanner_.ExpectWord("a name");
  return corvel::Utf8FromWide(corvel::WideFromUtf8(name));
}

const VtkType& VtkArrayWalker::ReadType() {
  const VtkType* type = FindVtkType(scanner_.ExpectWord("a type of elements"));
  if (type == nullptr) scanner_.FailExpected("a type of elements, such as float");
  return *type;
}

void VtkArrayWalker::Skip(VtkArray& array) {
  if (isBinary_) {
    scanner_.FinishLine("the end of the line before the bytes of " + Quoted(array.name));
    array.place = scanner_.Place();
    SkipBinary(array);
  } else {
    array.place = scanner_.Place();
    SkipText(array);
  }
}

// Bounded, so that nothing that is worked out from it wraps.
std::uint64_t VtkArrayWalker::CountElements(const VtkArray& array) const {
  constexpr std::uint64_t kMost = std::numeric_limits<std::int64_t>::max();
  if (array.components > 0 && array.tuples > kMost / array.components) {
    scanner_.Fail(Quoted(array.name) + " has more elements than any file");
  }
  return array.components * array.tuples;
}

void VtkArrayWalker::SkipBinary(const VtkArray& array) {
  const std::uint64_t count = CountElements(array);
  const std::uint64_t left = scanner_.BytesLeft();
  const bool fits = array.type.bits == 1 ? count / 8 + (count % 8 > 0 ? 1 : 0) <= left
                                         : count <= left / (array.type.bits / 8);
  scanner_.SkipBytes(0);
  if (!fits) {
    scanner_.FailHere("expected " + std::to_string(count) + " elements of " + Quoted(array.name) +
                      ", " + std::to_string(array.type.bits) + " bits each, found only " +
                      std::to_string(left) + " bytes");
  }
  scanner_.SkipBytes(array.type.bits == 1 ? (count + 7) / 8 : count * (array.type.bits / 8));
}

void VtkArrayWalker::SkipText(const VtkArray& array) {
  const std::uint64_t count = CountElements(array);
  for (std::uint64_t i = 0; i < count; ++i) {
    if (!scanner_.NextWord().empty() && LooksLikeNumber(scanner_.Word())) continue;
    scanner_.FailExpected("value " + std::to_string(i + 1) + " of " + std::to_string(count) +
                          " of " + Quoted(array.name));
  }
}

void VtkArrayWalker::SkipMetadata() {
  scanner_.NextLine();  // the rest of the keyword's own line
  scanner_.SkipToBlankLine();
}

VtkArray VtkArrayWalker::ReadFieldArray(std::optional<std::uint64_t> tuples) {
  VtkArray array;
  array.name = ReadName();
  while (EqualsAnyCase(array.name, "metadata")) {  // of the array before
    SkipMetadata();
    array.name = ReadName();
  }
  array.components = ReadCount("the number of components");
  array.tuples = ReadCount("the number of tuples");
  if (tuples && array.tuples != *tuples) {
    scanner_.FailExpected(std::to_string(*tuples) + " tuples of " + Quoted(array.name));
  }
  array.type = ReadType();
  Skip(array);
  return array;
}

}  // namespace trovan::filters
