// What a tokenizer knows between two calls, its copies, and its source.
#include <limits>
#include <string>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include <corvel/BufferedFile.h>
#include <trovan/FileTokenizer.h>

#include "tables/FileTokenizerFixture.h"

namespace trovan::test {
namespace {

using corvel::CBufferedFile;

void ExpectDefaultSets(const CFileTokenizer& tokens) {
  EXPECT_EQ(tokens.GetWhitespace(), " \t");
  EXPECT_EQ(tokens.GetDelimiters(), ",");
  EXPECT_EQ(tokens.GetQuotes(), "\"");
}

void ExpectNothingParsed(const CFileTokenizer& tokens) {
  EXPECT_FALSE(tokens.LastTokenQuoted());
  EXPECT_EQ(tokens.LastTokenTermChar(), '\0');
  EXPECT_EQ(tokens.GetNumTokensParsed(), 0U);
  EXPECT_EQ(tokens.GetNumLinesParsed(), 0U);
}

void SetAll(CFileTokenizer& tokens) {
  tokens.SetWhitespace("_");
  tokens.SetDelimiters(";");
  tokens.SetQuotes("'");
}

TEST(CFileTokenizer, HasNeitherSourceNorCountsAtFirst) {
  const CFileTokenizer tokens;
  ExpectDefaultSets(tokens);
  ExpectNothingParsed(tokens);
  EXPECT_TRUE(tokens.EndOfFile());
  EXPECT_EQ(tokens.GetFilePosition(), 0);
}

TEST_F(FileTokenizerTest, TakesASourceAtFirst) {
  Open("a,b");
  file_.Seek(2, corvel::kFileBegin);
  const CFileTokenizer tokens(&file_);
  ExpectDefaultSets(tokens);
  ExpectNothingParsed(tokens);
  EXPECT_FALSE(tokens.EndOfFile());
  EXPECT_EQ(tokens.GetFilePosition(), 2);
  EXPECT_EQ(tokens.GetSource(), folder_.File(L"text.txt"));
}

TEST_F(FileTokenizerTest, StartsAnewWithAnotherSourceAndKeepsTheSets) {
  SetAll(tokens_);
  Open("a;\n'b';");
  Next();
  Next(true);
  ASSERT_TRUE(tokens_.LastTokenQuoted());
  ASSERT_EQ(tokens_.GetNumLinesParsed(), 1U);
  ASSERT_EQ(tokens_.GetNumTokensParsed(), 2U);
  CBufferedFile other;
  tokens_.SetSource(&other);
  ExpectNothingParsed(tokens_);
  EXPECT_EQ(tokens_.GetWhitespace(), "_");
  EXPECT_EQ(tokens_.GetDelimiters(), ";");
  EXPECT_EQ(tokens_.GetQuotes(), "'");
  EXPECT_TRUE(file_.IsOpen());
  EXPECT_EQ(file_.GetPosition(), 7) << "the former source stays where it is";
}

TEST_F(FileTokenizerTest, StartsAnewWithoutASource) {
  Open("a,");
  Next();
  tokens_.SetSource(nullptr);
  ExpectNothingParsed(tokens_);
  EXPECT_TRUE(tokens_.EndOfFile());
  EXPECT_EQ(tokens_.GetFilePosition(), 0);
}

TEST_F(FileTokenizerTest, NamesThePathAsItWasGiven) {
  WriteBytes(folder_.Path() / "text.txt", "");
  const std::wstring path = folder_.File(L"./text.txt");
  file_.Open(path, "rb", corvel::kFileShareRead, false);
  const CFileTokenizer tokens(&file_);
  EXPECT_EQ(tokens.GetSource(), path);
  file_.Close();
  EXPECT_EQ(tokens.GetSource(), path) << "the source knows it still";
}

TEST_F(FileTokenizerTest, RestoresTheDefaultSetsAndNothingElse) {
  SetAll(tokens_);
  Open("a;\n'b';");
  Next();
  Next(true);
  tokens_.SetDefaults();
  ExpectDefaultSets(tokens_);
  EXPECT_TRUE(tokens_.LastTokenQuoted());
  EXPECT_EQ(tokens_.LastTokenTermChar(), ';');
  EXPECT_EQ(tokens_.GetNumTokensParsed(), 2U);
  EXPECT_EQ(tokens_.GetNumLinesParsed(), 1U);
  EXPECT_EQ(tokens_.GetFilePosition(), 7);
}

// Counts, the terminating character, the flag.

TEST_F(FileTokenizerTest, CountsTokensButNotEmptyFields) {
  Open("a,,b\n\f\n1,x,2");
  for (const unsigned count : {1U, 1U, 2U, 2U}) {
    Next();
    EXPECT_EQ(tokens_.GetNumTokensParsed(), count);
  }
  int value = 0;
  EXPECT_EQ(tokens_.Parse(value), CFileTokenizer::TOKEN_OK);
  EXPECT_EQ(tokens_.GetNumTokensParsed(), 3U);
  EXPECT_EQ(tokens_.Parse(value), CFileTokenizer::TOKEN_BAD_VALUE);
  EXPECT_EQ(tokens_.GetNumTokensParsed(), 4U) << "it is a token, though no number";
  EXPECT_EQ(tokens_.Parse(value), CFileTokenizer::TOKEN_EOF);
  EXPECT_EQ(tokens_.GetNumTokensParsed(), 4U);
}

TEST_F(FileTokenizerTest, CountsLinesWhenTheirEndIsRead) {
  Open("\n\na,\nb");
  EXPECT_EQ(Next(), "a|,");
  EXPECT_EQ(tokens_.GetNumLinesParsed(), 2U);
  EXPECT_EQ(Next(), "EOF b");
  EXPECT_EQ(tokens_.GetNumLinesParsed(), 3U);
}

TEST_F(FileTokenizerTest, CountsOnFromWhatTheCallerSets) {
  Open("a,\nb\n");
  tokens_.SetNumLinesParsed(10);
  tokens_.SetNumTokensParsed(20);
  Next();
  Next();
  EXPECT_EQ(tokens_.GetNumLinesParsed(), 12U);
  EXPECT_EQ(tokens_.GetNumTokensParsed(), 22U);
}

TEST_F(FileTokenizerTest, CountsIn32Bits) {
  static_assert(std::numeric_limits<unsigned int>::digits == 32);
  Open("a\n");
  tokens_.SetNumLinesParsed(0xFFFFFFFF);
  tokens_.SetNumTokensParsed(0xFFFFFFFF);
  Next();
  EXPECT_EQ(tokens_.GetNumLinesParsed(), 0U);
  EXPECT_EQ(tokens_.GetNumTokensParsed(), 0U);
}

TEST_F(FileTokenizerTest, KeepsTheTerminatingCharacterAtTheEndOfTheFile) {
  tokens_.SetDelimiters(",;");
  Open("a;b");
  EXPECT_EQ(Next(), "a|;");
  EXPECT_EQ(Next(), "EOF b");
  EXPECT_EQ(tokens_.LastTokenTermChar(), ';');
  int value = 0;
  EXPECT_EQ(tokens_.Parse(value), CFileTokenizer::TOKEN_EOF);
  EXPECT_EQ(tokens_.LastTokenTermChar(), ';');
}

TEST_F(FileTokenizerTest, ForgetsTheQuotesWithEachCall) {
  for (const char* rest : {"a,", ",", ""}) {
    Open(std::string("\"q\",") + rest);
    Next(true);
    ASSERT_TRUE(tokens_.LastTokenQuoted());
    Next(true);
    EXPECT_FALSE(tokens_.LastTokenQuoted()) << rest;
  }
}

TEST_F(FileTokenizerTest, ForgetsTheQuotesWithANumber) {
  Open("\"q\",1,");
  Next(true);
  double value = 0;
  EXPECT_EQ(tokens_.Parse(value), CFileTokenizer::TOKEN_OK);
  EXPECT_FALSE(tokens_.LastTokenQuoted());
}

TEST_F(FileTokenizerTest, TellsTheStateOfItsSource) {
  Open("a,b");
  Next();
  EXPECT_EQ(tokens_.GetFilePosition(), 2);
  EXPECT_FALSE(tokens_.EndOfFile());
  Next();
  EXPECT_EQ(tokens_.GetFilePosition(), 3);
  EXPECT_TRUE(tokens_.EndOfFile());
  file_.Seek(1, corvel::kFileBegin);
  EXPECT_FALSE(tokens_.EndOfFile());
  EXPECT_EQ(tokens_.GetFilePosition(), 1);
  EXPECT_EQ(Next(), "EMPTY|,") << "it reads where the source stands";
}

// Copies.

class FileTokenizerCopyTest : public FileTokenizerTest {
 protected:
  FileTokenizerCopyTest() {
    SetAll(tokens_);
    Open("a;\n'b';c_d;e;f;");
    Next();
    Next(true);
  }

