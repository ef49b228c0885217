// Rows as JSON objects (RFC 8259): one array of them, or one object a line (NDJSON). What keys they
// have, JsonObject tells.
//
// Written piece by piece, since a table may be larger than memory.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "filters/support/JsonObject.h"
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
  void Null() override { row_->Null(); }
  void Text(std::string_view text) override { row_->Text(text); }
  void Number(std::string_view number) override { row_->Number(number); }
  void Logical(bool value) override { row_->Logical(value); }
  void BeginLongText() override { row_->BeginLongText(); }
  void LongTextPiece(std::string_view piece) override { row_->LongTextPiece(piece); }
  void EndLongText() override { row_->EndLongText(); }
  void EndRow() override;
  void End() override;

 private:
  OutputBuffer out_;
  Form form_;
  std::optional<JsonObject> row_;  // from Begin on
  bool anyRow_ = false;
};

}  // namespace trovan::filters
