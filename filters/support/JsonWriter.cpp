#include "JsonWriter.h"

namespace trovan::filters {

void JsonWriter::Begin(const std::vector<std::string>& columns) {
  row_.emplace(out_, columns);
  if (form_ == Form::kArray) out_.Put("[");
}

void JsonWriter::BeginRow() {
  if (form_ == Form::kArray) out_.Put(anyRow_ ? ",\n" : "\n");
  anyRow_ = true;
  row_->Begin();
}

void JsonWriter::EndRow() {
  row_->End();
  if (form_ == Form::kLines) out_.Put('\n');
  out_.FlushIfFull();
}

void JsonWriter::End() {
  if (form_ == Form::kArray) out_.Put(anyRow_ ? "\n]\n" : "]\n");
  out_.Flush();
}

}  // namespace trovan::filters
