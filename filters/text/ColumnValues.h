// The values of a row on their way out: numbers where numbers must be, texts elsewhere.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "filters/text/ColumnsReader.h"

namespace trovan::filters {

// Whether there is no number to be read: nothing, or blanks and tabs.
bool IsBlank(std::string_view text);

// What to say of a text that should be a number: `"1,5" is no number; ...`.
std::string WhyNoNumber(std::string_view text, char decimal);

class ColumnValues {
 public:
  // `numbers` names the columns that must hold numbers. `decimal` is '.' or ','. `reader` outlives
  // the object. Raises as ChooseColumn does.
  ColumnValues(ColumnsReader& reader, const std::vector<std::string>& numbers, char decimal);

  // What is wrong with the numbers of the row, with its place; empty: nothing.
  std::string Fault() const;

  // Writes a value of the row to a RowWriter or a JsonObject: null where nothing stands, a number
  // with a decimal point and its own digits, or a text.
  //
  // REQUIRES: Fault() is empty.
  template <typename Target>
  void Write(std::size_t column, Target& target) {
    if (column >= reader_.Row().size() || reader_.Row()[column].IsMissing()) return target.Null();
    if (!IsNumberColumn(column)) return target.Text(reader_.Text(column));
    const std::string_view text = reader_.Row()[column].text;
    IsBlank(text) ? target.Null() : target.Number(WithPoint(text));
  }

 private:
  bool IsNumberColumn(std::size_t column) const {
    return column < isNumber_.size() && isNumber_[column];
  }
  std::string_view WithPoint(std::string_view text);

  ColumnsReader& reader_;
  char decimal_;
  std::vector<std::size_t> numbers_;
  std::vector<bool> isNumber_;  // of each column
  std::string number_;
};

}  // namespace trovan::filters
