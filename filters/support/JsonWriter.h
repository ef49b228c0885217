// Rows as JSON objects (RFC 8259): one array of them, or one object a line (NDJSON). Columns of the
// same name are told apart by a number. Values beyond the columns are named "column_4" by their
// place in the row, counted from 1.
//
// Written piece by piece, since a table may be larger than memory.
#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "filters/support/OutputBuffer.h"
#include "filters/support/RowWriter.h"

namespace trovan::filters {

class JsonWriter : public RowWriter {
 public:
  enum class Form { kArray, kLines };

  // `sink` outlives the writer.
  JsonWriter(ByteSink& sink, Form form) : out_(sink), form_(form) {}

  void Begin(const std::vector<std::string>& columns) override;
  void BeginRow() override;
  void Null() override;
  void Text(std::string_view text) override;
  void Number(std::string_view number) override;
  void Logical(bool value) override;
  void BeginLongText() override;
  void LongTextPiece(std::string_view piece) override;
  void EndLongText() override;
  void EndRow() override;
  void End() override;

 private:
  void PutKey();
  std::string UnusedName(const std::string& name) const;

  OutputBuffer out_;
  Form form_;
  std::vector<std::string> keys_;  // with quotes and colon
  std::set<std::string> names_;    // as they came out
  std::size_t column_ = 0;
  bool anyRow_ = false;
};

}  // namespace trovan::filters
