#include "filters/lattice/TextScanner.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "LatticeErrors.h"
#include "support/TempFolder.h"

namespace trovan::filters {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

class TextScannerTest : public testing::Test {
 protected:
  TextScanner Scan(const std::string& text) {
    file_.Close();
    test::WriteBytes(folder_.Path() / "text.asc", text);
    file_.Open(folder_.File(L"text.asc"), "rb", corvel::kFileShareRead, false);
    return TextScanner(file_);
  }

  static std::vector<std::string> Words(TextScanner& scanner) {
    std::vector<std::string> words;
    while (!scanner.NextWord().empty()) words.emplace_back(scanner.Word());
    return words;
  }

  test::TempFolder folder_;
  corvel::CBufferedFile file_;
};

TEST_F(TextScannerTest, SplitsAtWhiteSpaceOfAnyKind) {
  auto scanner = Scan(" a\tbb\r\n\n\v\fccc d");
  EXPECT_THAT(Words(scanner), ElementsAre("a", "bb", "ccc", "d"));
  EXPECT_EQ(scanner.NextWord(), "");
}

TEST_F(TextScannerTest, FindsNoWordInAnEmptyFile) {
  auto scanner = Scan("");
  EXPECT_EQ(scanner.NextWord(), "");
  EXPECT_EQ(scanner.NextLine(), "");
}

TEST_F(TextScannerTest, CountsLinesWhateverEndsThem) {
  for (const char* text : {"a\nb\n\nc ?", "a\r\nb\r\n\r\nc ?", "a\rb\r\rc ?", "a\n\rb\r\nc ?"}) {
    auto scanner = Scan(text);
    while (scanner.NextWord() != "?") {
    }
    EXPECT_THAT(test::FilterErrorOf([&] { scanner.FailExpected("a number"); }),
                EndsWith("text.asc, line 4: expected a number, found \"?\""))
        << testing::PrintToString(text);
  }
}

TEST_F(TextScannerTest, TellsWhereTheFileEnds) {
  auto scanner = Scan("1\n2\n");
  Words(scanner);
  EXPECT_THAT(test::FilterErrorOf([&] { scanner.ReadNumber<int>("a third number"); }),
              EndsWith("line 3: expected a third number, found the end of the file"));
}

TEST_F(TextScannerTest, ReadsNumbersOfTheTypeThatIsWanted) {
  auto scanner = Scan("+.500E+02 -99999. 7 300 x");
  EXPECT_EQ(scanner.ReadNumber<double>("a number"), 50.0);
  EXPECT_EQ(scanner.ReadNumber<float>("a number"), -99999.0F);
  EXPECT_EQ(scanner.ReadNumber<unsigned>("a number"), 7U);
  EXPECT_THAT(test::FilterErrorOf([&] { scanner.ReadNumber<std::uint8_t>("a byte"); }),
              HasSubstr("expected a byte, found \"300\", which is beyond the range of its type"));
  EXPECT_THAT(test::FilterErrorOf([&] { scanner.ReadNumber<int>("a number"); }),
              HasSubstr("expected a number, found \"x\""));
}

TEST_F(TextScannerTest, ShowsNoControlCharactersAndNoLongWords) {
  EXPECT_EQ(Quoted("a\x1B\xFF"), "\"a\\x1B\\xFF\"");
  EXPECT_EQ(Quoted(std::string(50, 'a')), '"' + std::string(40, 'a') + "...\"");
}

TEST_F(TextScannerTest, GathersNoWordBeyondTheLimit) {
  const std::string longest(TextScanner::kLongestWord, 'a');
  auto scanner = Scan(longest + ' ' + longest + 'a');
  EXPECT_EQ(scanner.NextWord(), longest);
  EXPECT_THAT(test::FilterErrorOf([&] { scanner.NextWord(); }),
              HasSubstr("line 1: expected a word of no more than 4096 bytes, found \"aaa"));
}

TEST_F(TextScannerTest, ReadsLinesWithoutTheirEnds) {
  auto scanner = Scan("one line\r\n\rthird\nlast");
  EXPECT_EQ(scanner.NextLine(), "one line");
  EXPECT_EQ(scanner.NextLine(), "");
  EXPECT_EQ(scanner.NextLine(), "third");
  EXPECT_EQ(scanner.Place().line, 4);
  EXPECT_EQ(scanner.NextLine(), "last");
  EXPECT_EQ(scanner.NextLine(), "");
}

TEST_F(TextScannerTest, GathersNoLineBeyondTheLimit) {
  auto scanner = Scan("\n" + std::string(TextScanner::kLongestWord + 1, 'a'));
  scanner.NextLine();
  EXPECT_THAT(test::FilterErrorOf([&] { scanner.NextLine(); }),
              HasSubstr("line 2: expected a line of no more than 4096 bytes"));
}

TEST_F(TextScannerTest, StaysOnTheLineWhenAsked) {
  auto scanner = Scan("a \t b \nc");
  EXPECT_EQ(scanner.NextWordOnLine(), "a");
  EXPECT_EQ(scanner.NextWordOnLine(), "b");
  EXPECT_EQ(scanner.NextWordOnLine(), "");
  EXPECT_EQ(scanner.NextWordOnLine(), "");
  EXPECT_THAT(test::FilterErrorOf([&] { scanner.FailExpected("a word"); }),
              EndsWith("line 1: expected a word, found the end of the line"));
  EXPECT_EQ(scanner.NextWord(), "c");
  EXPECT_EQ(scanner.NextWordOnLine(), "");
}

TEST_F(TextScannerTest, FindsTheBytesBehindALine) {
  for (const std::string end : {"\n", " \n", "\r\n"}) {
    auto scanner = Scan("word" + end + "\n\r \x01z next");
    scanner.NextWord();
    scanner.FinishLine("the end of the line");
    char bytes[5];
    ASSERT_EQ(scanner.ReadBytes(bytes, sizeof bytes), sizeof bytes);
    EXPECT_EQ(std::string(bytes, sizeof bytes), "\n\r \x01z");
    EXPECT_EQ(scanner.NextWord(), "next");
  }
}

TEST_F(TextScannerTest, WantsNothingBetweenAWordAndTheBytes) {
  for (const auto& [text, found] :
       {std::pair("word more\n", "\"more\""), std::pair("word", "the end of the file"),
        std::pair("word\rx", "carriage return")}) {
    auto scanner = Scan(text);
    scanner.NextWord();
    const std::string error = test::FilterErrorOf([&] { scanner.FinishLine("a line feed"); });
    EXPECT_THAT(error, HasSubstr("expected a line feed"));
    EXPECT_THAT(error, HasSubstr(found));
  }
}

TEST_F(TextScannerTest, TellsTheByteOnceBytesWereSkipped) {
  auto scanner = Scan("ab\n\n\n\nword");
  scanner.NextWord();
  EXPECT_EQ(scanner.BytesLeft(), 8U);
  scanner.SkipBytes(3);
  scanner.NextWord();
  EXPECT_THAT(test::FilterErrorOf([&] { scanner.FailExpected("a number"); }),
              EndsWith("text.asc, byte 6: expected a number, found \"word\""));
}

TEST_F(TextScannerTest, ReturnsToAPlace) {
  auto scanner = Scan("a\nb\nc\n");
  scanner.NextWord();
  scanner.NextWord();
  const TextPlace place = scanner.Place();
  EXPECT_THAT(Words(scanner), ElementsAre("c"));
  scanner.Return(place);
  EXPECT_EQ(scanner.NextWord(), "c");
  EXPECT_THAT(test::FilterErrorOf([&] { scanner.Fail("x"); }), EndsWith("line 3: x"));
}

TEST_F(TextScannerTest, SkipsToTheFirstBlankLine) {
  for (const std::string end : {"\n", "\r\n", "\r"}) {
    auto scanner = Scan("a" + end + "b c" + end + "\t " + end + "d" + end + "e");
    scanner.SkipToBlankLine();
    EXPECT_EQ(scanner.NextWord(), "d");
    scanner.NextLine();
    scanner.SkipToBlankLine();
    EXPECT_EQ(scanner.NextWord(), "");
  }
}

}  // namespace
}  // namespace trovan::filters
