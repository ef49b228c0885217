#include "JsonObject.h"

#include <algorithm>
#include <array>
#include <map>

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

JsonObject::JsonObject(OutputBuffer& out, const std::vector<std::string>& keys,
                       std::size_t firstBeyond)
    : out_(out), firstBeyond_(firstBeyond > 0 ? firstBeyond : keys.size() + 1) {
  // There may be very many keys, all the same.
  std::map<std::string_view, unsigned> numbers;
  for (const std::string& key : keys) {
    const std::string name = UnusedName(key, numbers[key]);
    names_.insert(name);
    keys_.push_back(Key(name));
  }
}

// The name alone or with a number from `number` on behind it; `number` is then that one.
std::string JsonObject::UnusedName(const std::string& name, unsigned& number) const {
  std::string unused = name;
  while (names_.contains(unused)) {
    number = std::max(number + 1, 2U);
    unused = name + "_" + std::to_string(number);
  }
  return unused;
}

void JsonObject::Begin() {
  out_.Put('{');
  member_ = 0;
}

void JsonObject::PutKey() {
  if (member_ > 0) out_.Put(',');
  if (member_ < keys_.size()) {
    out_.Put(keys_[member_]);
  } else {
    // Not kept: there may be millions of them.
    const std::size_t place = firstBeyond_ + (member_ - keys_.size());
    unsigned number = 0;
    out_.Put(Key(UnusedName("column_" + std::to_string(place), number)));
  }
  ++member_;
}

void JsonObject::Null() {
  PutKey();
  out_.Put("null");
}

void JsonObject::Text(std::string_view text) {
  BeginLongText();
  PutEscaped(text, out_);
  EndLongText();
}

void JsonObject::Number(std::string_view number) {
  PutKey();
  PutNumber(number, out_);
}

void JsonObject::Logical(bool value) {
  PutKey();
  out_.Put(value ? "true" : "false");
}

void JsonObject::BeginLongText() {
  PutKey();
  out_.Put('"');
}

void JsonObject::LongTextPiece(std::string_view piece) {
  PutEscaped(piece, out_);
  out_.FlushIfFull();
}

}  // namespace trovan::filters
