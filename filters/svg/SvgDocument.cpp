#include "SvgDocument.h"

#include <algorithm>
#include <utility>

#include "SvgElement.h"
#include "SvgEntities.h"
#include "SvgScanner.h"
#include "filters/support/FilterError.h"

namespace trovan::filters {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

// Other encodings of Unicode begin with one of these, or have a NUL byte next to the first '<'.
bool IsWide(std::string_view bytes) {
  return bytes.starts_with("\xFE\xFF") || bytes.starts_with("\xFF\xFE") ||
         bytes.substr(0, 4).find('\0') != std::string_view::npos;
}

// Whether a style sheet counts where drawings are looked at: it may be for some media only.
bool IsForScreens(std::string_view media) {
  if (TrimSpace(media).empty()) return true;
  SvgScanner scanner(media);
  do {
    const std::string_view one = TrimSpace(scanner.ReadUntil(","));
    if (EqualsIgnoringCase(one, "all") || EqualsIgnoringCase(one, "screen")) return true;
  } while (scanner.Skip(','));
  return false;
}

struct TextPlace {
  std::size_t line;
  std::size_t column;
};

TextPlace PlaceOf(std::string_view text, std::size_t offset) {
  const std::string_view before = text.substr(0, std::min(offset, text.size()));
  const auto lines = static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
  const std::size_t lineStart = before.rfind('\n');  // npos + 1 is 0
  return {lines + 1, before.size() - (lineStart + 1) + 1};
}

}  // namespace

// Meets every element once, parents first.
class SvgDocument::Collector : public pugi::xml_tree_walker {
 public:
  explicit Collector(SvgDocument& document) : document_(document) {}

  bool for_each(pugi::xml_node& node) override {
    // Each deeper element would ask all those around it for its namespace.
    if (node.type() != pugi::node_element || depth() >= kDeepest) return true;
    const pugi::xml_attribute id = node.attribute("id");
    if (id) document_.ids_.emplace(id.value(), node);
    if (ElementName(node) == "style") AddSheet(node);
    return true;
  }

 private:
  void AddSheet(const pugi::xml_node& node) {
    const std::string_view type = TrimSpace(Attribute(node, "type"));
    if (!type.empty() && !EqualsIgnoringCase(type, "text/css")) return;
    if (!IsForScreens(Attribute(node, "media"))) return document_.sheet_.LeaveOut();
    std::string text;
    for (const pugi::xml_node& part : node.children()) text += part.value();
    document_.sheet_.Add(text);
  }

  SvgDocument& document_;
};

SvgDocument::SvgDocument(std::string_view bytes, std::string name)
    : name_(std::move(name)), size_(bytes.size()) {
  if (bytes.starts_with(kUtf8Mark)) bytes.remove_prefix(kUtf8Mark.size());
  if (!IsWide(bytes)) {
    auto expanded = WithEntities(bytes, name_);
    text_ = expanded ? std::move(*expanded) : std::string(bytes);
    bytes = text_;
  }
  const auto read = document_.load_buffer(bytes.data(), bytes.size(),
                                          pugi::parse_default | pugi::parse_ws_pcdata);
  if (!read) Fail(bytes, read.offset, read.description());
  if (ElementName(Root()) != "svg") Fail(bytes, 0, "the root is not the element \"svg\"");
  Collector collector(*this);
  document_.traverse(collector);
}

void SvgDocument::Fail(std::string_view text, std::ptrdiff_t offset, const char* what) const {
  const TextPlace place =
      PlaceOf(text, static_cast<std::size_t>(std::max<std::ptrdiff_t>(offset, 0)));
  throw FilterError(name_ + ", line " + std::to_string(place.line) + ", column " +
                    std::to_string(place.column) + ": this is no SVG document (" + what +
                    "). Check that the file is whole and not compressed.");
}

pugi::xml_node SvgDocument::Find(std::string_view id) const {
  const auto found = ids_.find(id);
  return found == ids_.end() || id.empty() ? pugi::xml_node() : found->second;
}

pugi::xml_node SvgDocument::Target(const pugi::xml_node& node) const {
  const std::string_view reference = Reference(node);
  return reference.starts_with('#') ? Find(reference.substr(1)) : pugi::xml_node();
}

std::size_t SvgDocument::LineOf(const pugi::xml_node& node) const {
  return PlaceOf(text_, static_cast<std::size_t>(std::max<std::ptrdiff_t>(node.offset_debug(), 0)))
      .line;
}

}  // namespace trovan::filters
