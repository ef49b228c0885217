#include "ColumnChoice.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <system_error>

#include "filters/support/FilterError.h"

namespace trovan::filters {
namespace {

std::optional<std::size_t> AsNumber(std::string_view text) {
  std::size_t number = 0;
  const char* const end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data(), end, number);
  if (parsed.ec != std::errc() || parsed.ptr != end) return std::nullopt;
  return number;
}

std::string List(const std::vector<std::string>& names) {
  constexpr std::size_t kShown = 50;
  std::string list;
  for (std::size_t i = 0; i < std::min(names.size(), kShown); ++i) {
    list += (i > 0 ? ", " : "") + ShortName(names[i]);
  }
  if (names.size() > kShown) list += " and " + std::to_string(names.size() - kShown) + " more";
  return list;
}

}  // namespace

std::string ShortName(const std::string& name) {
  constexpr std::size_t kShown = 60;
  if (name.size() <= kShown) return name;
  // Not within a character of UTF-8.
  const auto continues = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; };
  std::size_t length = kShown;
  while (length > 0 && continues(name[length])) --length;
  return name.substr(0, length) + "...";
}

std::size_t ChooseColumn(const std::vector<std::string>& names, std::string_view wanted) {
  const auto found = std::find(names.begin(), names.end(), wanted);
  if (found != names.end()) {
    const auto index = static_cast<std::size_t>(found - names.begin());
    const auto other = std::find(found + 1, names.end(), wanted);
    if (other == names.end()) return index;
    throw FilterError("columns " + std::to_string(index + 1) + " and " +
                      std::to_string(other - names.begin() + 1) + " are both called \"" +
                      ShortName(*found) + "\"; choose by number");
  }
  const auto number = AsNumber(wanted);
  if (number && *number >= 1 && *number <= names.size()) return *number - 1;
  throw FilterError("there is no column \"" + std::string(wanted) + "\"; " +
                    (names.empty() ? "there are none" : "there are: " + List(names)));
}

std::vector<std::size_t> ChooseColumns(const std::vector<std::string>& names,
                                       const std::vector<std::string>& wanted) {
  std::vector<std::size_t> columns;
  columns.reserve(wanted.size());
  for (const std::string& name : wanted) columns.push_back(ChooseColumn(names, name));
  return columns;
}

}  // namespace trovan::filters
