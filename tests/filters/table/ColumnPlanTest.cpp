#include "filters/table/ColumnPlan.h"

#include <optional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace trovan::filters {
namespace {

using testing::SizeIs;

enum class Program { kDBase, kDBase7, kFoxPro };

TableLayout LayoutOf(Program program) {
  TableLayout layout;
  layout.version = program == Program::kFoxPro ? 0x30 : program == Program::kDBase7 ? 0x04 : 0x03;
  layout.level7 = program == Program::kDBase7;
  return layout;
}

FieldLayout Field(char type, std::size_t length, unsigned flags = 0) {
  FieldLayout field;
  field.name = "F";
  field.type = type;
  field.length = length;
  field.flags = flags;
  return field;
}

// A table of Visual FoxPro with these fields.
TableLayout Table(const std::vector<FieldLayout>& fields) {
  TableLayout layout = LayoutOf(Program::kFoxPro);
  layout.fields = fields;
  std::size_t offset = 0;
  for (FieldLayout& field : layout.fields) {
    field.offset = offset;
    offset += field.length;
  }
  layout.recordLength = 1 + offset;
  return layout;
}

ColumnPlan Plan(const TableLayout& layout) {
  kerno::TextCodec codec(1252);
  return PlanColumns(layout, codec);
}

TEST(ColumnPlan, KnowsEveryTypeLetter) {
  using enum ColumnKind;
  using enum Program;
  const struct {
    char type;
    std::size_t length;
    Program program;
    ColumnKind kind;
  } cases[] = {
      {'C', 10, kDBase, kText},
      {'N', 10, kDBase, kNumber},
      {'F', 20, kDBase, kNumber},
      {'D', 8, kDBase, kDate},
      {'L', 1, kDBase, kLogical},
      {'M', 10, kDBase, kMemoText},
      {'M', 4, kFoxPro, kMemoText},
      {'G', 10, kDBase, kMemoBytes},
      {'P', 10, kDBase, kMemoBytes},
      {'W', 4, kFoxPro, kMemoBytes},
      {'B', 10, kDBase, kMemoBytes},
      {'B', 8, kFoxPro, kReal},
      {'I', 4, kFoxPro, kInteger},
      {'I', 4, kDBase, kInteger},
      {'I', 4, kDBase7, kIntegerHighFirst},
      {'I', 8, kFoxPro, kBytes},
      {'+', 4, kDBase7, kIntegerHighFirst},
      {'+', 3, kDBase7, kBytes},
      {'O', 8, kDBase7, kRealHighFirst},
      {'O', 4, kDBase7, kBytes},
      {'@', 8, kDBase7, kTimestamp},
      {'@', 9, kDBase7, kBytes},
      {'T', 8, kFoxPro, kDateTime},
      {'T', 14, kFoxPro, kBytes},
      {'Y', 8, kFoxPro, kCurrency},
      {'Y', 0, kFoxPro, kBytes},
      {'V', 10, kFoxPro, kVariableText},
      {'V', 10, kDBase, kBytes},
      {'Q', 10, kFoxPro, kVariableBytes},
      {'Q', 10, kDBase, kVariableBytes},
      {'0', 1, kFoxPro, kBytes},
      {'c', 10, kDBase, kBytes},
      {'\0', 10, kDBase, kBytes},
      {'\xFF', 10, kDBase, kBytes},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(KindOfField(LayoutOf(c.program), Field(c.type, c.length)), c.kind)
        << c.type << ' ' << c.length;
  }
}

TEST(ColumnPlan, TakesAMemoThatIsMarkedBinaryForBytes) {
  EXPECT_EQ(KindOfField(LayoutOf(Program::kFoxPro), Field('M', 4, kBinaryField)),
            ColumnKind::kMemoBytes);
}

TEST(ColumnPlan, HasAWordForEveryKind) {
  for (int kind = 0; kind <= static_cast<int>(ColumnKind::kBytes); ++kind) {
    EXPECT_NE(DescribeColumnKind(static_cast<ColumnKind>(kind)), "") << kind;
  }
}

TEST(ColumnPlan, GivesNullFlagsOutInTheOrderOfTheFields) {
  const ColumnPlan plan = Plan(Table({
      Field('C', 5),
      Field('N', 5, kNullableField),
      Field('V', 5),
      Field('Q', 5, kNullableField),
      Field('D', 8, kNullableField),
      Field('0', 1, kSystemField),
  }));
  ASSERT_THAT(plan.columns, SizeIs(5));
  const std::optional<unsigned> none;
  EXPECT_EQ(plan.columns[0].nullBit, none);
  EXPECT_EQ(plan.columns[1].nullBit, 0U);
  EXPECT_EQ(plan.columns[1].lengthBit, none);
  EXPECT_EQ(plan.columns[2].lengthBit, 1U);
  EXPECT_EQ(plan.columns[2].nullBit, none);
  EXPECT_EQ(plan.columns[3].lengthBit, 2U);
  EXPECT_EQ(plan.columns[3].nullBit, 3U);
  EXPECT_EQ(plan.columns[4].nullBit, 4U);
  EXPECT_EQ(plan.nullFlagsAt, 28U);
  EXPECT_EQ(plan.nullFlagsLength, 1U);
}

TEST(ColumnPlan, HidesFieldsOfTheProgramItself) {
  const ColumnPlan plan = Plan(Table({Field('C', 2, kSystemField), Field('C', 3)}));
  ASSERT_THAT(plan.columns, SizeIs(1));
  EXPECT_EQ(plan.columns[0].offset, 2U);
  EXPECT_EQ(plan.nullFlagsLength, 0U);
}

TEST(ColumnPlan, CutsFieldsToTheRecord) {
  TableLayout layout = Table({Field('C', 4), Field('C', 4), Field('I', 4), Field('C', 4)});
  layout.recordLength = 1 + 4 + 2;
  const ColumnPlan plan = Plan(layout);
  ASSERT_THAT(plan.columns, SizeIs(4));
  EXPECT_EQ(plan.columns[0].length, 4U);
  EXPECT_EQ(plan.columns[1].length, 2U);
  EXPECT_EQ(plan.columns[1].kind, ColumnKind::kText);
  EXPECT_EQ(plan.columns[2].length, 0U);
  EXPECT_EQ(plan.columns[2].kind, ColumnKind::kBytes);
  EXPECT_EQ(plan.columns[3].length, 0U);
}

TEST(ColumnPlan, CutsTheNullFlagsToTheRecord) {
  TableLayout layout = Table({Field('C', 4, kNullableField), Field('0', 2, kSystemField)});
  layout.recordLength = 1 + 4 + 1;
  EXPECT_EQ(Plan(layout).nullFlagsLength, 1U);
  layout.recordLength = 1 + 2;
  EXPECT_EQ(Plan(layout).nullFlagsLength, 0U);
}

TEST(ColumnPlan, DecodesNamesAndMakesUpMissingOnes) {
  kerno::TextCodec codec(850);
  FieldLayout field = Field('C', 1);
  field.name =
      "STRA\xE1"
      "E  ";
  EXPECT_EQ(FieldName(field, 0, codec), "STRAßE");
  field.name = "   ";
  EXPECT_EQ(FieldName(field, 2, codec), "field3");
}

TEST(ColumnPlan, KnowsWhetherThereAreMemos) {
  EXPECT_FALSE(Plan(Table({Field('C', 4), Field('B', 8)})).HasMemos());
  EXPECT_TRUE(Plan(Table({Field('C', 4), Field('M', 4)})).HasMemos());
  EXPECT_TRUE(Plan(Table({Field('G', 4)})).HasMemos());
}

}  // namespace
}  // namespace trovan::filters
