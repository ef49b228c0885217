#include "RowStatistics.h"

#include <algorithm>
#include <set>

#include "filters/support/FilterError.h"
#include "filters/text/NumberField.h"

namespace trovan::filters {
namespace {

constexpr unsigned long long kNumbersForAComma = 10;

}  // namespace

void RowStatistics::Take(DelimitedReader& reader, unsigned long long mostRows) {
  try {
    while (rows_ < mostRows && !tookAll_) {
      tookAll_ = !reader.ReadRow();
      if (!tookAll_) TakeRow(reader);
    }
  } catch (const FilterError& error) {
    error_ = error.what();
    ++quoteFaults_;
  }
  quoteFaults_ += reader.Remarks().Count();
}

void RowStatistics::TakeRow(const DelimitedReader& reader) {
  const auto row = reader.Row();
  Width& width = widths_[row.size()];
  if (width.rows++ == 0) width.firstLine = reader.Line();
  for (const Field& field : row) {
    if (field.quoted) ++quotedFields_;
    if (rows_ == 0) firstRow_.emplace_back(field.text);
    Count(field, rows_ == 0 ? first_ : others_);
  }
  ++rows_;
}

void RowStatistics::Count(const Field& field, Numbers& numbers) {
  if (field.IsMissing()) return;
  ++numbers.present;
  double value = 0.0;
  const bool withPoint = ReadNumberField(field.text, '.', value);
  const bool withComma = !withPoint && ReadNumberField(field.text, ',', value);
  if (!withPoint && !withComma) return;
  ++numbers.numbers;
  if (withComma) ++numbers.commas;
  if (withPoint && field.text.find('.') != std::string_view::npos) ++numbers.points;
}

std::size_t RowStatistics::Columns() const { return ColumnsFrom(0); }

std::size_t RowStatistics::ColumnsFrom(std::size_t fewest) const {
  std::size_t columns = 0;
  unsigned long long rows = 0;
  for (const auto& [fields, width] : widths_) {
    if (fields < fewest || width.rows < rows) continue;
    columns = fields;
    rows = width.rows;
  }
  return columns;
}

unsigned long long RowStatistics::RowsOf(std::size_t columns) const {
  const auto found = widths_.find(columns);
  return found == widths_.end() ? 0 : found->second.rows;
}

std::optional<unsigned long long> RowStatistics::FirstLineOtherThan(std::size_t columns) const {
  std::optional<unsigned long long> line;
  for (const auto& [fields, width] : widths_) {
    if (fields != columns) line = std::min(line.value_or(width.firstLine), width.firstLine);
  }
  return line;
}

double RowStatistics::NumberShare() const {
  const Numbers& counted = Counted();
  if (counted.present == 0) return 0.0;
  return static_cast<double>(counted.numbers) / static_cast<double>(counted.present);
}

char RowStatistics::Decimal(bool commasDelimit) const {
  Numbers counted = Counted();
  if (commasDelimit && counted.commas * kNumbersForAComma < counted.numbers) counted.commas = 0;
  if (counted.points == 0 && counted.commas == 0) return 0;
  return counted.commas > counted.points ? ',' : '.';
}

bool RowStatistics::HasHeader() const {
  if (rows_ == 0 || first_.numbers > 0) return false;
  if (others_.numbers > 0) return true;
  const std::set<std::string> names(firstRow_.begin(), firstRow_.end());
  return names.size() == firstRow_.size() && !names.contains("");
}

}  // namespace trovan::filters
