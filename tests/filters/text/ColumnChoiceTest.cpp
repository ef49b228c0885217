#include "filters/text/ColumnChoice.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "filters/support/FilterError.h"

namespace trovan::filters {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

using Names = std::vector<std::string>;

std::string Refusal(const Names& names, const std::string& wanted) {
  try {
    ChooseColumn(names, wanted);
  } catch (const FilterError& error) {
    return error.what();
  }
  return {};
}

TEST(ColumnChoice, TakesANameOrANumberFromOneOn) {
  const Names names = {"x", "y", "Höhe", ""};
  EXPECT_EQ(ChooseColumn(names, "x"), 0U);
  EXPECT_EQ(ChooseColumn(names, "Höhe"), 2U);
  EXPECT_EQ(ChooseColumn(names, "1"), 0U);
  EXPECT_EQ(ChooseColumn(names, "4"), 3U);
}

TEST(ColumnChoice, PrefersANameThatLooksLikeANumber) {
  EXPECT_EQ(ChooseColumn({"a", "1", "2010"}, "1"), 1U);
  EXPECT_EQ(ChooseColumn({"a", "1", "2010"}, "2010"), 2U);
  EXPECT_EQ(ChooseColumn({"a", "1", "2010"}, "3"), 2U);
}

TEST(ColumnChoice, ListsTheNamesWhenThereIsNoSuchColumn) {
  for (const char* wanted : {"z", "X", "0", "3", "-1", "1.0", " x", "", "99999999999999999999"}) {
    EXPECT_EQ(Refusal({"x", "y"}, wanted),
              "there is no column \"" + std::string(wanted) + "\"; there are: x, y");
  }
  EXPECT_EQ(Refusal({}, "1"), "there is no column \"1\"; there are none");
  EXPECT_THAT(Refusal(Names(60, "a"), "b"), EndsWith("a, a and 10 more"));
}

TEST(ColumnChoice, RefusesANameOfSeveralColumns) {
  EXPECT_EQ(Refusal({"x", "a", "b", "a", "a"}, "a"),
            "columns 2 and 4 are both called \"a\"; choose by number");
  EXPECT_EQ(ChooseColumn({"x", "a", "b", "a", "a"}, "4"), 3U);
}

TEST(ColumnChoice, CutsVeryLongNamesInMessages) {
  const std::string sixty(60, 'n');
  EXPECT_EQ(ShortName(sixty), sixty);
  EXPECT_EQ(ShortName(sixty + "n"), sixty + "...");
  const std::string umlaut = std::string(59, 'n') + "\u00F6";  // of two bytes
  EXPECT_EQ(ShortName(umlaut), std::string(59, 'n') + "...");
  const std::string novel(100000, 'n');
  EXPECT_EQ(Refusal({novel}, "b"), "there is no column \"b\"; there are: " + sixty + "...");
  EXPECT_EQ(Refusal({novel, novel}, novel),
            "columns 1 and 2 are both called \"" + sixty + "...\"; choose by number");
}

TEST(ColumnChoice, KeepsTheOrderOfAList) {
  EXPECT_THAT(ChooseColumns({"x", "y", "z"}, {"z", "1", "x"}), ElementsAre(2, 0, 0));
  EXPECT_THAT(ChooseColumns({"x"}, {}), IsEmpty());
  EXPECT_THROW(ChooseColumns({"x"}, {"x", "y"}), FilterError);
}

}  // namespace
}  // namespace trovan::filters
