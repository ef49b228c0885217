// A report on a text file for people and for programs.
#pragma once

#include <string>

#include <nlohmann/json_fwd.hpp>

#include "filters/text/TextSniffer.h"

namespace trovan::tool {

// Ends with a line feed. UTF-8.
std::string TextReportAsText(const std::string& name, const filters::TextReport& report);

nlohmann::ordered_json TextReportAsJson(const std::string& name, const filters::TextReport& report);

}  // namespace trovan::tool
