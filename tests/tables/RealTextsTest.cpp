// Texts that other programs wrote. Without the folder of them these tests skip.
#include <algorithm>
#include <filesystem>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <corvel/BufferedFile.h>
#include <corvel/Path.h>
#include <trovan/FileTokenizer.h>
#include <trovan/TextHelpers.h>

#include "support/Latin1.h"
#include "support/Random.h"
#include "support/Sha256.h"
#include "support/TempFolder.h"
#include "tables/FileTokenizerModel.h"
#include "tables/RealFiles.h"

namespace trovan::test {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

const json& Expected() {
  static const json expected = Expectations("text");
  return expected;
}

class RealTextTest : public RealFileTest {
 protected:
  void SetUp() override {
    RealFileTest::SetUp();
    if (IsSkipped()) return;
    bytes_ = ReadBytes(DataFolder() / GetParam());
    file_.Open(corvel::PathFromSystem((DataFolder() / GetParam()).string()), "rb",
               corvel::kFileShareRead, false);
  }

  const json& Facts() const { return Expected().at(GetParam()); }

  std::string bytes_;
  corvel::CBufferedFile file_;
};
INSTANTIATE_TEST_SUITE_P(Data, RealTextTest, testing::ValuesIn(Keys(Expected())), TestName);

TEST_P(RealTextTest, AgreesWithTheModelWithEveryKindOfSets) {
  const FileTokenizerModel::Sets kinds[] = {
      {" \t", ",", "\""}, {"", ",", "\""}, {"", "\t", "\""},          {" \t", "", ""},
      {" ", ";|", "'"},   {"", "", ""},    {" \t\n", ",:=()", "\"'"}, {"e", "a ", "\"n"},
  };
  std::mt19937 random(1);
  for (const auto& sets : kinds) {
    for (const bool anyCall : {false, true}) {
      SCOPED_TRACE(ShownText(sets.whitespace + sets.delimiters + sets.quotes));
      file_.Seek(0, corvel::kFileBegin);
      CFileTokenizer tokens(&file_);
      GiveSets(tokens, sets);
      TextSource source(bytes_);
      FileTokenizerModel model(source, sets);
      auto status = CFileTokenizer::TOKEN_OK;
      while (status != CFileTokenizer::TOKEN_EOF) {
        const auto call =
            anyCall ? static_cast<TokenCall>(Below(random, 5)) : TokenCall::kQuotedText;
        ASSERT_EQ(DisagreementAfter(call, tokens, model, status), "") << "at " << source.Position();
      }
    }
  }
}

TEST_P(RealTextTest, HasTheTokensBetweenItsWhiteSpace) {
  if (!Facts().contains("whitespace_tokens")) {
    // A table with delimiters: which of its tokens would count is nobody's agreement.
    ASSERT_TRUE(Facts().contains("delimited"));
    return;
  }
  CFileTokenizer tokens(&file_);
  tokens.SetDelimiters("");
  tokens.SetQuotes("");
  std::string token;
  unsigned count = 0;
  while (tokens.Parse(token, true) == CFileTokenizer::TOKEN_OK) ++count;
  EXPECT_EQ(tokens.GetNumTokensParsed(), count);
  count += token.empty() ? 0 : 1;
  EXPECT_EQ(count, Facts().at("whitespace_tokens").get<unsigned>());
  EXPECT_EQ(tokens.GetNumLinesParsed(), Facts().at("lf").get<unsigned>());
}

// A table row by row. Without white space a line feed as the terminating character is one that was
// read, so that the line count tells which fields and lines the tokenizer passes over: an empty
// field at the end of a line, a line without any.
class RowReader {
 public:
  RowReader(corvel::CBufferedFile& file, const std::string& delimiter) : tokens_(&file) {
    tokens_.SetWhitespace("");
    tokens_.SetDelimiters(delimiter.c_str());
  }

  std::vector<std::vector<std::string>> Rows() {
    std::string token;
    for (;;) {
      const unsigned before = tokens_.GetNumLinesParsed();
      const auto status = tokens_.Parse(token, true);
      const char end = status == CFileTokenizer::TOKEN_EOF ? '\0' : tokens_.LastTokenTermChar();
      const auto own = std::count(token.begin(), token.end(), '\n') + (end == '\n' ? 1 : 0);
      const auto passed = tokens_.GetNumLinesParsed() - before - static_cast<unsigned>(own);
      for (unsigned line = 0; line < passed; ++line) EndRow();
      if (status == CFileTokenizer::TOKEN_EOF) {
        if (!token.empty() || tokens_.LastTokenQuoted()) AddText(token);
        if (fieldIsOpen_ || !row_.empty()) EndRow();
        return rows_;
      }
      AddText(token);
      // Text behind a closing quote belongs to the field.
      fieldIsOpen_ = end != '\n' && tokens_.GetDelimiters().find(end) == std::string::npos;
      endsWithDelimiter_ = end != '\n' && !fieldIsOpen_;
      if (end == '\n') EndRow();
    }
  }

 private:
  void AddText(const std::string& text) {
    if (fieldIsOpen_) {
      row_.back() += text;
    } else {
      row_.push_back(text);
    }
    fieldIsOpen_ = endsWithDelimiter_ = false;
  }
  void EndRow() {
    if (endsWithDelimiter_) row_.emplace_back();
    rows_.push_back(std::exchange(row_, {}));
    endsWithDelimiter_ = fieldIsOpen_ = false;
  }

  CFileTokenizer tokens_;
  std::vector<std::vector<std::string>> rows_;
  std::vector<std::string> row_;
  bool fieldIsOpen_ = false;
  bool endsWithDelimiter_ = false;
};

TEST_P(RealTextTest, HasTheCellsOfItsRows) {
  if (!Facts().contains("delimited")) {
    ASSERT_TRUE(Facts().contains("whitespace_tokens"));  // no table with delimiters
    return;
  }
  const json& facts = Facts().at("delimited");
  if (Facts().at("utf8_bom").get<bool>()) file_.Seek(3, corvel::kFileBegin);
  auto rows = RowReader(file_, facts.at("delimiter").get<std::string>()).Rows();
  EXPECT_EQ(rows.size(), facts.at("rows").get<std::size_t>());
  if (!Facts().at("valid_utf8").get<bool>()) {
    for (auto& row : rows) {
      for (std::string& cell : row) cell = Utf8FromLatin1(cell);
    }
  }
  const json cells = rows;
  EXPECT_EQ(Sha256(cells.dump()), facts.at("cells_sha256").get<std::string>());
}

TEST_P(RealTextTest, IsText) {
  EXPECT_EQ(IsBinary(file_, static_cast<unsigned>(bytes_.size())),
            Facts().at("has_nul").get<bool>());
  EXPECT_EQ(file_.GetPosition(), 0);
  const auto all = ReadCharsAtBeginningOfFile(file_.GetPath(), bytes_.size() + 1);
  EXPECT_TRUE(std::string(all.begin(), all.end()) == bytes_);
  EXPECT_EQ(all.size(), Facts().at("bytes").get<std::size_t>());
}

// A folder that is there but lacks what it should have must not pass for one that is not there.
TEST(RealTexts, AreThereWithTheirFacts) {
  if (!fs::exists(DataFolder())) {
    GTEST_SKIP() << "There is no folder " << DataFolder()
                 << ": set the CMake variable TROVAN_TEST_DATA to a folder with texts.";
  }
  EXPECT_FALSE(Expected().empty());
  for (const auto& item : Expected().items()) {
    EXPECT_TRUE(fs::exists(DataFolder() / item.key())) << item.key();
  }
}

}  // namespace
}  // namespace trovan::test
