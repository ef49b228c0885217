#include "ColumnPlan.h"

#include <algorithm>

#include "filters/table/FieldText.h"

namespace trovan::filters {
namespace {

constexpr char kNullFlagsType = '0';

bool IsVariable(const FieldLayout& field) { return field.type == 'V' || field.type == 'Q'; }

ColumnKind ExactSize(const FieldLayout& field, std::size_t size, ColumnKind kind) {
  return field.length == size ? kind : ColumnKind::kBytes;
}

}  // namespace

std::string_view DescribeColumnKind(ColumnKind kind) {
  switch (kind) {
    case ColumnKind::kText:
    case ColumnKind::kVariableText:
      return "text";
    case ColumnKind::kNumber:
      return "number";
    case ColumnKind::kDate:
      return "date";
    case ColumnKind::kLogical:
      return "logical";
    case ColumnKind::kMemoText:
      return "memo";
    case ColumnKind::kMemoBytes:
      return "binary memo";
    case ColumnKind::kInteger:
    case ColumnKind::kIntegerHighFirst:
      return "integer";
    case ColumnKind::kReal:
    case ColumnKind::kRealHighFirst:
      return "double";
    case ColumnKind::kCurrency:
      return "currency";
    case ColumnKind::kDateTime:
    case ColumnKind::kTimestamp:
      return "date and time";
    case ColumnKind::kVariableBytes:
    case ColumnKind::kBytes:
      return "bytes";
  }
  return "";
}

bool ColumnPlan::HasMemos() const {
  return std::any_of(columns.begin(), columns.end(), [](const Column& column) {
    return column.kind == ColumnKind::kMemoText || column.kind == ColumnKind::kMemoBytes;
  });
}

ColumnKind KindOfField(const TableLayout& layout, const FieldLayout& field) {
  const bool binary = (field.flags & kBinaryField) != 0;
  switch (field.type) {
    case 'C':
      return ColumnKind::kText;
    case 'N':
    case 'F':
      return ColumnKind::kNumber;
    case 'D':
      return ColumnKind::kDate;
    case 'L':
      return ColumnKind::kLogical;
    case 'M':
      return binary ? ColumnKind::kMemoBytes : ColumnKind::kMemoText;
    case 'G':
    case 'P':
    case 'W':
      return ColumnKind::kMemoBytes;
    case 'B':
      // dBASE's B is a binary memo, FoxPro's a double; their lengths tell them apart.
      return field.length == 8 ? ColumnKind::kReal : ColumnKind::kMemoBytes;
    case 'I':
      return ExactSize(field, 4,
                       layout.level7 ? ColumnKind::kIntegerHighFirst : ColumnKind::kInteger);
    case '+':
      return ExactSize(field, 4, ColumnKind::kIntegerHighFirst);
    case 'O':
      return ExactSize(field, 8, ColumnKind::kRealHighFirst);
    case '@':
      return ExactSize(field, 8, ColumnKind::kTimestamp);
    case 'T':
      return ExactSize(field, 8, ColumnKind::kDateTime);
    case 'Y':
      return ExactSize(field, 8, ColumnKind::kCurrency);
    case 'V':
      // Other programs keep other things in a V.
      return layout.IsVisualFoxPro() ? ColumnKind::kVariableText : ColumnKind::kBytes;
    case 'Q':
      return ColumnKind::kVariableBytes;
    default:
      return ColumnKind::kBytes;
  }
}

std::string FieldName(const FieldLayout& field, std::size_t index, kerno::TextCodec& codec) {
  std::string name;
  codec.AppendUtf8(TrimEnd(field.name), name);
  return name.empty() ? "field" + std::to_string(index + 1) : name;
}

ColumnPlan PlanColumns(const TableLayout& layout, kerno::TextCodec& codec) {
  ColumnPlan plan;
  unsigned nextBit = 0;
  for (std::size_t i = 0; i < layout.fields.size(); ++i) {
    const FieldLayout& field = layout.fields[i];
    const std::size_t room = layout.DataLength() - std::min(layout.DataLength(), field.offset);
    const std::size_t length = std::min(field.length, room);
    if ((field.flags & kSystemField) != 0) {
      if (field.type == kNullFlagsType) {
        plan.nullFlagsAt = field.offset;
        plan.nullFlagsLength = length;
      }
      continue;
    }
    Column column;
    column.name = FieldName(field, i, codec);
    column.offset = field.offset;
    column.length = length;
    column.kind = KindOfField(layout, field);
    // Part of a text is a text; part of anything else has no value.
    const bool cut = length < field.length;
    if (cut && column.kind != ColumnKind::kText) column.kind = ColumnKind::kBytes;
    // Bits are given out in the order of the fields; the length bit of a field comes first.
    if (IsVariable(field) && layout.IsVisualFoxPro()) column.lengthBit = nextBit++;
    if ((field.flags & kNullableField) != 0) column.nullBit = nextBit++;
    plan.columns.push_back(std::move(column));
  }
  return plan;
}

}  // namespace trovan::filters
