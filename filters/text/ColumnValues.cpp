#include "ColumnValues.h"

#include <algorithm>

#include "filters/support/QuotedText.h"
#include "filters/text/ColumnChoice.h"
#include "filters/text/NumberField.h"

namespace trovan::filters {
namespace {

constexpr std::string_view kBlanks = " \t";

bool ReadsWith(std::string_view text, char decimal) {
  double ignored = 0.0;
  return ReadNumberField(text, decimal, ignored);
}

}  // namespace

bool IsBlank(std::string_view text) {
  return text.find_first_not_of(kBlanks) == std::string_view::npos;
}

std::string WhyNoNumber(std::string_view text, char decimal) {
  const char other = decimal == '.' ? ',' : '.';
  std::string why = Quoted(text) + " is no number";
  if (ReadsWith(text, other)) {
    why += std::string(" with the decimal character ") + decimal + "; --decimal " + other +
           " reads it";
  }
  return why;
}

ColumnValues::ColumnValues(ColumnsReader& reader, const std::vector<std::string>& numbers,
                           char decimal)
    : reader_(reader),
      decimal_(decimal),
      numbers_(ChooseColumns(reader.Names(), numbers)),
      isNumber_(reader.Names().size()) {
  std::sort(numbers_.begin(), numbers_.end());
  for (const std::size_t column : numbers_) isNumber_[column] = true;
}

std::string ColumnValues::Fault() const {
  const auto row = reader_.Row();
  for (const std::size_t column : numbers_) {
    if (column >= row.size()) break;
    const std::string_view text = row[column].text;
    if (IsBlank(text) || ReadsWith(text, decimal_)) continue;
    return reader_.Place(column) + WhyNoNumber(text, decimal_);
  }
  return {};
}

std::string_view ColumnValues::WithPoint(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  number_ = text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
  std::replace(number_.begin(), number_.end(), decimal_, '.');
  return number_;
}

}  // namespace trovan::filters
