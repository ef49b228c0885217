#include "SvgStyleSheet.h"

#include <algorithm>
#include <utility>

#include "SvgElement.h"
#include "SvgScanner.h"

namespace trovan::filters {
namespace {

constexpr unsigned kIdWeight = 1U << 20U;
constexpr unsigned kClassWeight = 1U << 10U;

// Comments become a space; the marks of a hidden sheet, "<!--" and "-->", are dropped.
std::string WithoutComments(std::string_view text) {
  std::string kept;
  for (std::size_t at = 0; at < text.size();) {
    const std::string_view rest = text.substr(at);
    if (rest.starts_with("/*")) {
      const std::size_t end = text.find("*/", at + 2);
      at = end == std::string_view::npos ? text.size() : end + 2;
      kept += ' ';
    } else if (rest.starts_with("<!--") || rest.starts_with("-->")) {
      at += rest.front() == '<' ? 4 : 3;
    } else {
      kept += text[at++];
    }
  }
  return kept;
}

// Up to the first of `ends` that stands in no quotes and no parentheses.
std::string_view ReadOutsideQuotes(SvgScanner& scanner, std::string_view ends) {
  const std::string_view rest = scanner.Rest();
  char quote = '\0';
  int depth = 0;
  std::size_t at = 0;
  for (; at < rest.size(); ++at) {
    const char c = rest[at];
    if (quote != '\0') {
      if (c == quote) quote = '\0';
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (depth == 0 && ends.find(c) != std::string_view::npos) {
      break;
    } else if (c == '(') {
      ++depth;
    } else if (c == ')' && depth > 0) {
      --depth;
    }
  }
  scanner.MoveTo(scanner.Position() + at);
  return rest.substr(0, at);
}

// "@import ...;" or "@media ... { ... }".
void SkipAtRule(SvgScanner& scanner) {
  ReadOutsideQuotes(scanner, ";{");
  if (scanner.Skip(';')) return;
  int depth = 0;
  do {
    if (scanner.Skip('{')) {
      ++depth;
    } else if (scanner.Skip('}')) {
      --depth;
    }
    if (depth > 0) ReadOutsideQuotes(scanner, "{}");
  } while (depth > 0 && !scanner.AtEnd());
}

bool HasWord(std::string_view words, std::string_view word) {
  SvgScanner scanner(words);
  while (!scanner.AtEnd()) {
    scanner.SkipSpace();
    if (scanner.ReadUntil(" \t\n\r\f") == word) return !word.empty();
  }
  return false;
}

void TakeImportant(SvgDeclaration& declaration) {
  const std::size_t mark = declaration.value.rfind('!');
  if (mark == std::string::npos) return;
  const std::string_view word = TrimSpace(std::string_view(declaration.value).substr(mark + 1));
  if (!EqualsIgnoringCase(word, "important")) return;
  declaration.isImportant = true;
  declaration.value = std::string(TrimSpace(std::string_view(declaration.value).substr(0, mark)));
}

}  // namespace

std::vector<SvgDeclaration> ParseDeclarations(std::string_view text) {
  std::vector<SvgDeclaration> declarations;
  const std::string plain =
      text.find("/*") == std::string_view::npos ? std::string(text) : WithoutComments(text);
  SvgScanner scanner(plain);
  while (!scanner.AtEnd()) {
    SvgScanner one(ReadOutsideQuotes(scanner, ";"));
    scanner.Skip(';');
    SvgDeclaration declaration;
    declaration.property = LowerCase(TrimSpace(one.ReadUntil(":")));
    if (!one.Skip(':')) continue;
    declaration.value = std::string(TrimSpace(one.Rest()));
    TakeImportant(declaration);
    declarations.push_back(std::move(declaration));
  }
  return declarations;
}

// Reads one selector; false where it holds what is not known here.
class SvgStyleSheet::SelectorReader {
 public:
  explicit SelectorReader(std::string_view text) : scanner_(text) {}

  bool Read(Selector& selector) {
    bool isChild = false;
    do {
      Compound compound;
      compound.isChild = isChild;
      if (!ReadCompound(compound, selector.specificity)) return false;
      selector.compounds.push_back(std::move(compound));
      scanner_.SkipSpace();
      isChild = scanner_.Skip('>');
      scanner_.SkipSpace();
    } while (!scanner_.AtEnd());
    return !isChild;
  }

 private:
  bool ReadCompound(Compound& compound, unsigned& specificity) {
    const std::size_t start = scanner_.Position();
    if (!scanner_.Skip('*')) {
      compound.element = std::string(scanner_.ReadName());
      if (!compound.element.empty()) ++specificity;
    }
    while (ReadTest(compound, specificity)) {
    }
    const char next = scanner_.Peek();
    return scanner_.Position() > start && (next == '\0' || next == '>' || IsSvgSpace(next));
  }

  bool ReadTest(Compound& compound, unsigned& specificity) {
    AttributeTest test;
    if (scanner_.Skip('#')) {
      test = {"id", std::string(scanner_.ReadName()), AttributeTest::Kind::kEquals};
      specificity += kIdWeight;
    } else if (scanner_.Skip('.')) {
      test = {"class", std::string(scanner_.ReadName()), AttributeTest::Kind::kHasWord};
      specificity += kClassWeight;
    } else if (scanner_.Peek() == '[') {
      if (!ReadAttribute(test)) return false;
      specificity += kClassWeight;
    } else {
      return false;
    }
    compound.tests.push_back(std::move(test));
    return true;
  }

