// A table's report for people and for programs.
#pragma once

#include <string>

#include "filters/table/TableReport.h"

namespace trovan::tool {

// Lines for a person. `name` is the table's, in UTF-8.
std::string TableReportAsText(const std::string& name, const filters::TableReport& report);

// One JSON object.
std::string TableReportAsJson(const std::string& name, const filters::TableReport& report);

}  // namespace trovan::tool
