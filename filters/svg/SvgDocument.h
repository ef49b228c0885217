// An SVG document in memory: its elements, found by their ids, and its style sheets.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

#include <pugixml.hpp>

#include "filters/svg/SvgStyleSheet.h"

namespace trovan::filters {

class SvgDocument {
 public:
  // Elements within so many others are not looked at.
  static constexpr int kDeepest = 256;

  // Reads the bytes of a document in any encoding of Unicode. `name` is for messages.
  //
  // Raises FilterError with the line and the column for what is not well formed, and when the root
  // is no element "svg".
  SvgDocument(std::string_view bytes, std::string name);

  const std::string& Name() const { return name_; }
  pugi::xml_node Root() const { return document_.document_element(); }
  const SvgStyleSheet& Sheet() const { return sheet_; }

  // How many bytes the document has.
  std::size_t Size() const { return size_; }

  // The first element of that id; the null node if there is none.
  pugi::xml_node Find(std::string_view id) const;

  // What the element's reference "#id" stands for; the null node for other references and none.
  pugi::xml_node Target(const pugi::xml_node& node) const;

  // The line on which an element stands, from 1.
  std::size_t LineOf(const pugi::xml_node& node) const;

 private:
  class Collector;

  [[noreturn]] void Fail(std::string_view text, std::ptrdiff_t offset, const char* what) const;

  std::string name_;
  std::string text_;  // for the lines; empty where the document is in another encoding than UTF-8
  std::size_t size_ = 0;
  pugi::xml_document document_;
  std::unordered_map<std::string_view, pugi::xml_node> ids_;  // names are those in document_
  SvgStyleSheet sheet_;
};

}  // namespace trovan::filters
