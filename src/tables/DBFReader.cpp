#include <trovan/DBFReader.h>

#include <algorithm>
#include <cstring>

#include <corvel/Exception.h>
#include <corvel/Path.h>

#include "DBFLayout.h"

namespace trovan {
namespace {

using corvel::CBufferedFile;
using corvel::CPath;
using corvel::FileOrigin;
using corvel::FileSharing;

constexpr FileSharing kSharing = FileSharing(1);

bool HasTableExtension(const std::wstring& path) {
  return corvel::ToLower(CPath(path).GetExtension()) == L".dbf";
}

// The numbers of a header that decide whether it is plausible. Sums are formed in 32 bits and wrap,
// and are compared as signed numbers.
struct TableExtent {
  std::uint32_t recordCount;
  std::uint32_t headerLength;
  std::uint32_t recordLength;

  explicit TableExtent(const unsigned char* header)
      : recordCount(dbf::LoadU32(header + dbf::kRecordCountAt)),
        headerLength(dbf::LoadU16(header + dbf::kHeaderLengthAt)),
        recordLength(dbf::LoadU16(header + dbf::kRecordLengthAt)) {}

  std::uint32_t Wrapped() const { return recordLength * recordCount + headerLength; }
  std::int64_t Exact() const {
    return static_cast<std::int64_t>(recordLength) * recordCount + headerLength;
  }

  bool HeaderFits(std::uint32_t size) const {
    constexpr std::uint32_t kShortestRecord = 2;
    constexpr std::uint32_t kLongestRecord = 16384;
    constexpr std::uint32_t kShortestHeader = 64;
    return recordLength >= kShortestRecord && recordLength <= kLongestRecord &&
           headerLength >= kShortestHeader &&
           static_cast<std::int32_t>(headerLength + recordLength) <=
               static_cast<std::int32_t>(size);
  }

