#include "RecordReader.h"

#include <algorithm>
#include <limits>

#include <corvel/Text.h>

#include "filters/support/FilterError.h"

namespace trovan::filters {
namespace {

// The reader forms offsets in signed 32-bit numbers.
constexpr long long kReach = std::numeric_limits<std::int32_t>::max();

// The mark that many programs write behind the last record.
constexpr unsigned char kEndOfFile = 0x1A;

}  // namespace

RecordReader::RecordReader(const std::wstring& path, const TableLayout& layout)
    : layout_(layout), buffer_(layout.recordLength) {
  const CDBFReader::DBFError error = reader_.OpenFromFile(path);
  const std::string name = corvel::Utf8FromWide(path);
  if (error == CDBFReader::DBF_ERR_PARAM) {
    throw FilterError(name + " is not named like a table: give it the extension .dbf");
  }
  if (error == CDBFReader::DBF_ERR_OPEN) throw FilterError(name + " cannot be opened");
  // Another error concerns the reader's own idea of the field list, which is not used here.
  file_.Open(path, "rb", corvel::kFileShareRead, false);
}

std::uint32_t RecordReader::CountPresent() {
  const long long bytes = layout_.fileLength - static_cast<long long>(layout_.headerLength);
  if (bytes <= 0 || layout_.recordCount == 0) return 0;
  const auto length = static_cast<long long>(layout_.recordLength);
  const long long begun = std::min<long long>((bytes + length - 1) / length, layout_.recordCount);
  const auto last = static_cast<std::uint32_t>(begun - 1);
  return IsEndMark(last, ReadFlag(last)) ? last : last + 1;
}

// A single byte where a record of more bytes is missing: the mark behind the last one.
bool RecordReader::IsEndMark(std::uint32_t index, unsigned char flag) const {
  return flag == kEndOfFile && layout_.DataLength() > 0 &&
         layout_.RecordOffset(index) + 1 == layout_.fileLength;
}

bool RecordReader::Read(std::uint32_t index, Record& record) {
  const long long offset = layout_.RecordOffset(index);
  if (offset >= layout_.fileLength) return false;
  record.flag = flagKnown_ && flagIndex_ == index ? flag_ : ReadFlag(index);
  flagKnown_ = false;
  const auto wanted = static_cast<long long>(layout_.DataLength());
  record.present = static_cast<std::size_t>(std::min(wanted, layout_.fileLength - offset - 1));
  if (IsEndMark(index, record.flag)) return false;
  const bool nextFlagPresent = layout_.fileLength - offset - 1 > wanted;
  if (nextFlagPresent && ReadThroughReader(index)) {
    flag_ = buffer_[layout_.DataLength()];
    flagIndex_ = index + 1;
    flagKnown_ = true;
  } else {
    record.present = std::min(record.present, ReadFromFile(index));
  }
  if (record.present < layout_.DataLength()) {
    std::fill(buffer_.begin() + static_cast<std::ptrdiff_t>(record.present), buffer_.end(), ' ');
  }
  record.data = buffer_.data();
  return true;
}

bool RecordReader::ReadThroughReader(std::uint32_t index) {
  if (layout_.RecordOffset(index + 1) + 1 > kReach) return false;
  return reader_.EnumRecord(index, buffer_.data(), static_cast<unsigned>(buffer_.size())) ==
         CDBFReader::DBF_OK;
}

unsigned char RecordReader::ReadFlag(std::uint32_t index) {
  file_.Seek(layout_.RecordOffset(index), corvel::kFileBegin);
  const int flag = file_.Getc();
  return flag < 0 ? static_cast<unsigned char>(' ') : static_cast<unsigned char>(flag);
}

std::size_t RecordReader::ReadFromFile(std::uint32_t index) {
  file_.Seek(layout_.RecordOffset(index) + 1, corvel::kFileBegin);
  return file_.Read(buffer_.data(), buffer_.size());
}

}  // namespace trovan::filters
