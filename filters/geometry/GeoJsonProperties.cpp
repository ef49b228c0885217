#include "GeoJsonProperties.h"

#include <nlohmann/json.hpp>

#include <corvel/Text.h>

namespace trovan::filters {
namespace {

std::string QuotedJson(std::string_view text) { return nlohmann::json(text).dump(); }

}  // namespace

void GeoJsonProperties::Clear() { *this = {}; }

void GeoJsonProperties::Key(std::string_view key) {
  if (nesting_.empty()) {
    key_ = key;
    return;
  }
  Separate();
  json_ += QuotedJson(key) + ':';
  afterKey_ = true;
}

void GeoJsonProperties::Text(std::string_view text) {
  if (nesting_.empty()) return Set(text);
  Separate();
  json_ += QuotedJson(text);
}

void GeoJsonProperties::Literal(std::string_view number) {
  if (nesting_.empty()) return Set(number);
  Separate();
  json_ += number;
}

void GeoJsonProperties::Null() {
  if (!nesting_.empty()) Literal("null");
}

void GeoJsonProperties::Begin(char bracket) {
  Separate();
  json_ += bracket;
  nesting_.push_back(false);
}

void GeoJsonProperties::End(char bracket) {
  json_ += bracket;
  nesting_.pop_back();
  if (!nesting_.empty()) return;
  Set(json_);
  json_.clear();
}

void GeoJsonProperties::SetIfNew(std::string_view key, std::string_view text) {
  const std::wstring name = corvel::WideFromUtf8(key);
  if (params_.Find(name) == nullptr) params_.Set(name, corvel::WideFromUtf8(text));
}

// Puts a comma between the items of what is open.
void GeoJsonProperties::Separate() {
  if (!nesting_.empty() && !afterKey_) {
    if (nesting_.back()) json_ += ',';
    nesting_.back() = true;
  }
  afterKey_ = false;
}

void GeoJsonProperties::Set(std::string_view text) {
  params_.Set(corvel::WideFromUtf8(key_), corvel::WideFromUtf8(text));
}

}  // namespace trovan::filters
