#include "JsonWriter.h"

#include <algorithm>
#include <array>

namespace trovan::filters {
namespace {

// Bytes that cannot stand in a JSON text as they are.
constexpr std::array<bool, 256> kSpecial = [] {
  std::array<bool, 256> special{};
  for (std::size_t control = 0; control < 0x20; ++control) special[control] = true;
  special['"'] = special['\\'] = true;
  return special;
}();

template <typename Out>
void PutEscape(char byte, Out& out) {
  switch (byte) {
    case '"':
      return out.Put("\\\"");
    case '\\':
      return out.Put("\\\\");
    case '\n':
      return out.Put("\\n");
    case '\r':
      return out.Put("\\r");
    case '\t':
      return out.Put("\\t");
    default: {
      constexpr char kDigits[] = "0123456789abcdef";
      const auto value = static_cast<unsigned char>(byte);
      const char escape[] = {'\\', 'u', '0', '0', kDigits[value >> 4], kDigits[value & 0xF]};
      out.Put(std::string_view(escape, sizeof escape));
    }
  }
}

template <typename Out>
void PutEscaped(std::string_view text, Out& out) {
  std::size_t from = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (!kSpecial[static_cast<unsigned char>(text[at])]) continue;
    out.Put(text.substr(from, at - from));
    PutEscape(text[at], out);
    from = at + 1;
  }
  out.Put(text.substr(from));
}

struct StringOut {
  std::string text;
  void Put(std::string_view piece) { text += piece; }
};

std::string Key(std::string_view name) {
  StringOut key;
  key.Put("\"");
  PutEscaped(name, key);
  key.Put("\":");
  return key.text;
}

// A number as JSON spells it: no plus sign, one zero at most in front, digits on both sides of a
// point.
template <typename Out>
void PutNumber(std::string_view number, Out& out) {
  if (number.front() == '-') out.Put("-");
  if (number.front() == '-' || number.front() == '+') number.remove_prefix(1);
  const std::size_t wholeEnd = std::min(number.find_first_of(".eE"), number.size());
  std::string_view whole = number.substr(0, wholeEnd);
  while (whole.size() > 1 && whole.front() == '0') whole.remove_prefix(1);
  out.Put(whole.empty() ? "0" : whole);
  number.remove_prefix(wholeEnd);
  if (!number.empty() && number.front() == '.') {
    const std::size_t fractionEnd = std::min(number.find_first_of("eE"), number.size());
    if (fractionEnd > 1) out.Put(number.substr(0, fractionEnd));
    number.remove_prefix(fractionEnd);
  }
  out.Put(number);
}

}  // namespace

void JsonWriter::Begin(const std::vector<std::string>& columns) {
  for (const std::string& column : columns) {
    const std::string name = UnusedName(column);
    names_.insert(name);
    keys_.push_back(Key(name));
  }
  if (form_ == Form::kArray) out_.Put("[");
}

std::string JsonWriter::UnusedName(const std::string& name) const {
  std::string unused = name;
  for (int number = 2; names_.contains(unused); ++number) {
    unused = name + "_" + std::to_string(number);
  }
  return unused;
}

void JsonWriter::BeginRow() {
  if (form_ == Form::kArray) out_.Put(anyRow_ ? ",\n" : "\n");
  out_.Put('{');
  column_ = 0;
  anyRow_ = true;
}

void JsonWriter::PutKey() {
  if (column_ > 0) out_.Put(',');
  if (column_ < keys_.size()) {
    out_.Put(keys_[column_]);
  } else {
    // Not kept: there may be millions of them.
    out_.Put(Key(UnusedName("column_" + std::to_string(column_ + 1))));
  }
  ++column_;
}

void JsonWriter::Null() {
  PutKey();
  out_.Put("null");
}

void JsonWriter::Text(std::string_view text) {
  BeginLongText();
  PutEscaped(text, out_);
  EndLongText();
}

void JsonWriter::Number(std::string_view number) {
  PutKey();
  PutNumber(number, out_);
}

void JsonWriter::Logical(bool value) {
  PutKey();
  out_.Put(value ? "true" : "false");
}

void JsonWriter::BeginLongText() {
  PutKey();
  out_.Put('"');
}

void JsonWriter::LongTextPiece(std::string_view piece) {
  PutEscaped(piece, out_);
  out_.FlushIfFull();
}

void JsonWriter::EndLongText() { out_.Put('"'); }

void JsonWriter::EndRow() {
  out_.Put('}');
  if (form_ == Form::kLines) out_.Put('\n');
  out_.FlushIfFull();
}

void JsonWriter::End() {
  if (form_ == Form::kArray) out_.Put(anyRow_ ? "\n]\n" : "]\n");
  out_.Flush();
}

}  // namespace trovan::filters
