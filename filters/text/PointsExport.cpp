#include "PointsExport.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "filters/text/ColumnChoice.h"
#include "filters/text/ColumnValues.h"
#include "filters/text/GeoJsonPoints.h"
#include "filters/text/NumberField.h"

namespace trovan::filters {
namespace {

// The coordinates of the present row.
class Coordinates {
 public:
  Coordinates(const ColumnsReader& reader, const std::vector<std::string>& columns, char decimal)
      : reader_(reader), columns_(ChooseColumns(reader.Names(), columns)), decimal_(decimal) {}

  const std::vector<std::size_t>& Columns() const { return columns_; }

  // Reads them. What is wrong with them, with its place; empty: nothing.
  std::string Read() {
    values_.clear();
    const auto isEmpty = [this](std::size_t column) { return IsBlank(TextOf(column)); };
    if (std::all_of(columns_.begin(), columns_.end(), isEmpty)) return {};
    for (const std::size_t column : columns_) {
      double value = 0.0;
      if (!ReadNumberField(TextOf(column), decimal_, value)) return Fault(column);
      values_.push_back(value);
    }
    return {};
  }

  // None when all are empty.
  const std::vector<double>& Values() const { return values_; }

 private:
  std::string_view TextOf(std::size_t column) const {
    const auto row = reader_.Row();
    return column < row.size() ? row[column].text : std::string_view();
  }

  std::string Fault(std::size_t column) const {
    const std::string_view text = TextOf(column);
    return reader_.Place(column) + (IsBlank(text) ? "this coordinate is missing beside others"
                                                  : WhyNoNumber(text, decimal_));
  }

  const ColumnsReader& reader_;
  std::vector<std::size_t> columns_;
  char decimal_;
  std::vector<double> values_;
};

std::vector<std::size_t> OtherColumns(std::size_t count, const std::vector<std::size_t>& taken) {
  std::vector<std::size_t> others;
  for (std::size_t i = 0; i < count; ++i) {
    if (std::find(taken.begin(), taken.end(), i) == taken.end()) others.push_back(i);
  }
  return others;
}

}  // namespace

ColumnsExportResult ExportPoints(const std::wstring& path, const ColumnsExportOptions& options,
                                 const std::vector<std::string>& coordinates, ByteSink& sink,
                                 corvel::IProgress* progress) {
  ColumnsExportResult result;
  ColumnsReader reader(path, options.format, progress);
  if (reader.WasStopped()) {
    GeoJsonPoints(sink, {}).End();
    result.cancelled = true;
    return result;
  }
  ColumnValues values(reader, options.numbers, options.decimal);
  Coordinates place(reader, coordinates, options.decimal);
  const std::size_t count = reader.Names().size();
  const bool all = options.columns.empty();
  const std::vector<std::size_t> columns =
      all ? OtherColumns(count, place.Columns()) : ChooseColumns(reader.Names(), options.columns);
  std::vector<std::string> names;
  names.reserve(columns.size());
  for (const std::size_t column : columns) names.push_back(reader.Names()[column]);
  GeoJsonPoints points(sink, names, count + 1);
  const auto fault = [&] {
    const std::string problem = place.Read();
    return problem.empty() ? values.Fault() : problem;
  };
  const auto write = [&] {
    if (place.Values().empty()) result.withoutPlace.Add(reader.Line());
    JsonObject& properties = points.BeginPoint(place.Values());
    for (const std::size_t column : columns) values.Write(column, properties);
    for (std::size_t i = count; all && i < reader.Row().size(); ++i) values.Write(i, properties);
    points.EndPoint();
  };
  ExportRows(reader, options, fault, write, result);
  points.End();
  return result;
}

}  // namespace trovan::filters
