#include "ColumnsExport.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

#include "filters/support/FilterError.h"
#include "filters/text/ColumnChoice.h"
#include "filters/text/ColumnValues.h"

namespace trovan::filters {
namespace {

std::vector<std::size_t> AllColumns(std::size_t count) {
  std::vector<std::size_t> columns(count);
  std::iota(columns.begin(), columns.end(), std::size_t{0});
  return columns;
}

void NoteWidth(const ColumnsReader& reader, ColumnsExportResult& result) {
  const std::size_t width = reader.Row().size();
  if (width < reader.Names().size()) result.shorter.Add(reader.Line());
  if (width > reader.Names().size()) result.longer.Add(reader.Line());
}

}  // namespace

void ExportRows(ColumnsReader& reader, const ColumnsExportOptions& options,
                const std::function<std::string()>& fault, const std::function<void()>& write,
                ColumnsExportResult& result) {
  while ((!options.limit || result.rows < *options.limit) && reader.ReadRow()) {
    NoteWidth(reader, result);
    std::string problem = fault();
    if (problem.empty()) {
      write();
      ++result.rows;
    } else if (options.keepGoing) {
      result.badRows.Add(std::move(problem));
    } else {
      throw FilterError(problem);
    }
  }
  result.remarks = reader.Remarks();
  result.malformed = reader.Malformed();
  result.loneReturns = reader.LoneReturns();
  result.cancelled = reader.WasStopped();
}

ColumnsExportResult ExportColumns(const std::wstring& path, const ColumnsExportOptions& options,
                                  RowWriter& writer, corvel::IProgress* progress) {
  ColumnsExportResult result;
  ColumnsReader reader(path, options.format, progress);
  if (reader.WasStopped()) {
    writer.Begin({});
    writer.End();
    result.cancelled = true;
    return result;
  }
  ColumnValues values(reader, options.numbers, options.decimal);
  const bool all = options.columns.empty();
  const std::vector<std::size_t> columns =
      all ? AllColumns(reader.Names().size()) : ChooseColumns(reader.Names(), options.columns);
  std::vector<std::string> names;
  names.reserve(columns.size());
  for (const std::size_t column : columns) names.push_back(reader.Names()[column]);
  writer.Begin(names);
  ExportRows(
      reader, options, [&] { return values.Fault(); },
      [&] {
        writer.BeginRow();
        for (const std::size_t column : columns) values.Write(column, writer);
        for (std::size_t i = columns.size(); all && i < reader.Row().size(); ++i) {
          values.Write(i, writer);
        }
        writer.EndRow();
      },
      result);
  writer.End();
  return result;
}

}  // namespace trovan::filters
