// Writes the rows of a delimited text file as points of a map.
#pragma once

#include <string>
#include <vector>

#include <corvel/Progress.h>

#include "filters/support/ByteSink.h"
#include "filters/text/ColumnsExport.h"

namespace trovan::filters {

// Writes GeoJSON (RFC 7946) in constant memory. `coordinates` are the columns x, y and perhaps z,
// as ChooseColumn takes them: longitude and latitude in degrees by that format, which are not
// checked or converted. The other columns, or those of `options.columns`, are the properties.
//
// A row whose coordinates are all empty is a feature without geometry; one in which some are is
// bad, as one with text that is no number. All else is as with ExportColumns.
ColumnsExportResult ExportPoints(const std::wstring& path, const ColumnsExportOptions& options,
                                 const std::vector<std::string>& coordinates, ByteSink& sink,
                                 corvel::IProgress* progress);

}  // namespace trovan::filters
