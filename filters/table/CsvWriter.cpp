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

void CsvWriter::Begin(const std::vector<std::string>& columns) {
  BeginRow();
  for (const std::string& column : columns) Text(column);
  EndRow();
}

void CsvWriter::Text(std::string_view text) {
  Separate();
  if (!NeedsQuotes(text)) {
    out_.Put(text);
    return;
  }
  out_.Put('"');
  PutDoublingQuotes(text);
  out_.Put('"');
}

void CsvWriter::Number(std::string_view number) {
  Separate();
  out_.Put(number);
}

void CsvWriter::Logical(bool value) {
  Separate();
  out_.Put(value ? "true" : "false");
}

void CsvWriter::BeginLongText() {
  Separate();
  out_.Put('"');
}

void CsvWriter::LongTextPiece(std::string_view piece) {
  PutDoublingQuotes(piece);
  out_.FlushIfFull();
}

void CsvWriter::EndLongText() { out_.Put('"'); }

void CsvWriter::EndRow() {
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
