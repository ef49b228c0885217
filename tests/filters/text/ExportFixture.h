// Small delimited files, and what the exports make of them.
//
//   Save("x;y\n1,5;2\n");
//   options_.format.format.delimiters = ";";
//   EXPECT_EQ(Csv(), "x,y\r\n\"1,5\",2\r\n");
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <corvel/Progress.h>

#include "filters/support/CsvWriter.h"
#include "filters/support/FilterError.h"
#include "filters/support/JsonWriter.h"
#include "filters/support/StringSink.h"
#include "filters/text/ColumnsExport.h"
#include "filters/text/PointsExport.h"
#include "support/TempFolder.h"

namespace trovan::filters {

class ExportFixture : public testing::Test {
 protected:
  std::wstring Path() const { return folder_.File(L"t.csv"); }
  void Save(std::string_view bytes) const { test::WriteBytes(folder_.Path() / "t.csv", bytes); }

  // All that Csv, Json and Points learn beside the output is in result_.
  std::string Csv() {
    StringSink sink;
    CsvWriter writer(sink);
    result_ = ExportColumns(Path(), options_, writer, progress_);
    return sink.text;
  }
  std::string JsonText() {
    StringSink sink;
    JsonWriter writer(sink, JsonWriter::Form::kArray);
    result_ = ExportColumns(Path(), options_, writer, progress_);
    return sink.text;
  }
  nlohmann::ordered_json Json() { return nlohmann::ordered_json::parse(JsonText()); }

  std::string PointsText(const std::vector<std::string>& coordinates) {
    StringSink sink;
    result_ = ExportPoints(Path(), options_, coordinates, sink, progress_);
    return sink.text;
  }
  nlohmann::ordered_json Points(const std::vector<std::string>& coordinates) {
    return nlohmann::ordered_json::parse(PointsText(coordinates));
  }

  // Why the work is refused, without the folder of the file; empty: it is not.
  template <typename Work>
  std::string Refusal(Work work) const {
    try {
      work();
    } catch (const FilterError& error) {
      std::string text = error.what();
      const std::string folder = folder_.Path().string() + '/';
      const std::size_t at = text.find(folder);
      return at == std::string::npos ? text : text.erase(at, folder.size());
    }
    return {};
  }
  std::string Refusal() {
    return Refusal([this] { Csv(); });
  }

  // The first problem of result_, without the folder.
  std::string FirstBadRow() const {
    if (result_.badRows.Count() == 0) return {};
    return Refusal([this] { throw FilterError(result_.badRows.First().front()); });
  }

  test::TempFolder folder_;
  ColumnsExportOptions options_;
  ColumnsExportResult result_;
  corvel::IProgress* progress_ = nullptr;
};

}  // namespace trovan::filters
