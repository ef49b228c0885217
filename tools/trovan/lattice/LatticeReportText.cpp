#include "lattice/LatticeReportText.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <sstream>

#include <nlohmann/json.hpp>

#include <corvel/Text.h>

#include "Printable.h"
#include "filters/lattice/NodeTypes.h"

namespace trovan::tool {
namespace {

using filters::AxisSpacing;
using filters::ComponentReport;
using filters::LatticeReport;
using filters::NodeTypeName;

constexpr const char* kAxisNames[] = {"X", "Y", "Z"};

std::string Line(const std::string& label, const std::string& value) {
  char start[32];
  std::snprintf(start, sizeof start, "  %-14.14s ", label.c_str());
  return start + Printable(value) + '\n';
}

std::string Number(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.12G", value);
  return text;
}

const char* TypeName(LatticeResequencer::LatticeType type) {
  if (type == LatticeResequencer::Rectilinear) return "rectilinear";
  return type == LatticeResequencer::Curvilinear ? "curvilinear" : "uniform";
}

const char* RowsName(filters::RowOrder order) {
  return order == filters::RowOrder::kTopDown ? "top row first" : "bottom row first";
}

std::string AxisText(const AxisSpacing& axis, double tolerance) {
  const std::string range = Number(axis.first) + " to " + Number(axis.last);
  if (axis.count == 1) return Number(axis.first);
  std::string text = range + ", step " + Number(axis.step) + ", ";
  text += axis.equal ? "equally spaced" : "not equally spaced within " + Number(tolerance) + " %";
  // Coordinates that are all the same have no step to deviate from.
  if (!std::isfinite(axis.deviationInPercent)) return text;
  return text + " (deviation " + Number(axis.deviationInPercent) + " %)";
}

std::string RangeText(const ComponentReport& component) {
  std::string text = component.lowest
                         ? Number(*component.lowest) + " to " + Number(*component.highest)
                         : "no valid value";
  if (!component.name.empty()) text += " (" + component.name + ")";
  return text;
}

// One line for each component, and one that counts those beyond the first dozen: a spectral raster
// has hundreds.
std::string RangeLines(const LatticeReport& report) {
  constexpr std::size_t kShown = 12;
  const auto& components = report.components;
  std::string text;
  for (std::size_t c = 0; c < std::min(components.size(), kShown); ++c) {
    const std::string label = components.size() == 1 ? "Range" : "Range " + std::to_string(c);
    text += Line(label, RangeText(components[c]));
  }
  if (components.size() > kShown) {
    text += Line("", "and " + std::to_string(components.size() - kShown) + " components more");
  }
  return text;
}

std::string Nodes(const LatticeReport& report) {
  const auto& header = report.header;
  return std::to_string(header.columns) + " columns x " + std::to_string(header.rows) + " rows x " +
         std::to_string(header.planes) + " planes, " + std::to_string(header.components) +
         (header.components == 1 ? " component" : " components") + " of type " +
         std::string(NodeTypeName(header.dataType));
}

std::string Counted(const LatticeReport& report, std::uint64_t ComponentReport::*count) {
  std::uint64_t sum = 0;
  for (const ComponentReport& component : report.components) sum += component.*count;
  return std::to_string(sum);
}

// The library's text, without its carriage returns and indented.
std::string InfoLines(const std::wstring& infoText) {
  std::istringstream text(corvel::Utf8FromWide(infoText));
  std::string lines;
  for (std::string line; std::getline(text, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    std::replace(line.begin(), line.end(), '\t', ' ');
    lines += "    " + Printable(line) + '\n';
  }
  return lines;
}

nlohmann::ordered_json NumberOrNull(const std::optional<double>& value) {
  // JSON has no NaN and no infinities.
  if (!value || !std::isfinite(*value)) return nullptr;
  return *value;
}

nlohmann::ordered_json AxisAsJson(const AxisSpacing& axis) {
  return {{"count", axis.count},
          {"first", NumberOrNull(axis.first)},
          {"last", NumberOrNull(axis.last)},
          {"step", NumberOrNull(axis.step)},
          {"equally_spaced", axis.equal},
          {"deviation_percent", NumberOrNull(axis.deviationInPercent)}};
}

nlohmann::ordered_json ComponentAsJson(const ComponentReport& component) {
  return {{"name", component.name},
          {"lowest", NumberOrNull(component.lowest)},
          {"highest", NumberOrNull(component.highest)},
          {"valid", component.valid},
          {"void", component.voids},
          {"invalid", component.invalid}};
}

}  // namespace

std::string LatticeReportAsText(const std::string& name, const LatticeReport& report,
                                double tolerancePercent) {
  const auto& header = report.header;
  std::string text = Printable(name) + "\n";
  text += Line("Format", header.format);
  if (!header.title.empty()) text += Line("Title", header.title);
  text += Line("Lattice", TypeName(header.type));
  text += Line("Nodes", Nodes(report));
  text += Line("Rows", RowsName(header.rowOrder));
  if (header.type != LatticeResequencer::Uniform) {
    text += Line("Coordinates", "of type " + std::string(NodeTypeName(header.coordType)));
  }
  for (unsigned axis = 0; axis < 3; ++axis) {
    if (report.axes)
      text += Line(kAxisNames[axis], AxisText((*report.axes)[axis], tolerancePercent));
    if (report.extent) {
      const auto& range = (*report.extent)[axis];
      text += Line(kAxisNames[axis], Number(range[0]) + " to " + Number(range[1]));
    }
  }
  text += RangeLines(report);
  if (header.voidValue) {
    text += Line("Void values",
                 Counted(report, &ComponentReport::voids) + " of " + Number(*header.voidValue));
  }
  text += Line("Invalid values", Counted(report, &ComponentReport::invalid));
  for (const std::string& remark : header.remarks) text += Line("Remark", remark);
  if (!report.infoText.empty()) text += "  Summary\n" + InfoLines(report.infoText);
  return text;
}

std::string LatticeReportAsJson(const std::string& name, const LatticeReport& report) {
  const auto& header = report.header;
  nlohmann::ordered_json json = {{"file", name},
                                 {"format", header.format},
                                 {"title", header.title},
                                 {"lattice", TypeName(header.type)},
                                 {"columns", header.columns},
                                 {"rows", header.rows},
                                 {"planes", header.planes},
                                 {"type", NodeTypeName(header.dataType)},
                                 {"row_order", RowsName(header.rowOrder)},
                                 {"void_value", NumberOrNull(header.voidValue)}};
  json["components"] = nlohmann::ordered_json::array();
  for (const auto& component : report.components) {
    json["components"].push_back(ComponentAsJson(component));
  }
  if (header.type != LatticeResequencer::Uniform) {
    json["coordinate_type"] = NodeTypeName(header.coordType);
  }
  for (unsigned axis = 0; axis < 3; ++axis) {
    if (report.axes) json["axes"][kAxisNames[axis]] = AxisAsJson((*report.axes)[axis]);
    if (report.extent) {
      const auto& range = (*report.extent)[axis];
      json["extent"][kAxisNames[axis]] = {NumberOrNull(range[0]), NumberOrNull(range[1])};
    }
  }
  json["remarks"] = header.remarks;
  json["summary"] = corvel::Utf8FromWide(report.infoText);
  return json.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + '\n';
}

}  // namespace trovan::tool
