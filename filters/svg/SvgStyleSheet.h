// Style sheets: the rules of the elements "style" (W3C, "Cascading Style Sheets Level 2", as far as
// drawings use it).
//
//   SvgStyleSheet sheet;
//   sheet.Add("rect, .water > path { fill: blue; stroke: none !important }");
//   for (const auto& match : sheet.Matches(node)) ...  // from the weakest to the strongest
//
// Selectors: elements, *, .class, #id, [attribute], [attribute=value], [attribute~=word], after one
// another, in descendants and children ("a b", "a > b"). Rules with other selectors, and those for
// media, are left out.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <pugixml.hpp>

namespace trovan::filters {

struct SvgDeclaration {
  std::string property;
  std::string value;
  bool isImportant = false;
};

// What stands between the braces of a rule, and in the attribute "style". What is no declaration is
// passed over.
std::vector<SvgDeclaration> ParseDeclarations(std::string_view text);

class SvgStyleSheet {
 public:
  // Adds the rules of one more sheet, which are stronger than those before where they are as
  // specific.
  void Add(std::string_view text);

  // Counts a sheet that is not added.
  void LeaveOut() { ++leftOut_; }

  bool IsEmpty() const { return selectors_.empty(); }

  // The declarations of each rule that the element matches, the strongest last. Valid until Add.
  std::vector<const std::vector<SvgDeclaration>*> Matches(const pugi::xml_node& node) const;

  // How many selectors and whole sheets were left out.
  std::size_t LeftOut() const { return leftOut_; }

 private:
  struct AttributeTest {
    enum class Kind { kExists, kEquals, kHasWord };
    std::string name;
    std::string value;
    Kind kind = Kind::kExists;
  };
  // What one element must be.
  struct Compound {
    std::string element;  // empty: any
    std::vector<AttributeTest> tests;
    bool isChild = false;  // of the element of the compound before, rather than a descendant
  };
  struct Selector {
    std::vector<Compound> compounds;  // the last one is for the element itself
    unsigned specificity = 0;
    std::size_t rule = 0;
  };
  class SelectorReader;

  void AddSelector(Selector selector);
  static bool IsMatch(const Selector& selector, const pugi::xml_node& node);
  static bool IsMatch(const Compound& compound, const pugi::xml_node& node);

  std::vector<std::vector<SvgDeclaration>> rules_;
  std::vector<Selector> selectors_;
  // Selectors by what an element must have: "#id", ".class", "element", or "" for all others.
  std::unordered_map<std::string, std::vector<std::size_t>> byKey_;
  std::size_t leftOut_ = 0;
};

}  // namespace trovan::filters