  bool SlackIsSmall(std::uint32_t size) const {
    constexpr std::int32_t kLargestSlack = 512;
    return static_cast<std::int32_t>(size - Wrapped()) <= kLargestSlack;
  }
};

constexpr std::uint32_t SwapLowBytes(std::uint32_t value) {
  return (value & 0xFFU) << 8 | (value >> 8 & 0xFFU);
}

}  // namespace

CDBFReader::CDBFReader() = default;

CDBFReader::~CDBFReader() {
  try {
    Close();
  } catch (...) {
    corvel::LogExceptionInfo(L"CDBFReader", L"DBFReader", 264);
  }
}

void CDBFReader::ForgetTable() {
  table_.CloseNoThrow(false);
  memo_.CloseNoThrow(false);
  data_ = nullptr;
  dataSize_ = 0;
  dataPosition_ = 0;
  memoIsFpt_ = false;
  recordCount_ = 0;
  headerLength_ = 0;
  recordLength_ = 0;
  fields_.clear();
}

void CDBFReader::Close() { ForgetTable(); }

bool CDBFReader::IsOpen() const { return table_.IsOpen() || data_ != nullptr; }

unsigned int CDBFReader::CountFields() const { return static_cast<unsigned int>(fields_.size()); }
unsigned int CDBFReader::CountRecords() const { return recordCount_; }
unsigned int CDBFReader::RecordSize() const { return recordLength_; }
unsigned char CDBFReader::LangID() const { return langID_; }

int CDBFReader::Read(void* buffer, int count) {
  if (buffer == nullptr || count < 1) return 0;
  const auto wanted = static_cast<std::size_t>(count);
  if (table_.IsOpen()) {
    try {
      return static_cast<int>(table_.Read(buffer, wanted));
    } catch (...) {
      return 0;  // what the system refuses to read counts as missing
    }
  }
  if (data_ == nullptr || dataPosition_ >= dataSize_) return 0;
  const auto taken = std::min(static_cast<std::uint32_t>(count), dataSize_ - dataPosition_);
  std::memcpy(buffer, data_ + dataPosition_, taken);
  dataPosition_ += taken;
  return static_cast<int>(taken);
}

int CDBFReader::Seek(int offset) {
  if (offset < 0) return Tell();
  if (table_.IsOpen()) {
    try {
      return static_cast<int>(table_.Seek(offset, FileOrigin(0)));
    } catch (...) {
      return -1;
    }
  }
  if (data_ == nullptr) return -1;
  if (offset <= static_cast<std::int32_t>(dataSize_)) {
    dataPosition_ = static_cast<std::uint32_t>(offset);
  }
  return static_cast<int>(dataPosition_);
}

int CDBFReader::Tell() {
  if (table_.IsOpen()) return static_cast<int>(table_.GetPosition());
  return data_ == nullptr ? -1 : static_cast<int>(dataPosition_);
}

CDBFReader::DBFError CDBFReader::ReadHeader() {
  unsigned char header[dbf::kHeaderSize];
  if (Read(header, sizeof header) < static_cast<int>(sizeof header)) return DBF_ERR_READ;
  recordCount_ = dbf::LoadU32(header + dbf::kRecordCountAt);
  headerLength_ = dbf::LoadU16(header + dbf::kHeaderLengthAt);
  recordLength_ = dbf::LoadU16(header + dbf::kRecordLengthAt);
  langID_ = header[dbf::kLanguageAt];

  // A descriptor that would end where the header ends is not read: its place is the terminator's.
  constexpr int kSize = static_cast<int>(dbf::kDescriptorSize);
  while (Tell() + kSize < static_cast<int>(headerLength_)) {
    unsigned char descriptor[dbf::kDescriptorSize];
    if (Read(descriptor, kSize) < kSize) return DBF_ERR_READ;
    DBF_FIELDINFO field{};
    std::memcpy(field.name, descriptor + dbf::kNameAt, dbf::kNameKept);
    field.type = static_cast<char>(descriptor[dbf::kTypeAt]);
    field.length = descriptor[dbf::kLengthAt];
    fields_.push_back(field);
  }
  return DBF_OK;
}

CDBFReader::DBFError CDBFReader::OpenFromFile(const std::wstring& path) {
  if (path.empty() || !HasTableExtension(path)) return DBF_ERR_PARAM;
  ForgetTable();
  if (!table_.OpenNoThrow(path, "rb", kSharing, false)) return DBF_ERR_OPEN;
  const std::wstring fpt = CPath::ChangeExtension(path.c_str(), L".fpt");
  if (memo_.OpenNoThrow(fpt, "rb", kSharing, false)) {
    memoIsFpt_ = true;
  } else {
    const std::wstring dbt = CPath::ChangeExtension(path.c_str(), L".dbt");
    memo_.OpenNoThrow(dbt, "rb", kSharing, false);  // a table needs no memo file
  }
  return ReadHeader();
}

CDBFReader::DBFError CDBFReader::OpenFromMemory(const unsigned char* data, unsigned int size) {
  if (data == nullptr || size < dbf::kHeaderSize) return DBF_ERR_PARAM;
  Close();
  if (!IsDBFData(data, size)) return DBF_ERR_FORMAT;
  data_ = data;
  dataSize_ = size;
  dataPosition_ = 0;
  return ReadHeader();
}

CDBFReader::DBFError CDBFReader::EnumFieldInfo(unsigned int index, DBF_FIELDINFO* info) {
  if (!IsOpen()) return DBF_ERR_NOT_OPEN;
  if (index >= fields_.size() || info == nullptr) return DBF_ERR_PARAM;
  *info = fields_[index];
  return DBF_OK;
}

unsigned int CDBFReader::EnumFieldOffset(unsigned int index) {
  if (!IsOpen() || index >= fields_.size()) return 0;
  unsigned int offset = 0;
  for (unsigned int i = 0; i < index; ++i) offset += fields_[i].length;
  return offset;
}

CDBFReader::DBFError CDBFReader::EnumRecord(unsigned int index, void* buffer, unsigned int size) {
  if (!IsOpen()) return DBF_ERR_NOT_OPEN;
  if (index >= recordCount_ || buffer == nullptr || size < recordLength_) return DBF_ERR_PARAM;
  const auto offset = static_cast<int>(headerLength_ + 1 + index * recordLength_);
  if (Seek(offset) != offset || offset < 0) return DBF_ERR_READ;
  const auto wanted = static_cast<int>(recordLength_);
  const int got = Read(buffer, wanted);
  if (got == wanted) return DBF_OK;
  return got >= 1 && index == recordCount_ - 1 ? DBF_OK : DBF_ERR_READ;
}

bool CDBFReader::SeekMemo(std::uint32_t offset) {
  const auto position = static_cast<std::int32_t>(offset);
  if (position < 0) return false;
  memo_.Seek(position, FileOrigin(0));
  return memo_.GetPosition() == position;
}

CDBFReader::DBFError CDBFReader::EnumMemo(unsigned int block, void* buffer, unsigned int size) {
  if (!IsOpen() || !memo_.IsOpen()) return DBF_ERR_NOT_OPEN;
  if (buffer == nullptr || size == 0) return DBF_ERR_PARAM;
  auto* text = static_cast<char*>(buffer);
  const std::uint32_t blockSize = memoIsFpt_ ? dbf::kFptBlockSize : dbf::kDbtBlockSize;
  try {
    if (!SeekMemo(block * blockSize + dbf::kMemoLengthAt)) return DBF_ERR_READ;
    unsigned char length[2];
    if (memo_.Read(length, sizeof length) < sizeof length) return DBF_ERR_READ;
  } catch (...) {
    return DBF_ERR_READ;
  }
  // The length that was just read is not used: see the header.
  const std::uint32_t bound = std::min(SwapLowBytes(size), size - 1);
  std::uint32_t count = 0;
  try {
    while (count < bound) {
      const int byte = memo_.Getc();
      if (byte <= 0) break;
      text[count++] = static_cast<char>(byte);
    }
  } catch (...) {
    // A byte that cannot be read ends the text.
  }
  text[count] = '\0';
  return DBF_OK;
}

int CDBFReader::CheckDBFFile(const std::wstring& path) {
  constexpr int kNoTable = -1;
  constexpr int kEmptyFile = 0;
  constexpr int kTable = 1;
  if (!HasTableExtension(path)) return kNoTable;
  CBufferedFile file;
  if (!file.OpenNoThrow(path, "rb", kSharing, false)) return kNoTable;
  try {
    const auto size = static_cast<std::uint32_t>(file.GetLength());
    if (size == 0) return kEmptyFile;
    unsigned char header[dbf::kHeaderSize];
    if (file.Read(header, sizeof header) < sizeof header) return kNoTable;
    const TableExtent extent(header);
    // Deliberate: here the extent is not wrapped, but compared with a length of 32 bits.
    const bool recordsFit = extent.Exact() <= static_cast<std::int32_t>(size);
    return extent.HeaderFits(size) && recordsFit && extent.SlackIsSmall(size) ? kTable : kNoTable;
  } catch (...) {
    return kNoTable;
  }
}

bool CDBFReader::IsDBFData(const void* data, unsigned int size) {
  if (data == nullptr || size < dbf::kHeaderSize) return false;
  const TableExtent extent(static_cast<const unsigned char*>(data));
  const bool recordsFit =
      static_cast<std::int32_t>(extent.Wrapped()) <= static_cast<std::int32_t>(size);
  return extent.HeaderFits(size) && recordsFit && extent.SlackIsSmall(size);
}

}  // namespace trovan
