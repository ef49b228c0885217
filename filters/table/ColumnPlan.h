// What each field of a table holds and how its bytes become a value: settled once for a table, so
// that the work on each record is small.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <kerno/TextCodec.h>

#include "filters/table/TableLayout.h"

namespace trovan::filters {

enum class ColumnKind {
  kText,              // C
  kVariableText,      // V of Visual FoxPro: may end with its own length
  kVariableBytes,     // Q of Visual FoxPro, the same
  kNumber,            // N, F: text
  kDate,              // D: YYYYMMDD
  kLogical,           // L
  kMemoText,          // M
  kMemoBytes,         // G, P, W, B of dBASE, binary M
  kInteger,           // I of FoxPro: 32 bits, low byte first
  kIntegerHighFirst,  // I, + of dBASE 7: 32 bits, high byte first, sign bit inverted
  kReal,              // B of Visual FoxPro: a double, low byte first
  kRealHighFirst,     // O of dBASE 7: a double, high byte first, so inverted that bytes sort
  kCurrency,          // Y: 64 bits, ten-thousandths
  kDateTime,          // T: day and milliseconds, 32 bits each
  kTimestamp,         // @ of dBASE 7: a double of milliseconds, high byte first
  kBytes,             // anything else
};

// A word for people, such as "text" or "number".
std::string_view DescribeColumnKind(ColumnKind kind);

struct Column {
  std::string name;  // UTF-8
  ColumnKind kind = ColumnKind::kBytes;
  std::size_t offset = 0;  // in the record, from behind the deletion flag
  std::size_t length = 0;
  std::optional<unsigned> nullBit;    // in the null flags of the record: no value
  std::optional<unsigned> lengthBit;  // in the null flags: the last byte is the length
};

struct ColumnPlan {
  std::vector<Column> columns;  // those that a person wants to see, in order
  std::size_t nullFlagsAt = 0;  // the hidden field of Visual FoxPro that marks null values
  std::size_t nullFlagsLength = 0;

  bool HasMemos() const;
};

// What the field holds in a table of this kind.
ColumnKind KindOfField(const TableLayout& layout, const FieldLayout& field);

// The name in UTF-8, or "field3" for a third field without a name.
std::string FieldName(const FieldLayout& field, std::size_t index, kerno::TextCodec& codec);

// Fields that lie beyond the record's length are cut to it.
ColumnPlan PlanColumns(const TableLayout& layout, kerno::TextCodec& codec);

}  // namespace trovan::filters
