#include "FieldValue.h"

#include <algorithm>
#include <bit>
#include <optional>

#include "filters/support/FilterError.h"
#include "filters/support/NumberText.h"
#include "filters/support/StoredNumbers.h"
#include "filters/table/FieldText.h"

namespace trovan::filters {
namespace {

constexpr std::uint32_t kSignBit32 = 0x80000000U;
constexpr std::uint64_t kSignBit64 = std::uint64_t{1} << 63;

const unsigned char* Unsigned(std::string_view bytes) {
  return reinterpret_cast<const unsigned char*>(bytes.data());
}

bool AllAre(std::string_view bytes, char byte) {
  return bytes.find_first_not_of(byte) == std::string_view::npos;
}

// dBASE 7 stores doubles so that their bytes sort: the sign bit of positive numbers is set, all
// bits of negative ones are inverted.
double SortableReal(std::uint64_t bits) {
  return std::bit_cast<double>((bits & kSignBit64) != 0 ? bits ^ kSignBit64 : ~bits);
}

// The block of a memo: a binary number in four bytes, else decimal digits. Nothing when the text is
// no number; 0 when there is no memo.
std::optional<std::uint64_t> MemoBlock(std::string_view pointer) {
  if (pointer.size() == 4) return LoadU32(Unsigned(pointer));
  const std::string_view digits = TrimBoth(pointer);
  std::uint64_t block = 0;
  for (const char digit : digits) {
    if (digit < '0' || digit > '9' || block > UINT64_MAX / 100) return std::nullopt;
    block = block * 10 + static_cast<std::uint64_t>(digit - '0');
  }
  return block;
}

std::string Place(std::uint32_t record, const Column& column) {
  return "record " + std::to_string(std::uint64_t{record} + 1) + ", field " + column.name + ": ";
}

}  // namespace

FieldValue::FieldValue(const ColumnPlan& plan, kerno::TextCodec& codec, MemoFile* memo, bool raw,
                       Problems& problems)
    : plan_(plan), codec_(codec), memo_(memo), raw_(raw), problems_(problems) {
  constexpr std::string_view kPadding("a \0", 3);
  std::string decoded;
  codec_.AppendUtf8(kPadding, decoded);
  blanksAreAscii_ = decoded == kPadding;
}

std::string_view FieldValue::Decode(std::string_view bytes) {
  text_.clear();
  malformed_ += codec_.AppendUtf8(bytes, text_);
  return text_;
}

bool FieldValue::FlagIsSet(const Record& record, unsigned bit) const {
  const std::size_t at = bit / 8;
  if (at >= plan_.nullFlagsLength || plan_.nullFlagsAt + at >= record.present) return false;
  return (record.data[plan_.nullFlagsAt + at] >> (bit % 8) & 1U) != 0;
}

void FieldValue::Write(const Column& column, const Record& record, std::uint32_t index,
                       RowWriter& writer) {
  if (column.nullBit && FlagIsSet(record, *column.nullBit)) return writer.Null();
  const bool cutOff = column.offset + column.length > record.present;
  if (cutOff && column.kind != ColumnKind::kText) return writer.Null();
  std::string_view stored(reinterpret_cast<const char*>(record.data) + column.offset,
                          column.length);
  if (column.lengthBit && FlagIsSet(record, *column.lengthBit) && !stored.empty()) {
    stored = stored.substr(
        0, std::min<std::size_t>(Unsigned(stored)[stored.size() - 1], stored.size() - 1));
    return column.kind == ColumnKind::kVariableText ? writer.Text(Decode(stored))
                                                    : WriteBytes(stored, writer);
  }
  switch (column.kind) {
    case ColumnKind::kText:
    case ColumnKind::kVariableText:
      return raw_ ? writer.Text(Decode(stored)) : WriteTrimmedText(stored, writer);
    case ColumnKind::kNumber:
      return raw_ ? writer.Text(Decode(stored)) : WriteNumber(stored, writer);
    case ColumnKind::kDate:
      return raw_ ? writer.Text(Decode(stored)) : WriteDate(stored, writer);
    case ColumnKind::kLogical:
      return raw_ ? writer.Text(Decode(stored)) : WriteLogical(stored, writer);
    case ColumnKind::kMemoText:
    case ColumnKind::kMemoBytes:
      return WriteMemo(column, stored, index, writer);
    case ColumnKind::kVariableBytes:
    case ColumnKind::kBytes:
      return WriteBytes(stored, writer);
    default:
      return WriteBinary(column, stored, writer);
  }
}

void FieldValue::WriteTrimmedText(std::string_view bytes, RowWriter& writer) {
  if (blanksAreAscii_) return writer.Text(Decode(TrimEnd(bytes)));
  writer.Text(TrimEnd(Decode(bytes)));
}

void FieldValue::WriteNumber(std::string_view stored, RowWriter& writer) {
  const std::string_view number = TrimBoth(stored);
  // Asterisks stand for a number that was too large for its field: the number itself is lost.
  if (AllAre(number, '*')) return writer.Null();
  if (IsNumber(number)) return writer.Number(number);
  writer.Text(Decode(number));
}

void FieldValue::WriteDate(std::string_view stored, RowWriter& writer) {
  const std::string_view date = TrimBoth(stored);
  if (AllAre(date, '0')) return writer.Null();
  text_.clear();
  writer.Text(AppendIsoDate(date, text_) ? std::string_view(text_) : Decode(date));
}

void FieldValue::WriteLogical(std::string_view stored, RowWriter& writer) {
  const std::string_view value = TrimBoth(stored);
  if (value.empty() || value == "?") return writer.Null();
  if (value == "T" || value == "t" || value == "Y" || value == "y") return writer.Logical(true);
  if (value == "F" || value == "f" || value == "N" || value == "n") return writer.Logical(false);
  writer.Text(Decode(value));
}

void FieldValue::WriteBytes(std::string_view bytes, RowWriter& writer) {
  text_.clear();
  AppendHex(bytes, text_);
  writer.Text(text_);
}

void FieldValue::WriteReal(double value, RowWriter& writer) {
  text_.clear();
  AppendNumber(text_, value);
  IsNumber(text_) ? writer.Number(text_) : writer.Text(text_);
}

void FieldValue::WriteBinary(const Column& column, std::string_view bytes, RowWriter& writer) {
  const unsigned char* at = Unsigned(bytes);
  const bool allZero = AllAre(bytes, '\0');
  text_.clear();
  switch (column.kind) {
    case ColumnKind::kInteger:
      return writer.Number(std::to_string(static_cast<std::int32_t>(LoadU32(at))));
    case ColumnKind::kIntegerHighFirst:
      // dBASE 7 marks a value that was never set by zero bytes.
      if (allZero) return writer.Null();
      return writer.Number(
          std::to_string(static_cast<std::int32_t>(LoadU32HighFirst(at) ^ kSignBit32)));
    case ColumnKind::kReal:
      return WriteReal(std::bit_cast<double>(LoadU64(at)), writer);
    case ColumnKind::kRealHighFirst:
      return allZero ? writer.Null() : WriteReal(SortableReal(LoadU64HighFirst(at)), writer);
    case ColumnKind::kCurrency:
      AppendCurrency(static_cast<std::int64_t>(LoadU64(at)), text_);
      return writer.Number(text_);
    case ColumnKind::kDateTime:
      if (allZero || AllAre(bytes, ' ')) return writer.Null();
      if (AppendDateTime(static_cast<std::int32_t>(LoadU32(at)),
                         static_cast<std::int32_t>(LoadU32(at + 4)), text_)) {
        return writer.Text(text_);
      }
      return WriteBytes(bytes, writer);
    case ColumnKind::kTimestamp:
      if (allZero) return writer.Null();
      if (AppendTimestamp(std::bit_cast<double>(LoadU64HighFirst(at)), text_)) {
        return writer.Text(text_);
      }
      return WriteBytes(bytes, writer);
    default:
      return WriteBytes(bytes, writer);
  }
}

void FieldValue::WriteMemo(const Column& column, std::string_view pointer, std::uint32_t index,
                           RowWriter& writer) {
  const std::optional<std::uint64_t> block = MemoBlock(pointer);
  if (block == 0U) return writer.Null();
  if (!block) {
    problems_.Add(Place(index, column) + "the memo pointer is no number");
    return writer.Null();
  }
  if (memo_ == nullptr) {
    if (!missingMemoTold_)
      problems_.Add(Place(index, column) + "there is no memo file that can be read");
    missingMemoTold_ = true;
    return writer.Null();
  }
  MemoExtent memo;
  try {
    memo = memo_->Find(*block);
  } catch (const FilterError& error) {
    problems_.Add(Place(index, column) + error.what());
    return writer.Null();
  }
  if (memo.length < memo.promised) {
    problems_.Add(Place(index, column) + "the memo file ends after " + std::to_string(memo.length) +
                  " of the " + std::to_string(memo.promised) + " bytes of the memo");
  }
  if (column.kind == ColumnKind::kMemoText && memo.isText) {
    WriteMemoText(*block, memo, writer);
  } else {
    WriteMemoBytes(memo, writer);
  }
}

void FieldValue::WriteMemoText(std::uint64_t block, const MemoExtent& memo, RowWriter& writer) {
  if (memo.length <= kLargestWholeMemo) {
    memo_->ReadWhole(block, memo, bytes_);
    return writer.Text(Decode(bytes_));
  }
  writer.BeginLongText();
  bytes_.resize(kLargestWholeMemo);
  for (std::uint64_t from = 0; from < memo.length;) {
    const std::size_t got = memo_->Read(memo, from, bytes_.data(), bytes_.size());
    if (got == 0) break;
    from += got;
    text_.clear();
    malformed_ +=
        codec_.AppendPiece(std::string_view(bytes_).substr(0, got), from >= memo.length, text_);
    writer.LongTextPiece(text_);
  }
  writer.EndLongText();
}

void FieldValue::WriteMemoBytes(const MemoExtent& memo, RowWriter& writer) {
  writer.BeginLongText();
  bytes_.resize(std::min(kLargestWholeMemo, memo.length));
  for (std::uint64_t from = 0; from < memo.length;) {
    const std::size_t got = memo_->Read(memo, from, bytes_.data(), bytes_.size());
    if (got == 0) break;
    from += got;
    text_.clear();
    AppendHex(std::string_view(bytes_).substr(0, got), text_);
    writer.LongTextPiece(text_);
  }
  writer.EndLongText();
}

}  // namespace trovan::filters
