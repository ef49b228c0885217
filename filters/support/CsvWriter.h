// Comma-separated values by RFC 4180: a header line (none without columns), lines that end with CR
// LF, quotes around values that hold a quote, a comma or a line end. Null values and empty texts
// are both empty; the only value of a row is then a pair of quotes, since many readers pass over
// empty lines.
#pragma once

#include "filters/support/OutputBuffer.h"
#include "filters/support/RowWriter.h"

namespace trovan::filters {

class CsvWriter : public RowWriter {
 public:
  // `sink` outlives the writer.
  explicit CsvWriter(ByteSink& sink) : out_(sink) {}

  void Begin(const std::vector<std::string>& columns) override;
  void BeginRow() override;
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
  void PutOnLine(std::string_view text);
  void PutDoublingQuotes(std::string_view text);

  OutputBuffer out_;
  bool first_ = true;      // no value of the row was written yet
  bool single_ = false;    // the table has one column
  bool lineEmpty_ = true;  // nothing stands on the line of the row yet
};

}  // namespace trovan::filters
