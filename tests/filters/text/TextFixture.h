// Small text files, and what a reader makes of them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <corvel/BufferedFile.h>

#include "filters/support/FilterError.h"
#include "filters/text/DelimitedReader.h"
#include "support/TempFolder.h"

namespace trovan::test {

// "a,b" in which quotes do not matter; columns between blanks.
inline filters::DelimitedFormat Commas() { return {}; }
inline filters::DelimitedFormat Delimited(const std::string& delimiters) {
  return {delimiters, "", "\""};
}
inline filters::DelimitedFormat Blanks() { return {"", " \t", "\""}; }

// A row in one line: its line, and its fields with bars between, quoted ones in brackets:
// `2: Oslo|[big, old]|`
inline std::string Show(const filters::DelimitedReader& reader) {
  std::string text = std::to_string(reader.Line()) + ": ";
  bool first = true;
  for (const filters::Field& field : reader.Row()) {
    if (!first) text += '|';
    first = false;
    text += field.quoted ? "[" + std::string(field.text) + "]" : std::string(field.text);
  }
  return text;
}

using Rows = std::vector<std::string>;

class TextFixture : public testing::Test {
 protected:
  // Makes the file and opens it.
  corvel::CBufferedFile& Open(std::string_view bytes) {
    WriteBytes(folder_.Path() / "towns.csv", bytes);
    file_.Open(folder_.File(L"towns.csv"), "rb", corvel::kFileShareRead, false);
    return file_;
  }

  filters::DelimitedReader Reader(std::string_view bytes,
                                  const filters::DelimitedFormat& format = {}, char comment = 0,
                                  const filters::ReadLimits& limits = {}) {
    return {Open(bytes), "towns.csv", format, comment, limits};
  }

  // All rows; an error ends them as a row of its own.
  static Rows All(filters::DelimitedReader&& reader) {
    Rows rows;
    try {
      while (reader.ReadRow()) rows.push_back(Show(reader));
    } catch (const filters::FilterError& error) {
      rows.emplace_back(error.what());
    }
    return rows;
  }

  Rows Read(std::string_view bytes, const filters::DelimitedFormat& format = {}, char comment = 0,
            const filters::ReadLimits& limits = {}) {
    return All(Reader(bytes, format, comment, limits));
  }

  TempFolder folder_;
  corvel::CBufferedFile file_;
};

}  // namespace trovan::test
