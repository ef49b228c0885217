// Turns the fields of records into values for a RowWriter.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <kerno/TextCodec.h>

#include "filters/support/Problems.h"
#include "filters/support/RowWriter.h"
#include "filters/table/ColumnPlan.h"
#include "filters/table/MemoFile.h"
#include "filters/table/RecordReader.h"

namespace trovan::filters {

class FieldValue {
 public:
  // With `raw`, stored texts (numbers, dates and logical values are such) keep their blanks and
  // their form. `memo` may be null: its fields are then null. All arguments outlive the object.
  FieldValue(const ColumnPlan& plan, kerno::TextCodec& codec, MemoFile* memo, bool raw,
             Problems& problems);

  // Writes the value of one field. `index` is the record's, for messages.
  void Write(const Column& column, const Record& record, std::uint32_t index, RowWriter& writer);

  // Parts of texts that the code page does not know; each came out as U+FFFD.
  std::uint64_t Malformed() const { return malformed_; }

 private:
  std::string_view Decode(std::string_view bytes);
  bool FlagIsSet(const Record& record, unsigned bit) const;

  void WriteTrimmedText(std::string_view bytes, RowWriter& writer);
  void WriteNumber(std::string_view stored, RowWriter& writer);
  void WriteDate(std::string_view stored, RowWriter& writer);
  void WriteLogical(std::string_view stored, RowWriter& writer);
  void WriteBytes(std::string_view bytes, RowWriter& writer);
  void WriteBinary(const Column& column, std::string_view bytes, RowWriter& writer);
  void WriteReal(double value, RowWriter& writer);
  void WriteMemo(const Column& column, std::string_view pointer, std::uint32_t index,
                 RowWriter& writer);
  void WriteMemoText(std::uint64_t block, const MemoExtent& memo, RowWriter& writer);
  void WriteMemoBytes(const MemoExtent& memo, RowWriter& writer);

  const ColumnPlan& plan_;
  kerno::TextCodec& codec_;
  MemoFile* memo_;
  bool raw_;
  Problems& problems_;
  bool blanksAreAscii_;  // padding can be cut off before decoding
  std::uint64_t malformed_ = 0;
  bool missingMemoTold_ = false;
  std::string text_;   // the value in the making
  std::string bytes_;  // a memo
};

}  // namespace trovan::filters