  // Steps over nothing where it fails.
  bool ReadAttribute(AttributeTest& test) {
    SvgScanner ahead = scanner_;
    ahead.Skip('[');
    ahead.SkipSpace();
    test.name = std::string(ahead.ReadName());
    ahead.SkipSpace();
    if (ahead.Skip('~')) test.kind = AttributeTest::Kind::kHasWord;
    if (ahead.Skip('=')) {
      if (test.kind == AttributeTest::Kind::kExists) test.kind = AttributeTest::Kind::kEquals;
      std::string_view value = TrimSpace(ahead.ReadUntil("]"));
      const bool isQuoted = value.size() >= 2 && value.front() == value.back() &&
                            (value.front() == '"' || value.front() == '\'');
      if (isQuoted) value = value.substr(1, value.size() - 2);
      test.value = std::string(value);
    }
    if (test.name.empty() || !ahead.Skip(']')) return false;
    scanner_ = ahead;
    return true;
  }

  SvgScanner scanner_;
};

void SvgStyleSheet::Add(std::string_view text) {
  const std::string plain = WithoutComments(text);
  SvgScanner scanner(plain);
  for (scanner.SkipSpace(); !scanner.AtEnd(); scanner.SkipSpace()) {
    if (scanner.Peek() == '@') {
      SkipAtRule(scanner);
      ++leftOut_;
      continue;
    }
    SvgScanner selectors(ReadOutsideQuotes(scanner, "{"));
    if (!scanner.Skip('{')) break;
    rules_.push_back(ParseDeclarations(ReadOutsideQuotes(scanner, "}")));
    scanner.Skip('}');
    do {
      Selector selector;
      selector.rule = rules_.size() - 1;
      if (SelectorReader(TrimSpace(ReadOutsideQuotes(selectors, ","))).Read(selector)) {
        AddSelector(std::move(selector));
      } else {
        ++leftOut_;
      }
    } while (selectors.Skip(','));
  }
}

void SvgStyleSheet::AddSelector(Selector selector) {
  const Compound& last = selector.compounds.back();
  std::string key = last.element;
  for (const AttributeTest& test : last.tests) {
    const bool isId = test.name == "id" && test.kind == AttributeTest::Kind::kEquals;
    const bool isClass = test.name == "class" && test.kind == AttributeTest::Kind::kHasWord;
    if (isId) key = "#" + test.value;
    if (isClass && !key.starts_with('#')) key = "." + test.value;
  }
  byKey_[key].push_back(selectors_.size());
  selectors_.push_back(std::move(selector));
}

std::vector<const std::vector<SvgDeclaration>*> SvgStyleSheet::Matches(
    const pugi::xml_node& node) const {
  std::vector<std::size_t> found;
  const auto takeKey = [&](const std::string& key) {
    const auto candidates = byKey_.find(key);
    if (candidates == byKey_.end()) return;
    for (const std::size_t index : candidates->second) {
      if (IsMatch(selectors_[index], node)) found.push_back(index);
    }
  };
  takeKey("");
  takeKey(std::string(ElementName(node)));
  takeKey("#" + std::string(Attribute(node, "id")));
  SvgScanner classes(Attribute(node, "class"));
  for (classes.SkipSpace(); !classes.AtEnd(); classes.SkipSpace()) {
    takeKey("." + std::string(classes.ReadUntil(" \t\n\r\f")));
  }
  std::sort(found.begin(), found.end(), [this](std::size_t a, std::size_t b) {
    const unsigned left = selectors_[a].specificity;
    const unsigned right = selectors_[b].specificity;
    return left != right ? left < right : a < b;
  });
  found.erase(std::unique(found.begin(), found.end()), found.end());
  std::vector<const std::vector<SvgDeclaration>*> matches;
  matches.reserve(found.size());
  for (const std::size_t index : found) matches.push_back(&rules_[selectors_[index].rule]);
  return matches;
}

// From the element outward, all ancestors at which the compounds read so far can match are kept, so
// that no way through them is tried twice.
bool SvgStyleSheet::IsMatch(const Selector& selector, const pugi::xml_node& node) {
  const auto& compounds = selector.compounds;
  if (!IsMatch(compounds.back(), node)) return false;
  std::vector<pugi::xml_node> places = {node};  // from the inside outward
  for (std::size_t i = compounds.size() - 1; i > 0 && !places.empty(); --i) {
    std::vector<pugi::xml_node> next;
    if (compounds[i].isChild) {
      for (const pugi::xml_node& place : places) {
        if (IsMatch(compounds[i - 1], place.parent())) next.push_back(place.parent());
      }
    } else {
      for (pugi::xml_node at = places.front().parent(); at; at = at.parent()) {
        if (IsMatch(compounds[i - 1], at)) next.push_back(at);
      }
    }
    places = std::move(next);
  }
  return !places.empty();
}

bool SvgStyleSheet::IsMatch(const Compound& compound, const pugi::xml_node& node) {
  const std::string_view name = ElementName(node);
  if (name.empty() || (!compound.element.empty() && compound.element != name)) return false;
  return std::all_of(compound.tests.begin(), compound.tests.end(), [&](const auto& test) {
    const pugi::xml_attribute attribute = node.attribute(test.name.c_str());
    if (!attribute) return false;
    if (test.kind == AttributeTest::Kind::kHasWord) return HasWord(attribute.value(), test.value);
    return test.kind == AttributeTest::Kind::kExists || attribute.value() == test.value;
  });
}

}  // namespace trovan::filters
