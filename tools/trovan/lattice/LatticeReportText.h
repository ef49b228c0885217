// A report on a lattice for people and for programs.
#pragma once

#include <string>

#include "filters/lattice/LatticeReport.h"

namespace trovan::tool {

// Both end with a line feed. UTF-8.
std::string LatticeReportAsText(const std::string& name, const filters::LatticeReport& report,
                                double tolerancePercent);
std::string LatticeReportAsJson(const std::string& name, const filters::LatticeReport& report);

}  // namespace trovan::tool
