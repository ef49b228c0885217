// DelimitedReader against a plain model of it, on many short texts of the bytes that matter.
#include <random>

#include <gtest/gtest.h>

#include "DelimitedReaderModel.h"
#include "TextFixture.h"
#include "support/Random.h"

namespace trovan::test {
namespace {

using filters::DelimitedFormat;
using filters::DelimitedReader;

class DelimitedReaderModelTest : public TextFixture {
 protected:
  static Rows Show(const ModelRows& model) {
    Rows rows;
    for (const ModelRow& row : model.rows) {
      std::string text = std::to_string(row.line) + ": ";
      for (std::size_t i = 0; i < row.fields.size(); ++i) {
        if (i > 0) text += '|';
        const ModelField& field = row.fields[i];
        text += field.quoted ? "[" + field.text + "]" : field.text;
      }
      rows.push_back(text);
    }
    if (model.openQuote) rows.emplace_back("open quote");
    return rows;
  }

  Rows ReadAll(const std::string& bytes, const DelimitedFormat& format, char comment) {
    Rows rows = Read(bytes, format, comment);
    if (!rows.empty() && rows.back().starts_with("towns.csv, line ")) rows.back() = "open quote";
    return rows;
  }

  void Compare(const std::string& bytes, const DelimitedFormat& format, char comment) {
    ASSERT_EQ(ReadAll(bytes, format, comment),
              Show(DelimitedReaderModel(bytes, format, comment).Read()))
        << testing::PrintToString(bytes) << " with delimiters "
        << testing::PrintToString(format.delimiters) << ", white space "
        << testing::PrintToString(format.whitespace) << ", quotes "
        << testing::PrintToString(format.quotes);
  }
};

const DelimitedFormat kFormats[] = {{",", "", "\""},   {"", " \t", "\""}, {",", " ", "\""},
                                    {",;", "", "\"'"}, {",", "", ""},     {"", "", "\""},
                                    {",\"", "", "\""}, {", ", " ", " \""}};

TEST_F(DelimitedReaderModelTest, ReadsEveryTextOfThreeBytesInEveryFormat) {
  const std::string bytes = "a,\"\n\r \f#";
  for (unsigned code = 0; code < 8 * 8 * 8; ++code) {
    const std::string text = {bytes[code / 64], bytes[code / 8 % 8], bytes[code % 8]};
    for (const DelimitedFormat& format : kFormats) {
      Compare(text, format, code % 3 == 0 ? '#' : '\0');
    }
  }
}

TEST_F(DelimitedReaderModelTest, ReadsRandomTexts) {
  std::mt19937 random(20);
  const std::string bytes("ab,;\"\"'\n\n\r \t\f#\0", 15);
  for (int n = 0; n < 2000; ++n) {
    std::string text(Below(random, 40), ' ');
    for (char& c : text) c = bytes[Below(random, static_cast<unsigned>(bytes.size()))];
    Compare(text, kFormats[Below(random, std::size(kFormats))], OneIn(random, 4) ? '#' : '\0');
  }
}

}  // namespace
}  // namespace trovan::test