  void ExpectTheState(CFileTokenizer& tokens) const {
    EXPECT_TRUE(tokens.LastTokenQuoted());
    EXPECT_EQ(tokens.LastTokenTermChar(), ';');
    EXPECT_EQ(tokens.GetNumTokensParsed(), 2U);
    EXPECT_EQ(tokens.GetNumLinesParsed(), 1U);
    EXPECT_EQ(tokens.GetSource(), folder_.File(L"text.txt"));
  }
  static void ExpectTheSets(const CFileTokenizer& tokens) {
    EXPECT_EQ(tokens.GetWhitespace(), "_");
    EXPECT_EQ(tokens.GetDelimiters(), ";");
    EXPECT_EQ(tokens.GetQuotes(), "'");
  }
  static void ExpectNoSets(const CFileTokenizer& tokens) {
    EXPECT_EQ(tokens.GetWhitespace(), "");
    EXPECT_EQ(tokens.GetDelimiters(), "");
    EXPECT_EQ(tokens.GetQuotes(), "");
  }
  // The next token, which each of the sets has a part in.
  static void ExpectItReadsOn(CFileTokenizer& tokens) {
    std::string token;
    EXPECT_EQ(tokens.Parse(token, true), CFileTokenizer::TOKEN_OK);
    EXPECT_EQ(token, "c");
    EXPECT_EQ(tokens.LastTokenTermChar(), '\n');
    EXPECT_EQ(tokens.Parse(token, true), CFileTokenizer::TOKEN_OK);
    EXPECT_EQ(token, "d");
    EXPECT_EQ(tokens.LastTokenTermChar(), ';');
  }
  // Without sets the rest of the file is one token.
  static void ExpectItReadsWithoutSets(CFileTokenizer& tokens) {
    std::string token;
    EXPECT_EQ(tokens.Parse(token, true), CFileTokenizer::TOKEN_EOF);
    EXPECT_EQ(token, "e;f;");
  }
};

TEST_F(FileTokenizerCopyTest, ACopyReadsOnInTheSameFile) {
  CFileTokenizer copy(tokens_);
  for (CFileTokenizer* each : {&copy, &tokens_}) {
    ExpectTheState(*each);
    ExpectTheSets(*each);
  }
  ExpectItReadsOn(copy);
  EXPECT_EQ(Next(), "e|;");
  EXPECT_EQ(tokens_.GetNumTokensParsed(), 3U);
  EXPECT_EQ(copy.GetNumTokensParsed(), 4U);
}

TEST_F(FileTokenizerCopyTest, AnAssignedCopyReadsOnInTheSameFile) {
  CFileTokenizer copy;
  copy = tokens_;
  ExpectTheState(copy);
  ExpectTheSets(copy);
  ExpectTheState(tokens_);
  ExpectTheSets(tokens_);
  copy.SetWhitespace("!");
  EXPECT_EQ(tokens_.GetWhitespace(), "_") << "each has sets of its own";
  copy.SetWhitespace("_");
  ExpectItReadsOn(copy);
}

TEST_F(FileTokenizerCopyTest, WhatIsMovedFromHasNoSetsButItsSourceAndItsCounts) {
  CFileTokenizer moved(std::move(tokens_));
  ExpectTheState(moved);
  ExpectTheSets(moved);
  ExpectTheState(tokens_);  // NOLINT(bugprone-use-after-move): what is left is promised.
  ExpectNoSets(tokens_);
  ExpectItReadsOn(moved);
  ExpectItReadsWithoutSets(tokens_);
}

TEST_F(FileTokenizerCopyTest, WhatIsMoveAssignedFromHasNoSetsButItsSourceAndItsCounts) {
  CFileTokenizer moved;
  moved = std::move(tokens_);
  ExpectTheState(moved);
  ExpectTheSets(moved);
  ExpectTheState(tokens_);  // NOLINT(bugprone-use-after-move): what is left is promised.
  ExpectNoSets(tokens_);
  ExpectItReadsOn(moved);
  ExpectItReadsWithoutSets(tokens_);
}

TEST_F(FileTokenizerCopyTest, AssignmentToItselfChangesNothing) {
  CFileTokenizer& itself = tokens_;
  tokens_ = itself;
  ExpectTheState(tokens_);
  ExpectTheSets(tokens_);
  tokens_ = std::move(itself);
  ExpectTheState(tokens_);
  ExpectTheSets(tokens_);
  ExpectItReadsOn(tokens_);
}

TEST(CFileTokenizer, MovesWithoutRaising) {
  EXPECT_TRUE(std::is_nothrow_move_constructible_v<CFileTokenizer>);
  EXPECT_TRUE(std::is_nothrow_move_assignable_v<CFileTokenizer>);
}

TEST_F(FileTokenizerTest, LeavesTheSourceOpenWhenItGoes) {
  Open("a,b,");
  { const CFileTokenizer shortLived(&file_); }
  EXPECT_EQ(Next(), "a|,");
}

// What derived classes may use.

class OpenTokenizer : public CFileTokenizer {
 public:
  using CFileTokenizer::CFileTokenizer;
  using CFileTokenizer::GetNextChar;
  using CFileTokenizer::IsDelimiter;
  using CFileTokenizer::IsQuote;
  using CFileTokenizer::IsWhitespace;
};

TEST(CFileTokenizerInside, KnowsTheMembersOfEachSet) {
  OpenTokenizer tokens;
  tokens.SetWhitespace(" \xFF\r");
  tokens.SetDelimiters(";\x80");
  tokens.SetQuotes("'\n");
  for (int byte = 0; byte < 256; ++byte) {
    const char c = static_cast<char>(byte);
    EXPECT_EQ(tokens.IsWhitespace(c), byte == ' ' || byte == 0xFF || byte == '\r') << byte;
    EXPECT_EQ(tokens.IsDelimiter(c), byte == ';' || byte == 0x80 || byte == '\n' || byte == '\f')
        << byte;
    EXPECT_EQ(tokens.IsQuote(c), byte == '\'' || byte == '\n') << byte;
  }
}

TEST_F(FileTokenizerTest, ReadsCharactersWithoutCarriageReturnsAndCountsLines) {
  Open(std::string("\r\ra\r\n\xFF\0\r", 8));
  OpenTokenizer tokens(&file_);
  char c = 0;
  for (const char expected : {'a', '\n', '\xFF', '\0'}) {
    EXPECT_TRUE(tokens.GetNextChar(c));
    EXPECT_EQ(c, expected);
  }
  EXPECT_EQ(tokens.GetNumLinesParsed(), 1U);
  EXPECT_FALSE(tokens.GetNextChar(c));
  EXPECT_TRUE(tokens.EndOfFile());
}

}  // namespace
}  // namespace trovan::test
