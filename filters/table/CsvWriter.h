// Comma-separated values by RFC 4180: a header line, lines that end with CR LF, quotes around
// values that hold a quote, a comma or a line end. Null values and empty texts are both empty.
#pragma once

#include "filters/table/OutputBuffer.h"
#include "filters/table/RowWriter.h"

namespace trovan::filters {

class CsvWriter : public RowWriter {
 public:
  // `sink` outlives the writer.
  explicit CsvWriter(ByteSink& sink) : out_(sink) {}

  void Begin(const std::vector<std::string>& columns) override;
  void BeginRow() override { first_ = true; }
  void Null() override { Separate(); }
  void Text(std::string_view text) override;
  void Number(std::string_view number) override;
  void Logical(bool value) override;
  void BeginLongText() override;
  void LongTextPiece(std::string_view piece) override;
  void EndLongText() override;
  void EndRow() override;
  void End() override { out_.Flush(); }

 private:
  void Separate();
  void PutDoublingQuotes(std::string_view text);

  OutputBuffer out_;
  bool first_ = true;  // no value of the row was written yet
};

}  // namespace trovan::filters
