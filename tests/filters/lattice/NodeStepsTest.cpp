#include "filters/lattice/NodeSteps.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "LatticeErrors.h"
#include "LatticeFakes.h"

namespace trovan::filters {
namespace {

using test::FilterErrorOf;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInf = std::numeric_limits<float>::infinity();

// One row of nodes on its way through the steps.
template <typename To, typename From>
std::vector<To> Apply(NodeSteps& steps, std::vector<From> row) {
  const void* out = steps.Apply(row.data());
  std::vector<To> result(row.size());
  std::memcpy(result.data(), out, result.size() * sizeof(To));
  return result;
}

template <typename To, typename From>
std::vector<To> Apply(corvel::PrimType type, const NodeOptions& options,
                      const std::vector<From>& row) {
  NodeSteps steps(test::UniformHeader(type, static_cast<unsigned>(row.size()), 1), options, L"f");
  return Apply<To>(steps, row);
}

NodeOptions Keeping() {
  NodeOptions options;
  options.invalid = InvalidNodes::kKeep;
  return options;
}

NodeOptions ConvertingTo(corvel::PrimType type) {
  NodeOptions options = Keeping();
  options.type = type;
  return options;
}

LatticeHeader WithVoid(corvel::PrimType type, double voidValue, unsigned columns) {
  LatticeHeader header = test::UniformHeader(type, columns, 1);
  header.voidValue = voidValue;
  return header;
}

// --- invalid nodes -------------------------------------------------------------------------------

TEST(NodeStepsInvalid, AsksOnceForAllRowsAndReplacesInEach) {
  std::vector<std::wstring> questions;
  NodeOptions options;
  options.confirm = [&](const std::wstring& question) {
    questions.push_back(question);
    return true;
  };
  NodeSteps steps(test::UniformHeader(corvel::kFloat, 3, 9), options, L"/maps/harz.vtk");
  EXPECT_THAT(Apply<float>(steps, std::vector<float>{1, 2, 3}), ElementsAre(1, 2, 3));
  EXPECT_TRUE(questions.empty());
  for (int row = 0; row < 8; ++row) {
    EXPECT_THAT(Apply<float>(steps, std::vector<float>{kNaN, 2, -kInf}), ElementsAre(0, 2, 0));
  }
  EXPECT_THAT(questions,
              ElementsAre(L"/maps/harz.vtk:  One or more data nodes contain invalid "
                          L"floating-point data.  Do you want to replace these nodes with "
                          L"             0 and continue importing?"));
}

TEST(NodeStepsInvalid, PutsTheReplacementIntoTheQuestion) {
  std::wstring asked;
  NodeOptions options;
  options.invalidReplacement = -12.5;
  options.confirm = [&](const std::wstring& question) {
    asked = question;
    return true;
  };
  EXPECT_THAT(Apply<double>(corvel::kDouble, options, std::vector<double>{NAN, 1}),
              ElementsAre(-12.5, 1));
  EXPECT_NE(asked.find(L"these nodes with          -12.5 and continue"), std::wstring::npos);
}

TEST(NodeStepsInvalid, StopsWhenTheAnswerIsNoOrNobodyAnswers) {
  NodeOptions options;
  EXPECT_THROW(Apply<float>(corvel::kFloat, options, std::vector<float>{kNaN}), Declined);
  options.confirm = [](const std::wstring&) { return false; };
  EXPECT_THROW(Apply<float>(corvel::kFloat, options, std::vector<float>{kNaN}), Declined);
  EXPECT_THAT(Apply<float>(corvel::kFloat, options, std::vector<float>{5}), ElementsAre(5));
}

TEST(NodeStepsInvalid, PassesOnWhatTheQuestionRaises) {
  NodeOptions options;
  options.confirm = [](const std::wstring&) -> bool { throw std::runtime_error("no terminal"); };
  EXPECT_THROW(Apply<float>(corvel::kFloat, options, std::vector<float>{kInf}), std::runtime_error);
}

TEST(NodeStepsInvalid, ReplacesOrKeepsUnaskedWhenToldSo) {
  NodeOptions options;
  options.confirm = [](const std::wstring&) -> bool {
    ADD_FAILURE() << "nothing is to be asked";
    return false;
  };
  options.invalid = InvalidNodes::kReplace;
  options.invalidReplacement = 7.0;
  EXPECT_THAT(Apply<float>(corvel::kFloat, options, std::vector<float>{kNaN, 1, kInf}),
              ElementsAre(7, 1, 7));
  options.invalid = InvalidNodes::kKeep;
  EXPECT_THAT(Apply<float>(corvel::kFloat, options, std::vector<float>{kNaN, 1, kInf}),
              ElementsAre(testing::NanSensitiveFloatEq(kNaN), 1, kInf));
}

TEST(NodeStepsInvalid, ReplacesByTheVoidValueIfThatIsFiniteElseByZero) {
  const struct {
    std::optional<double> voidValue;
    std::optional<double> replacement;
    float node;
  } cases[] = {
      {std::nullopt, std::nullopt, 0.0F}, {-9999.0, std::nullopt, -9999.0F}, {-9999.0, 3.0, 3.0F},
      {NAN, std::nullopt, 0.0F},          {-INFINITY, std::nullopt, 0.0F},
  };
  for (const auto& c : cases) {
    LatticeHeader header = test::UniformHeader(corvel::kFloat, 1, 1);
    header.voidValue = c.voidValue;
    NodeOptions options;
    options.invalid = InvalidNodes::kReplace;
    options.invalidReplacement = c.replacement;
    NodeSteps steps(header, options, L"f");
    EXPECT_THAT(Apply<float>(steps, std::vector<float>{kNaN}), ElementsAre(c.node));
  }
}

// --- the valid range -----------------------------------------------------------------------------

template <typename T>
void ExpectRangeIsInclusive(corvel::PrimType type) {
  NodeOptions options;
  options.validRange = {10.0, 20.0, 1.0};
  EXPECT_THAT(Apply<T>(type, options, std::vector<T>{9, 10, 15, 20, 21}),
              ElementsAre(T{1}, T{10}, T{15}, T{20}, T{1}));
}

TEST(NodeStepsRange, ReplacesWhatLiesOutsideAndKeepsTheBounds) {
  ExpectRangeIsInclusive<std::int16_t>(corvel::kInt16);
  ExpectRangeIsInclusive<std::uint16_t>(corvel::kUInt16);
  ExpectRangeIsInclusive<std::int32_t>(corvel::kInt32);
  ExpectRangeIsInclusive<std::uint32_t>(corvel::kUInt32);
  ExpectRangeIsInclusive<float>(corvel::kFloat);
  ExpectRangeIsInclusive<double>(corvel::kDouble);
}

TEST(NodeStepsRange, LeavesANaNThatIsKeptButReplacesInfinities) {
  NodeOptions options = Keeping();
  options.validRange = {-5.0, 5.0, 0.5};
  EXPECT_THAT(Apply<float>(corvel::kFloat, options, std::vector<float>{kNaN, kInf, -kInf, 2}),
              ElementsAre(testing::NanSensitiveFloatEq(kNaN), 0.5F, 0.5F, 2));
}

TEST(NodeStepsRange, ReachesEveryComponentOfARow) {
  NodeOptions options;
  options.validRange = {0.0, 1.0, 9.0};
  NodeSteps steps(test::UniformHeader(corvel::kInt16, 2, 1, 1, 2), options, L"f");
  EXPECT_THAT(Apply<std::int16_t>(steps, std::vector<std::int16_t>{0, 2, 1, -1}),
              ElementsAre(0, 9, 1, 9));
}

TEST(NodeStepsRange, IsRefusedForTypesThatCannotBeCompared) {
  NodeOptions options;
  options.validRange = {0.0, 1.0, 0.0};
  const struct {
    corvel::PrimType type;
    const char* name;
  } cases[] = {{corvel::kInt8, "int8"}, {corvel::kUInt8, "uint8"}, {corvel::kInt64, "int64"}};
  for (const auto& c : cases) {
    EXPECT_THAT(FilterErrorOf([&] { NodeSteps(test::UniformHeader(c.type, 1, 1), options, L"f"); }),
                HasSubstr(std::string("of the type ") + c.name));
  }
}

TEST(NodeStepsRange, IsRefusedWhenNothingLiesInIt) {
  for (const double highest : {4.0, double{NAN}}) {
    NodeOptions options;
    options.validRange = {5.0, highest, 0.0};
    EXPECT_THAT(
        FilterErrorOf([&] { NodeSteps(test::UniformHeader(corvel::kFloat, 1, 1), options, L"f"); }),
        HasSubstr("two numbers, the lower one first"));
  }
  NodeOptions options;
  options.validRange = {5.0, 5.0, 0.0};
  EXPECT_THAT(Apply<float>(corvel::kFloat, options, std::vector<float>{4, 5, 6}),
              ElementsAre(0, 5, 0));
}

// --- conversion ----------------------------------------------------------------------------------

TEST(NodeStepsConversion, TruncatesAndWraps) {
  EXPECT_THAT(Apply<std::uint8_t>(corvel::kFloat, ConvertingTo(corvel::kUInt8),
                                  std::vector<float>{0, 1.9F, 255, 300.7F, -1.5F}),
              ElementsAre(0, 1, 255, 44, 255));
  EXPECT_THAT(Apply<double>(corvel::kInt16, ConvertingTo(corvel::kDouble),
                            std::vector<std::int16_t>{-32768, 7}),
              ElementsAre(-32768.0, 7.0));
}

TEST(NodeStepsConversion, ScalesTheRangeOntoTheWholeType) {
  NodeOptions options = ConvertingTo(corvel::kUInt8);
  options.scale = {0.0, 10.0};
  EXPECT_THAT(Apply<std::uint8_t>(corvel::kFloat, options, std::vector<float>{0, 5, 10}),
              ElementsAre(0, 127, 255));
  options.scale = {10.0, 0.0};
  EXPECT_THAT(Apply<std::uint8_t>(corvel::kFloat, options, std::vector<float>{0, 10}),
              ElementsAre(255, 0));
}

TEST(NodeStepsConversion, ScalesWithinTheSameType) {
  NodeOptions options = ConvertingTo(corvel::kUInt8);
  options.scale = {0.0, 51.0};
  EXPECT_THAT(Apply<std::uint8_t>(corvel::kUInt8, options, std::vector<std::uint8_t>{0, 10, 51}),
              ElementsAre(0, 50, 255));
}

TEST(NodeStepsConversion, TellsTheNewTypeAndRowSize) {
  NodeSteps steps(test::UniformHeader(corvel::kFloat, 5, 1, 1, 3), ConvertingTo(corvel::kInt16),
                  L"f");
  EXPECT_EQ(steps.Result().dataType, corvel::kInt16);
  EXPECT_EQ(RowSize(steps.Result()), 30U);
  EXPECT_EQ(steps.Result().voidValue, std::nullopt);
}

TEST(NodeStepsConversion, LeavesNodesOfTheSameTypeWhereTheyAre) {
  NodeSteps steps(test::UniformHeader(corvel::kFloat, 2, 1), ConvertingTo(corvel::kFloat), L"f");
  float row[] = {1.0F, kNaN};
  EXPECT_EQ(steps.Apply(row), row);
  EXPECT_EQ(steps.Result().dataType, corvel::kFloat);
}

TEST(NodeStepsRange, TakesNoReplacementThatWouldBeInvalid) {
  NodeOptions options;
  options.validRange = {0.0, 1.0, 1e300};
  EXPECT_THAT(
      FilterErrorOf([&] { NodeSteps(test::UniformHeader(corvel::kFloat, 1, 1), options, L"f"); }),
      HasSubstr("1e+300 cannot replace values"));
  EXPECT_NO_THROW(NodeSteps(test::UniformHeader(corvel::kDouble, 1, 1), options, L"f"));
}

TEST(NodeStepsVoid, StaysWhenTheNewTypeHoldsItAndNothingIsScaled) {
  const struct {
    corvel::PrimType from;
    double voidValue;
    corvel::PrimType to;
    std::optional<ScaleRange> scale;
    std::optional<double> result;
  } cases[] = {
      {corvel::kFloat, -9999.0, corvel::kInt16, std::nullopt, -9999.0},
      {corvel::kFloat, 0.1, corvel::kDouble, std::nullopt, static_cast<double>(0.1F)},
      {corvel::kUInt8, -9999.0, corvel::kUInt8, std::nullopt, -9999.0},
      {corvel::kFloat, -9999.5, corvel::kInt32, std::nullopt, std::nullopt},
      {corvel::kFloat, -1.0, corvel::kUInt8, std::nullopt, std::nullopt},
      {corvel::kFloat, 10.0, corvel::kUInt8, ScaleRange{0.0, 10.0}, std::nullopt},
      // What no node of the file can hold must not become what a node can be.
      {corvel::kUInt8, -9999.0, corvel::kInt16, std::nullopt, std::nullopt},
      {corvel::kFloat, NAN, corvel::kInt16, std::nullopt, std::nullopt},
  };
  for (const auto& c : cases) {
    NodeOptions options = ConvertingTo(c.to);
    options.scale = c.scale;
    EXPECT_EQ(NodeSteps(WithVoid(c.from, c.voidValue, 1), options, L"f").Result().voidValue,
              c.result)
        << c.voidValue;
  }
}

TEST(NodeStepsVoid, IsMarkedByTheChosenValue) {
  NodeOptions options = ConvertingTo(corvel::kUInt8);
  options.scale = {0.0, 100.0};
  options.voidValue = 255.0;
  NodeSteps steps(WithVoid(corvel::kFloat, -9999.0, 3), options, L"f");
  EXPECT_EQ(steps.Result().voidValue, 255.0);
  EXPECT_THAT(Apply<std::uint8_t>(steps, std::vector<float>{0, -9999, 99}),
              ElementsAre(0, 255, 252));
}

TEST(NodeStepsVoid, MayBeMarkedOtherwiseWithoutAnotherType) {
  NodeOptions options = Keeping();
  options.voidValue = -1.0;
  NodeSteps steps(WithVoid(corvel::kInt16, -32768.0, 3), options, L"f");
  EXPECT_THAT(Apply<std::int16_t>(steps, std::vector<std::int16_t>{5, -32768, 7}),
              ElementsAre(5, -1, 7));
}

TEST(NodeStepsVoid, StaysAVoidNodeThroughAConversion) {
  NodeSteps steps(WithVoid(corvel::kFloat, -9999.0, 2), ConvertingTo(corvel::kInt16), L"f");
  EXPECT_THAT(Apply<std::int16_t>(steps, std::vector<float>{-9999, 3.9F}), ElementsAre(-9999, 3));
}

TEST(NodeStepsVoid, NeedsAMarkOnlyWhenThereIsANodeWithoutAValue) {
  NodeSteps steps(WithVoid(corvel::kFloat, -9999.0, 2), ConvertingTo(corvel::kUInt8), L"f");
  EXPECT_THAT(Apply<std::uint8_t>(steps, std::vector<float>{1, 241}), ElementsAre(1, 241));
  EXPECT_THAT(FilterErrorOf([&] {
                Apply<std::uint8_t>(steps, std::vector<float>{1, -9999});
              }),
              AllOf(HasSubstr("without a value (-9999)"), HasSubstr("--void")));
}

TEST(NodeStepsVoid, IsNotWhatAValueMayBecome) {
  NodeSteps steps(WithVoid(corvel::kFloat, -9999.0, 1), ConvertingTo(corvel::kInt16), L"f");
  EXPECT_THAT(FilterErrorOf([&] { Apply<std::int16_t>(steps, std::vector<float>{55537.0F}); }),
              AllOf(HasSubstr("55537 becomes -9999"), HasSubstr("--void")));
}

TEST(NodeStepsVoid, CannotBeChosenBeyondTheTypeNorWithoutOneBefore) {
  NodeOptions options = ConvertingTo(corvel::kUInt8);
  options.voidValue = 256.0;
  EXPECT_THAT(FilterErrorOf([&] { NodeSteps(WithVoid(corvel::kFloat, -1.0, 1), options, L"f"); }),
              HasSubstr("256 cannot mark nodes"));
  EXPECT_THAT(
      FilterErrorOf([&] { NodeSteps(test::UniformHeader(corvel::kFloat, 1, 1), options, L"f"); }),
      HasSubstr("has no void value"));
}

TEST(NodeStepsConversion, IsRefusedWhenTheOptionsContradictEachOther) {
  const auto header = test::UniformHeader(corvel::kFloat, 1, 1);
  const struct {
    std::optional<corvel::PrimType> type;
    ScaleRange scale;
    const char* reason;
  } cases[] = {{std::nullopt, {0.0, 1.0}, "scaled to a type"},
               {corvel::kFloat, {0.0, 1.0}, "float takes them as they are"},
               {corvel::kDouble, {0.0, 1.0}, "double takes them as they are"},
               {corvel::kInt64, {0.0, 1.0}, "not to int64"},
               {corvel::kUInt8, {1.0, 1.0}, "between two finite numbers"},
               {corvel::kUInt8, {0.0, NAN}, "between two finite numbers"},
               {corvel::kUInt8, {-double{INFINITY}, 1.0}, "between two finite numbers"}};
  for (const auto& c : cases) {
    NodeOptions options;
    options.type = c.type;
    options.scale = c.scale;
    EXPECT_THAT(FilterErrorOf([&] { NodeSteps(header, options, L"f"); }), HasSubstr(c.reason));
  }
}

// --- their order ---------------------------------------------------------------------------------

TEST(NodeSteps, ReplaceInvalidNodesThenKeepTheRangeThenConvert) {
  NodeOptions options;
  options.invalid = InvalidNodes::kReplace;
  options.invalidReplacement = 1000.0;     // which is not in the range:
  options.validRange = {0.0, 50.0, 20.5};  // so it becomes this,
  options.type = corvel::kUInt8;           // truncated
  EXPECT_THAT(Apply<std::uint8_t>(corvel::kFloat, options, std::vector<float>{kNaN, 306, 50.9F, 7}),
              ElementsAre(20, 20, 20, 7));
}

}  // namespace
}  // namespace trovan::filters
