// The text of an ENVI header as names and values, before their meaning.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace trovan::filters {

// One "name = value" of the header.
struct EnviField {
  std::string name;   // in small letters, with single blanks inside
  std::string value;  // without its braces; several lines are joined by blanks
  std::size_t line;   // where it begins, from 1
};

// Takes the text apart: the first line must be "ENVI"; empty lines and those that begin with a
// semicolon are left out. UTF-8; bytes that are none become U+FFFD.
//
// Raises FilterError with the name of the file, the line and what was expected there.
std::vector<EnviField> SplitEnviFields(std::string_view text, const std::string& file);

// The items of a value that is a list, without blanks around them. No items in an empty value.
std::vector<std::string> SplitEnviList(std::string_view value);

// Raises FilterError: "<file>, line <line>: <problem>".
[[noreturn]] void FailInLine(const std::string& file, std::size_t line, const std::string& problem);

// Raises FilterError: the field's value is not what was expected.
[[noreturn]] void FailInField(const std::string& file, const EnviField& field,
                              const std::string& expected);

}  // namespace trovan::filters
