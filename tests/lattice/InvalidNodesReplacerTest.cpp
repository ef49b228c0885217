#include <limits>
#include <string>
#include <utility>

#include <gtest/gtest.h>
#include <trovan/InvalidNodes.h>

namespace trovan {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// Long enough to be on the heap.
const wchar_t kFile[] = L"C:\\lattices\\elevation of the Harz mountains.grd";

InvalidNodesReplacer Replacer(double replacement = -1.0, std::size_t nodeCount = 3) {
  return {kFile, corvel::kDouble, replacement, nodeCount};
}

// Whether a block with an invalid node is reported; the node is replaced in any case.
bool Reports(InvalidNodesReplacer& replacer) {
  double block[] = {1.0, kNaN, 2.0};
  const bool goOn = replacer.ReplaceInvalidNodes(block, 3);
  EXPECT_EQ(block[1], -1.0);
  return !goOn;
}

TEST(InvalidNodesReplacer, PassesCleanBlocks) {
  InvalidNodesReplacer replacer = Replacer();
  double block[] = {1.0, 2.0, 3.0};
  EXPECT_TRUE(replacer.ReplaceInvalidNodes(block, 3));
  EXPECT_TRUE(replacer.ReplaceInvalidNodes(block, 3));
}

TEST(InvalidNodesReplacer, ReportsTheFirstReplacementOnly) {
  InvalidNodesReplacer replacer = Replacer();
  double clean[] = {1.0};
  EXPECT_TRUE(replacer.ReplaceInvalidNodes(clean, 1));
  EXPECT_TRUE(Reports(replacer));
  EXPECT_FALSE(Reports(replacer));
  EXPECT_TRUE(replacer.ReplaceInvalidNodes(clean, 1));
  EXPECT_FALSE(Reports(replacer));
}

TEST(InvalidNodesReplacer, TakesTheDefaultCountForNone) {
  InvalidNodesReplacer replacer = Replacer();
  double block[] = {1.0, 2.0, kNaN, kNaN};
  EXPECT_FALSE(replacer.ReplaceInvalidNodes(block, 0));
  EXPECT_EQ(block[2], -1.0);
  EXPECT_NE(block[3], -1.0) << "one node too many";
}

TEST(InvalidNodesReplacer, TakesTheGivenCountBeforeTheDefault) {
  InvalidNodesReplacer replacer = Replacer();
  double block[] = {1.0, kNaN, kNaN};
  EXPECT_TRUE(replacer.ReplaceInvalidNodes(block, 1));
  EXPECT_FALSE(replacer.ReplaceInvalidNodes(block, 2));
  EXPECT_NE(block[2], -1.0);
}

TEST(InvalidNodesReplacer, TakesAGivenCountThatIsLargerThanTheDefaultToo) {
  InvalidNodesReplacer replacer = Replacer(-1.0, 3);
  double block[] = {1.0, 2.0, 3.0, 4.0, kNaN};
  EXPECT_FALSE(replacer.ReplaceInvalidNodes(block, 5));
  EXPECT_EQ(block[4], -1.0);
}

TEST(InvalidNodesReplacer, ScansNothingWhenBothCountsAreZero) {
  InvalidNodesReplacer replacer = Replacer(-1.0, 0);
  EXPECT_TRUE(replacer.ReplaceInvalidNodes(nullptr, 0));
}

TEST(InvalidNodesReplacer, KnowsNoInvalidIntegers) {
  InvalidNodesReplacer replacer(kFile, corvel::kInt64, 0.0, 1000);
  EXPECT_TRUE(replacer.ReplaceInvalidNodes(nullptr, 0));
}

TEST(InvalidNodesReplacer, CopiesReportOnTheirOwn) {
  InvalidNodesReplacer replacer = Replacer();
  InvalidNodesReplacer before = replacer;
  EXPECT_TRUE(Reports(replacer));
  InvalidNodesReplacer after = replacer;
  EXPECT_TRUE(Reports(before));
  EXPECT_FALSE(Reports(after));
  after = Replacer();
  EXPECT_TRUE(Reports(after));
}

TEST(InvalidNodesReplacer, CopiesAndMovesEveryMember) {
  const std::wstring text = Replacer().PromptText();
  InvalidNodesReplacer original = Replacer();
  InvalidNodesReplacer copy(L"other", corvel::kFloat, 5.0, 1);
  copy = original;
  EXPECT_EQ(copy.PromptText(), text);
  EXPECT_EQ(original.PromptText(), text);
  InvalidNodesReplacer moved = std::move(original);
  EXPECT_EQ(moved.PromptText(), text);
  InvalidNodesReplacer assigned(L"other", corvel::kFloat, 5.0, 1);
  assigned = std::move(moved);
  EXPECT_EQ(assigned.PromptText(), text);
  double block[] = {1.0, 2.0, kNaN};
  EXPECT_FALSE(assigned.ReplaceInvalidNodes(block, 0));
  EXPECT_EQ(block[2], -1.0);
  InvalidNodesReplacer reported = std::move(assigned);
  EXPECT_FALSE(Reports(reported));
}

TEST(InvalidNodesReplacer, AsksWithTheNameAndTheReplacement) {
  EXPECT_EQ(InvalidNodesReplacer(L"Höhe.grd", corvel::kFloat, 0.0, 1).PromptText(),
            L"Höhe.grd:  One or more data nodes contain invalid floating-point data.  Do you want "
            L"to replace these nodes with              0 and continue importing?");
}

TEST(InvalidNodesReplacer, PrintsTheReplacementInFourteenColumns) {
  const struct {
    double replacement;
    const wchar_t* printed;
  } cases[] = {
      {0.0, L"             0"},    {-1.5, L"          -1.5"},       {1234567.0, L"   1.23457E+06"},
      {1e100, L"        1E+100"},  {1.0 / 3, L"      0.333333"},    {-0.0, L"            -0"},
      {0.0001, L"        0.0001"}, {1.70141e38, L"   1.70141E+38"},
  };
  for (const auto& c : cases) {
    const std::wstring text = Replacer(c.replacement).PromptText();
    const std::wstring expected = std::wstring(L"with ") + c.printed + L" and continue";
    EXPECT_NE(text.find(expected), std::wstring::npos) << c.replacement;
  }
}

TEST(InvalidNodesReplacer, EndsTheNameAtItsNullCharacter) {
  const std::wstring name(L"a\0b", 3);
  EXPECT_EQ(InvalidNodesReplacer(name, corvel::kFloat, 0.0, 1).PromptText().substr(0, 7),
            L"a:  One");
}

}  // namespace
}  // namespace trovan
