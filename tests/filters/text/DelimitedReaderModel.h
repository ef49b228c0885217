// The rows of a text, read from memory in the slowest and plainest way: what DelimitedReader is
// held against. Knows nothing of the tokenizer.
#pragma once

#include <string>
#include <vector>

#include "filters/text/DelimitedFormat.h"

namespace trovan::test {

struct ModelField {
  std::string text;
  bool quoted = false;
};

struct ModelRow {
  unsigned long long line = 0;
  std::vector<ModelField> fields;
};

struct ModelRows {
  std::vector<ModelRow> rows;
  bool openQuote = false;  // the last row has a quote that is never closed, and is left out
};

class DelimitedReaderModel {
 public:
  DelimitedReaderModel(std::string_view text, const filters::DelimitedFormat& format, char comment)
      : format_(format), comment_(comment) {
    // Returns are nowhere of any meaning.
    for (const char c : text) {
      if (c != '\r') text_ += c;
    }
  }

  ModelRows Read() {
    ModelRows result;
    while (FindRow()) {
      ModelRow row = {line_, {}};
      while (ReadField(row)) {
      }
      if (openQuote_) {
        result.openQuote = true;
        return result;
      }
      result.rows.push_back(row);
    }
    return result;
  }

 private:
  static bool Has(const std::string& set, char c) { return set.find(c) != std::string::npos; }
  bool AtEnd() const { return at_ == text_.size(); }
  bool IsWhite(char c) const { return Has(format_.whitespace, c); }
  bool IsDelimiter(char c) const { return Has(format_.delimiters, c) && !IsWhite(c); }
  bool IsQuote(char c) const { return Has(format_.quotes, c) && !IsWhite(c) && !IsDelimiter(c); }
  static bool EndsLine(char c) { return c == '\n' || c == '\f'; }

  char Take() {
    const char c = text_[at_++];
    if (c == '\n') ++line_;
    return c;
  }

  bool FindRow() {
    while (!AtEnd()) {
      const char c = text_[at_];
      if (comment_ != 0 && c == comment_) {
        while (!AtEnd() && Take() != '\n') {
        }
      } else if (EndsLine(c) || IsWhite(c)) {
        Take();
      } else {
        return true;
      }
    }
    return false;
  }

  void SkipWhite() {
    while (!AtEnd() && IsWhite(text_[at_])) Take();
  }

  // Reads a field and what ends it; true when the row goes on behind it.
  bool ReadField(ModelRow& row) {
    SkipWhite();
    ModelField field;
    if (!AtEnd() && IsQuote(text_[at_])) {
      field.quoted = true;
      ReadQuoted(field.text);
      if (format_.whitespace.empty()) ReadPlain(field.text);
    } else {
      ReadPlain(field.text);
    }
    row.fields.push_back(field);
    SkipWhite();
    if (AtEnd()) return false;
    if (EndsLine(text_[at_])) {
      Take();
      return false;
    }
    if (IsDelimiter(text_[at_])) Take();
    return true;
  }

  void ReadPlain(std::string& text) {
    while (!AtEnd()) {
      const char c = text_[at_];
      if (IsWhite(c) || IsDelimiter(c) || EndsLine(c)) return;
      if (Take() != '\0') text += c;
    }
  }

  void ReadQuoted(std::string& text) {
    const char quote = Take();
    while (!AtEnd()) {
      const char c = Take();
      if (c == quote) {
        if (AtEnd() || text_[at_] != quote) return;
        Take();
      }
      if (c != '\0') text += c;
    }
    openQuote_ = true;
  }

  std::string text_;
  const filters::DelimitedFormat& format_;
  char comment_;
  std::size_t at_ = 0;
  unsigned long long line_ = 1;
  bool openQuote_ = false;
};

}  // namespace trovan::test
