// Number tokens that are about as long as the memory in which short ones are gathered, or longer.
#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include <trovan/FileTokenizer.h>

#include "tables/FileTokenizerFixture.h"

namespace trovan::test {
namespace {

// The token in one piece, broken at each place by a byte that is dropped, and broken everywhere.
Strings WaysToBreak(const std::string& token, char dropped) {
  Strings ways{token};
  for (std::size_t at = 0; at <= token.size(); ++at) {
    ways.push_back(token);
    ways.back().insert(at, 1, dropped);
  }
  ways.emplace_back();
  for (const char c : token) ways.back() += {dropped, c, dropped};
  return ways;
}

class FileTokenizerLongNumberTest : public FileTokenizerTest,
                                    public testing::WithParamInterface<std::size_t> {
 protected:
  // Reads the token, broken in each way, with a short one behind it.
  template <class Value>
  void ExpectReads(const std::string& token, Value expected) {
    ASSERT_EQ(token.size(), GetParam());
    for (const char dropped : {'\r', '\0'}) {
      const Strings ways = WaysToBreak(token, dropped);
      std::string lines;
      for (const std::string& way : ways) lines += way + "\n7,";
      Open(lines);
      for (std::size_t i = 0; i < ways.size(); ++i) {
        ExpectNext(expected, '\n', i);
        ExpectNext(Value{7}, ',', i);
      }
    }
  }

 private:
  template <class Value>
  void ExpectNext(Value expected, char terminator, std::size_t way) {
    Value value = -77;
    EXPECT_EQ(tokens_.Parse(value), CFileTokenizer::TOKEN_OK) << way;
    EXPECT_EQ(value, expected) << way;
    EXPECT_EQ(tokens_.LastTokenTermChar(), terminator) << way;
  }
};

TEST_P(FileTokenizerLongNumberTest, ReadsAnIntegerToItsLastDigit) {
  const std::string zeros(GetParam() - 6, '0');
  ExpectReads("-" + zeros + "12345", -12345);
  ExpectReads(zeros + "12345x", 12345);
}

// The text is that of a number halfway between two neighbours, but for its last digit.
TEST_P(FileTokenizerLongNumberTest, ReadsARealNumberToItsLastDigit) {
  const std::string halfway = "9007199254740993.";
  const std::string zeros(GetParam() - halfway.size() - 1, '0');
  ExpectReads(halfway + zeros + "1", 9007199254740994.0);
  ExpectReads(halfway + zeros + "0", 9007199254740992.0);
}

INSTANTIATE_TEST_SUITE_P(Lengths, FileTokenizerLongNumberTest,
                         testing::Values(60, 61, 62, 63, 64, 65, 66, 67, 68, 69, 70, 200));

}  // namespace
}  // namespace trovan::test
