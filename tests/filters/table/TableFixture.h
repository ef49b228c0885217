// Tables in a folder of their own, and what the filter makes of them.
//
//   Save(DbfImage().Field("NAME", 'C', 4).Record("Oslo"));
//   EXPECT_EQ(Csv(), "NAME\r\nOslo\r\n");
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "filters/support/CsvWriter.h"
#include "filters/support/JsonWriter.h"
#include "filters/support/StringSink.h"
#include "filters/table/TableExport.h"
#include "support/DbfImage.h"
#include "support/TempFolder.h"

namespace trovan::filters {

using test::DbfImage;

class TableFixture : public testing::Test {
 protected:
  // The files of a test are "t.dbf", "t.fpt" and so on.
  std::wstring Path() const { return folder_.File(L"t.dbf"); }
  void Save(const DbfImage& image) { Save(image.Text()); }
  void Save(std::string_view bytes) { Save("t.dbf", bytes); }
  void Save(const std::string& name, std::string_view bytes) {
    test::WriteBytes(folder_.Path() / name, bytes);
  }

  // The table as CSV. What else there is to know is in result_.
  std::string Csv() {
    StringSink sink;
    CsvWriter writer(sink);
    result_ = ExportTable(Path(), options_, writer, nullptr);
    return sink.text;
  }

  // The table as JSON, read back.
  nlohmann::ordered_json Json() {
    StringSink sink;
    JsonWriter writer(sink, JsonWriter::Form::kArray);
    result_ = ExportTable(Path(), options_, writer, nullptr);
    return nlohmann::ordered_json::parse(sink.text);
  }

  test::TempFolder folder_;
  TableExportOptions options_;
  TableExportResult result_;
};

// The low bytes of `value`, the lowest first.
inline std::string LowFirst(std::uint64_t value, std::size_t width) {
  std::string bytes;
  for (std::size_t i = 0; i < width; ++i) bytes += static_cast<char>(value >> 8 * i);
  return bytes;
}

inline std::string HighFirst(std::uint64_t value, std::size_t width) {
  const std::string bytes = LowFirst(value, width);
  return {bytes.rbegin(), bytes.rend()};
}

// A field descriptor of level 7.
inline std::string Level7Field(std::string name, char type, std::uint8_t length,
                               std::uint8_t decimals = 0) {
  name.resize(48, '\0');
  name[32] = type;
  name[33] = static_cast<char>(length);
  name[34] = static_cast<char>(decimals);
  return name;
}

// A table of level 7: `records` brings the deletion flags.
inline std::string Level7Table(const std::string& fields, std::uint16_t recordLength,
                               const std::string& records) {
  std::string bytes(68, '\0');
  bytes[0] = 0x04;
  DbfImage::Store(bytes, 4, 4, static_cast<std::uint32_t>(records.size() / recordLength));
  DbfImage::Store(bytes, 8, 2, static_cast<std::uint32_t>(68 + fields.size() + 1));
  DbfImage::Store(bytes, 10, 2, recordLength);
  return bytes + fields + '\x0D' + records + '\x1A';
}

}  // namespace trovan::filters
