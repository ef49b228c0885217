#include "TableReportText.h"

#include <algorithm>
#include <cstdio>

#include <nlohmann/json.hpp>

#include "Printable.h"

namespace trovan::tool {
namespace {

using filters::FieldReport;
using filters::TableReport;

std::string HexByte(unsigned byte) {
  char text[8];
  std::snprintf(text, sizeof text, "0x%02X", byte);
  return text;
}

std::string Line(const char* label, const std::string& value) {
  char start[24];
  std::snprintf(start, sizeof start, "  %-14s ", label);
  return start + Printable(value) + '\n';
}

std::string Records(const TableReport& report) {
  std::string text = std::to_string(report.layout.recordCount);
  if (report.deletedRecords > 0) {
    text += ", " + std::to_string(report.deletedRecords) + " of them deleted";
  }
  return text;
}

std::string CodePage(const TableReport& report) {
  const auto& page = report.codePage;
  std::string text = std::to_string(page.number);
  if (!page.name.empty()) text += " (" + page.name + ")";
  return text + ": " + page.reason;
}

std::string Memo(const TableReport& report) {
  if (report.memo) {
    return report.memo->file + " (" + report.memo->kind + ", blocks of " +
           std::to_string(report.memo->blockSize) + " bytes)";
  }
  return report.hasMemoFields ? "missing or not readable" : "none needed";
}

std::string TypeLetter(char type) {
  const bool printable = type > 0x20 && type < 0x7F;
  return printable ? std::string(1, type) : HexByte(static_cast<unsigned char>(type));
}

// Columns on a terminal: one for each code point, which is right for most alphabets.
std::size_t DisplayWidth(const std::string& utf8) {
  return static_cast<std::size_t>(std::count_if(utf8.begin(), utf8.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  }));
}

std::string FieldLine(std::size_t number, const FieldReport& field, std::size_t nameWidth) {
  std::string size = std::to_string(field.length);
  if (field.decimals > 0) size += "." + std::to_string(field.decimals);
  const std::string padding(nameWidth - DisplayWidth(field.name), ' ');
  char rest[64];
  std::snprintf(rest, sizeof rest, "  %s  %-7s ", TypeLetter(field.type).c_str(), size.c_str());
  char start[32];
  std::snprintf(start, sizeof start, "    %3zu  ", number);
  return start + Printable(field.name) + padding + rest + field.kind +
         (field.hidden ? ", hidden: the program's own" : "") + '\n';
}

std::string Fields(const TableReport& report) {
  std::size_t nameWidth = 0;
  for (const FieldReport& field : report.fields) {
    nameWidth = std::max(nameWidth, DisplayWidth(field.name));
  }
  std::string text;
  for (std::size_t i = 0; i < report.fields.size(); ++i) {
    text += FieldLine(i + 1, report.fields[i], nameWidth);
  }
  return text;
}

}  // namespace

std::string TableReportAsText(const std::string& name, const TableReport& report) {
  const auto& layout = report.layout;
  std::string text = Printable(name) + '\n';
  text += Line("Version", HexByte(layout.version) + " (" +
                              std::string(filters::DescribeVersion(layout.version)) + ")");
  text += Line("Records", Records(report));
  text += Line("Record size", std::to_string(layout.recordLength) + " bytes");
  text += Line("Header size", std::to_string(layout.headerLength) + " bytes");
  text += Line("Language byte", HexByte(layout.languageByte));
  text += Line("Code page", CodePage(report));
  text += Line("Memo file", Memo(report));
  text += Line("Fields", std::to_string(report.fields.size()));
  text += Fields(report);
  if (!report.oddities.empty()) {
    text += "  Odd\n";
    for (const std::string& oddity : report.oddities) text += "    - " + Printable(oddity) + '\n';
  }
  return text;
}

std::string TableReportAsJson(const std::string& name, const TableReport& report) {
  const auto& layout = report.layout;
  nlohmann::ordered_json json;
  json["file"] = name;
  json["version"] = layout.version;
  json["version_name"] = filters::DescribeVersion(layout.version);
  json["records"] = layout.recordCount;
  json["records_present"] = report.recordsPresent;
  json["deleted_records"] = report.deletedRecords;
  json["record_size"] = layout.recordLength;
  json["header_size"] = layout.headerLength;
  json["language_byte"] = layout.languageByte;
  json["code_page"]["number"] = report.codePage.number;
  json["code_page"]["name"] = report.codePage.name;
  json["code_page"]["reason"] = report.codePage.reason;
  if (report.memo) {
    json["memo"]["file"] = report.memo->file;
    json["memo"]["kind"] = report.memo->kind;
    json["memo"]["block_size"] = report.memo->blockSize;
  } else {
    json["memo"] = nullptr;
  }
  json["fields"] = nlohmann::ordered_json::array();
  for (const FieldReport& field : report.fields) {
    json["fields"].push_back({{"name", field.name},
                              {"type", std::string(1, field.type)},
                              {"kind", field.kind},
                              {"length", field.length},
                              {"decimals", field.decimals},
                              {"hidden", field.hidden}});
  }
  json["oddities"] = report.oddities;
  // A type byte may be anything; what is no UTF-8 becomes U+FFFD.
  return json.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + '\n';
}

}  // namespace trovan::tool
