#include "CsvWriter.h"

#include <algorithm>
#include <array>

namespace trovan::filters {
namespace {

// Bytes that make quotes necessary.
constexpr std::array<bool, 256> kSpecial = [] {
  std::array<bool, 256> special{};
  for (const char byte : {'"', ',', '\r', '\n'}) special[static_cast<unsigned char>(byte)] = true;
  return special;
}();

bool NeedsQuotes(std::string_view text) {
  return std::any_of(text.begin(), text.end(),
                     [](char byte) { return kSpecial[static_cast<unsigned char>(byte)]; });
}

}  // namespace

void CsvWriter::Separate() {
  if (!first_) out_.Put(',');
  first_ = false;
}

void CsvWriter::BeginRow() {
  first_ = true;
  lineEmpty_ = true;
}

void CsvWriter::PutOnLine(std::string_view text) {
  out_.Put(text);
  lineEmpty_ = lineEmpty_ && text.empty();
}

void CsvWriter::Begin(const std::vector<std::string>& columns) {
  single_ = columns.size() == 1;
  if (columns.empty()) return;
  BeginRow();
  for (const std::string& column : columns) Text(column);
  EndRow();
}

void CsvWriter::Text(std::string_view text) {
  Separate();
  if (!NeedsQuotes(text)) {
    PutOnLine(text);
    return;
  }
  PutOnLine("\"");
  PutDoublingQuotes(text);
  out_.Put('"');
}

void CsvWriter::Number(std::string_view number) {
  Separate();
  PutOnLine(number);
}

void CsvWriter::Logical(bool value) {
  Separate();
  PutOnLine(value ? "true" : "false");
}

void CsvWriter::BeginLongText() {
  Separate();
  PutOnLine("\"");
}

void CsvWriter::LongTextPiece(std::string_view piece) {
  PutDoublingQuotes(piece);
  out_.FlushIfFull();
}

void CsvWriter::EndLongText() { out_.Put('"'); }

void CsvWriter::EndRow() {
  if (single_ && lineEmpty_) out_.Put("\"\"");
  out_.Put("\r\n");
  out_.FlushIfFull();
}

void CsvWriter::PutDoublingQuotes(std::string_view text) {
  for (;;) {
    const std::size_t quote = text.find('"');
    if (quote == std::string_view::npos) break;
    out_.Put(text.substr(0, quote + 1));
    out_.Put('"');
    text.remove_prefix(quote + 1);
  }
  out_.Put(text);
}

}  // namespace trovan::filters
