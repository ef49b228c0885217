#include "SvgElement.h"

#include <string>

#include "SvgScanner.h"

namespace trovan::filters {
namespace {

constexpr std::string_view kNamespace = "http://www.w3.org/2000/svg";

// The namespace that the prefix stands for at the node; nothing if none is declared.
std::optional<std::string_view> NamespaceOf(const pugi::xml_node& node, std::string_view prefix) {
  const std::string declaration =
      prefix.empty() ? std::string("xmlns") : "xmlns:" + std::string(prefix);
  for (pugi::xml_node at = node; at; at = at.parent()) {
    const pugi::xml_attribute found = at.attribute(declaration.c_str());
    if (found) return found.value();
  }
  return {};
}

}  // namespace

std::string_view ElementName(const pugi::xml_node& node) {
  if (node.type() != pugi::node_element) return {};
  const std::string_view name = node.name();
  const std::size_t colon = name.find(':');
  const std::string_view prefix = colon == std::string_view::npos ? "" : name.substr(0, colon);
  const auto declared = NamespaceOf(node, prefix);
  const bool isSvg = declared ? *declared == kNamespace : prefix.empty() || prefix == "svg";
  if (!isSvg) return {};
  return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

std::string_view Attribute(const pugi::xml_node& node, const char* name) {
  return node.attribute(name).value();
}

std::string_view Reference(const pugi::xml_node& node) {
  const pugi::xml_attribute plain = node.attribute("href");
  return TrimSpace(plain ? plain.value() : node.attribute("xlink:href").value());
}

double LengthAttribute(const pugi::xml_node& node, const char* name, const LengthBasis& basis,
                       Axis axis, double otherwise) {
  return FindLength(node, name, basis, axis).value_or(otherwise);
}

std::optional<double> FindLength(const pugi::xml_node& node, const char* name,
                                 const LengthBasis& basis, Axis axis) {
  const pugi::xml_attribute attribute = node.attribute(name);
  if (!attribute) return {};
  const auto length = ParseLength(attribute.value());
  if (!length) return {};
  return InPixels(*length, basis, axis);
}

bool MeetsConditions(const pugi::xml_node& node) {
  if (node.attribute("requiredExtensions")) return false;
  const pugi::xml_attribute languages = node.attribute("systemLanguage");
  if (!languages) return true;
  SvgScanner scanner(languages.value());
  do {
    scanner.SkipSpace();
    const std::string_view language = TrimSpace(scanner.ReadUntil(","));
    if (language == "en" || language.starts_with("en-")) return true;
  } while (scanner.Skip(','));
  return false;
}

}  // namespace trovan::filters
