#include "SvgEntities.h"

#include <cstddef>
#include <functional>
#include <map>
#include <utility>

#include "SvgScanner.h"
#include "filters/support/FilterError.h"

namespace trovan::filters {
namespace {

constexpr std::size_t kFreeGrowth = std::size_t{1} << 20U;  // bytes; small documents may grow to it
constexpr std::size_t kGrowthFactor = 8;
constexpr int kDeepest = 16;

using Entities = std::map<std::string, std::string_view, std::less<>>;

// The declarations between '[' and ']' of the document type; empty if there are none.
std::string_view InternalSubset(std::string_view document) {
  const std::size_t type = document.find("<!DOCTYPE");
  if (type == std::string_view::npos) return {};
  const std::size_t open = document.find_first_of("[>", type);
  if (open == std::string_view::npos || document[open] == '>') return {};
  std::size_t end = document.find(']', open);
  // A bracket inside a value ends nothing: the subset ends with a bracket in front of '>'.
  while (end != std::string_view::npos) {
    const std::size_t next = document.find_first_not_of(" \t\r\n", end + 1);
    if (next != std::string_view::npos && document[next] == '>') break;
    end = document.find(']', end + 1);
  }
  if (end == std::string_view::npos) return {};
  return document.substr(open + 1, end - open - 1);
}

Entities ReadEntities(std::string_view subset) {
  constexpr std::string_view kStart = "<!ENTITY";
  Entities entities;
  for (std::size_t at = subset.find(kStart); at != std::string_view::npos;
       at = subset.find(kStart, at + 1)) {
    SvgScanner scanner(subset.substr(at + kStart.size()));
    scanner.SkipSpace();
    const std::string_view name = scanner.ReadUntil(" \t\r\n\"'%");
    scanner.SkipSpace();
    const char quote = scanner.Peek();
    if (name.empty() || (quote != '"' && quote != '\'')) continue;
    scanner.Skip(quote);
    const std::string_view value = scanner.ReadUntil(std::string_view(&quote, 1));
    entities.emplace(std::string(name), value);  // the first declaration counts
  }
  return entities;
}

class Expander {
 public:
  Expander(const Entities& entities, const std::string& name, std::size_t largest)
      : entities_(entities), name_(name), largest_(largest) {}

  // NOLINTNEXTLINE(misc-no-recursion): kDeepest bounds the depth
  void Append(std::string_view text, int depth) {
    if (depth > kDeepest) Fail("entities that hold themselves");
    while (!text.empty()) {
      const std::size_t mark = text.find('&');
      AppendPlain(text.substr(0, mark));
      if (mark == std::string_view::npos) return;
      text.remove_prefix(mark);
      const std::size_t end = text.find(';');
      const auto entity =
          end == std::string_view::npos ? entities_.end() : entities_.find(text.substr(1, end - 1));
      if (entity == entities_.end()) {
        AppendPlain(text.substr(0, 1));
        text.remove_prefix(1);
      } else {
        Append(entity->second, depth + 1);
        text.remove_prefix(end + 1);
      }
    }
  }

  std::string Finish() { return std::move(expanded_); }

 private:
  void AppendPlain(std::string_view text) {
    if (expanded_.size() + text.size() > largest_) Fail("entities that make it far too large");
    expanded_ += text;
  }

  [[noreturn]] void Fail(const char* what) const {
    throw FilterError(name_ + " declares " + what + "; take these declarations out of it.");
  }

  const Entities& entities_;
  const std::string& name_;
  std::size_t largest_;
  std::string expanded_;
};

}  // namespace

std::optional<std::string> WithEntities(std::string_view document, const std::string& name) {
  const std::string_view subset = InternalSubset(document);
  const Entities entities = ReadEntities(subset);
  if (entities.empty()) return {};
  const auto subsetEnd = static_cast<std::size_t>(subset.data() - document.data()) + subset.size();
  Expander expander(entities, name, kFreeGrowth + kGrowthFactor * document.size());
  expander.Append(document.substr(subsetEnd), 0);
  return std::string(document.substr(0, subsetEnd)) + expander.Finish();
}

}  // namespace trovan::filters
