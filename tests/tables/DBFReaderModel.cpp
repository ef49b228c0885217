#include "tables/DBFReaderModel.h"

#include <algorithm>

#include "support/Random.h"

namespace trovan::test {
namespace {

constexpr std::int64_t kTwoTo16 = 65536;
constexpr std::int64_t kTwoTo31 = 2147483648;
constexpr std::int64_t kTwoTo32 = 4294967296;
constexpr char kUntouched = '\xEE';

std::int64_t Modulo(std::int64_t value, std::int64_t base) {
  const std::int64_t rest = value % base;
  return rest < 0 ? rest + base : rest;
}

std::int64_t Signed32(std::int64_t value) {
  const std::int64_t wrapped = Modulo(value, kTwoTo32);
  return wrapped < kTwoTo31 ? wrapped : wrapped - kTwoTo32;
}

std::int64_t Number(const std::string& bytes, std::size_t at, std::size_t width) {
  std::int64_t value = 0;
  for (std::size_t i = width; i-- > 0;) {
    value = value * 256 + static_cast<unsigned char>(bytes.at(at + i));
  }
  return value;
}

std::string Cut(const std::string& bytes, std::int64_t at, std::int64_t count) {
  if (at >= static_cast<std::int64_t>(bytes.size())) return {};
  return bytes.substr(static_cast<std::size_t>(at), static_cast<std::size_t>(count));
}

}  // namespace

bool ModelIsPlausible(const std::string& header, std::int64_t size, bool exactExtent) {
  const std::int64_t n = Number(header, 4, 4);
  const std::int64_t h = Number(header, 8, 2);
  const std::int64_t r = Number(header, 10, 2);
  const std::int64_t signedSize = Signed32(size);
  const std::int64_t extent = exactExtent ? r * n + h : Signed32(r * n + h);
  if (Modulo(r - 2, kTwoTo16) > 16382) return false;
  if (h < 64) return false;
  if (h + r > signedSize) return false;
  if (extent > signedSize) return false;
  return Signed32(size - (r * n + h)) <= 512;
}

int ModelCheck(const std::string& file) {
  if (file.empty()) return 0;
  if (file.size() < 32) return -1;
  return ModelIsPlausible(file, static_cast<std::int64_t>(file.size()), true) ? 1 : -1;
}

DBFReaderModel DBFReaderModel::Memory(const std::string& table) {
  DBFReaderModel model;
  if (table.size() < 32) {
    model.openStatus_ = CDBFReader::DBF_ERR_PARAM;
  } else if (!ModelIsPlausible(table, static_cast<std::int64_t>(table.size()), false)) {
    model.openStatus_ = CDBFReader::DBF_ERR_FORMAT;
  } else {
    model.table_ = table;
    model.isOpen_ = true;
    model.openStatus_ = model.ReadHeader();
  }
  return model;
}

DBFReaderModel DBFReaderModel::File(const std::string& table, const std::optional<Memo>& memo) {
  DBFReaderModel model;
  model.table_ = table;
  model.memo_ = memo;
  model.isOpen_ = true;
  model.openStatus_ = model.ReadHeader();
  return model;
}

CDBFReader::DBFError DBFReaderModel::ReadHeader() {
  if (table_.size() < 32) return CDBFReader::DBF_ERR_READ;
  recordCount_ = Number(table_, 4, 4);
  headerLength_ = Number(table_, 8, 2);
  recordLength_ = Number(table_, 10, 2);
  langID_ = static_cast<int>(Number(table_, 29, 1));
  for (std::int64_t position = 32; position + 32 < headerLength_; position += 32) {
    const std::string raw = Cut(table_, position, 32);
    if (raw.size() < 32) return CDBFReader::DBF_ERR_READ;
    fields_.push_back({raw.substr(0, 10) + std::string(2, '\0'), raw[11],
                       static_cast<unsigned>(Number(raw, 16, 1))});
  }
  return CDBFReader::DBF_OK;
}

std::int64_t DBFReaderModel::FieldOffset(std::int64_t index) const {
  const auto count = static_cast<std::int64_t>(fields_.size());
  if (!isOpen_ || index >= count) return 0;
  std::int64_t offset = 0;
  for (std::int64_t i = 0; i < index; ++i) offset += fields_[static_cast<std::size_t>(i)].length;
  return offset;
}

DBFReaderModel::Answer DBFReaderModel::Record(std::int64_t index, std::int64_t size) const {
  if (!isOpen_) return {CDBFReader::DBF_ERR_NOT_OPEN, ""};
  if (index >= recordCount_ || size < recordLength_) return {CDBFReader::DBF_ERR_PARAM, ""};
  const std::int64_t offset = Modulo(headerLength_ + 1 + index * recordLength_, kTwoTo32);
  if (offset >= kTwoTo31) return {CDBFReader::DBF_ERR_READ, ""};
  const std::string bytes = Cut(table_, offset, recordLength_);
  const auto got = static_cast<std::int64_t>(bytes.size());
  if (got == recordLength_) return {CDBFReader::DBF_OK, bytes};
  if (got == 0 || index != recordCount_ - 1) return {CDBFReader::DBF_ERR_READ, bytes};
  return {CDBFReader::DBF_OK, bytes};
}

DBFReaderModel::Answer DBFReaderModel::MemoText(std::int64_t block, std::int64_t size) const {
  if (!isOpen_ || !memo_) return {CDBFReader::DBF_ERR_NOT_OPEN, ""};
  if (size == 0) return {CDBFReader::DBF_ERR_PARAM, ""};
  const std::int64_t offset = Modulo(block * memo_->blockSize + 6, kTwoTo32);
  if (offset >= kTwoTo31 || Cut(memo_->bytes, offset, 2).size() < 2) {
    return {CDBFReader::DBF_ERR_READ, ""};
  }
  const std::int64_t bound = size % 256 * 256 + size / 256 % 256;
  std::string text;
  if (size > 1) {
    for (std::int64_t at = offset + 2; static_cast<std::int64_t>(text.size()) < bound; ++at) {
      const std::string byte = Cut(memo_->bytes, at, 1);
      if (byte.empty() || byte[0] == '\0') break;
      text += byte;
      if (static_cast<std::int64_t>(text.size()) == size - 1) break;
    }
  }
  return {CDBFReader::DBF_OK, text + '\0'};
}

namespace {

// What differs first, in words; empty where nothing does.
using Difference = std::string;

// The bytes in hexadecimal.
std::string Hexadecimal(const std::string& bytes) {
  std::string text = "\"";
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    text += "0123456789abcdef"[byte >> 4];
    text += "0123456789abcdef"[byte & 0xF];
  }
  return text + "\"";
}

template <typename Given, typename Expected>
Difference Compare(const std::string& what, const Given& given, const Expected& expected) {
  if (static_cast<std::int64_t>(given) == static_cast<std::int64_t>(expected)) return {};
  return what + " is " + std::to_string(given) + " and should be " + std::to_string(expected);
}

Difference CompareField(CDBFReader& reader, const DBFReaderModel& model, unsigned index) {
  DBF_FIELDINFO info{};
  const auto status = reader.EnumFieldInfo(index, &info);
  if (!model.IsOpen()) return Compare("field status", status, CDBFReader::DBF_ERR_NOT_OPEN);
  if (index >= model.Fields().size()) {
    return Compare("field status", status, CDBFReader::DBF_ERR_PARAM);
  }
  const DBFReaderModel::Field& field = model.Fields()[index];
  const bool same = status == CDBFReader::DBF_OK && info.type == field.type &&
                    info.length == field.length &&
                    field.name.compare(0, 12, info.name, sizeof info.name) == 0;
  return same ? "" : "field " + std::to_string(index);
}

// `status` is the answer with which the reader left `buffer`.
Difference CompareAnswer(const char* what, unsigned index, CDBFReader::DBFError status,
                         const std::string& buffer, const DBFReaderModel::Answer& expected) {
  const bool same =
      status == expected.status && buffer.compare(0, expected.bytes.size(), expected.bytes) == 0 &&
      buffer.find_first_not_of(kUntouched, expected.bytes.size()) == std::string::npos;
  if (same) return {};
  return what + std::to_string(index) + " into " + std::to_string(buffer.size()) +
         " bytes: status " + std::to_string(status) + ", " + Hexadecimal(buffer) +
         " and should be " + std::to_string(expected.status) + ", " + Hexadecimal(expected.bytes);
}

Difference CompareRecord(CDBFReader& reader, const DBFReaderModel& model, unsigned index,
                         std::int64_t size) {
  if (size < 0) return {};
  // At least one byte, so that there is something to point at.
  std::string buffer(static_cast<std::size_t>(std::max<std::int64_t>(size, 1)), kUntouched);
  const auto status = reader.EnumRecord(index, buffer.data(), static_cast<unsigned>(size));
  return CompareAnswer("record ", index, status, buffer, model.Record(index, size));
}

Difference CompareMemo(CDBFReader& reader, const DBFReaderModel& model, unsigned block,
                       unsigned size) {
  std::string buffer(std::max(size, 1U), kUntouched);
  const auto status = reader.EnumMemo(block, buffer.data(), size);
  return CompareAnswer("memo ", block, status, buffer, model.MemoText(block, size));
}

// A small number, one near `landmark`, one near a multiple of 2^29, or any.
unsigned Draw(std::mt19937& random, unsigned landmark) {
  switch (Below(random, 4)) {
    case 0:
      return Below(random, 8);
    case 1:
      return landmark + Below(random, 9) - 4;
    case 2:
      return (Below(random, 8) << 29) + Below(random, 9) - 4;
    default:
      return AnyUnsigned(random);
  }
}

// Keeps the first difference.
class Differences {
 public:
  void Note(const Difference& difference) {
    if (first_.empty()) first_ = difference;
  }
  const Difference& First() const { return first_; }

 private:
  Difference first_;
};

}  // namespace

std::string Disagreement(CDBFReader& reader, const DBFReaderModel& model, std::mt19937& random) {
  Differences differences;
  differences.Note(Compare("IsOpen", reader.IsOpen(), model.IsOpen()));
  differences.Note(Compare("CountFields", reader.CountFields(), model.Fields().size()));
  differences.Note(Compare("CountRecords", reader.CountRecords(), model.CountRecords()));
  differences.Note(Compare("RecordSize", reader.RecordSize(), model.RecordSize()));
  differences.Note(Compare("LangID", reader.LangID(), model.LangID().value_or(reader.LangID())));

  const auto fields = static_cast<unsigned>(model.Fields().size());
  for (unsigned i = 0; i <= fields; ++i) {
    differences.Note(CompareField(reader, model, i));
    differences.Note(Compare("offset", reader.EnumFieldOffset(i), model.FieldOffset(i)));
  }

  const unsigned count = reader.CountRecords();
  const std::int64_t length = model.RecordSize();
  for (const unsigned index : {0U, 1U, count - 1, count}) {
    differences.Note(CompareRecord(reader, model, index, length));
  }
  differences.Note(CompareRecord(reader, model, 0, length - 1));
  for (int i = 0; i < 4; ++i) {
    differences.Note(CompareRecord(reader, model, Draw(random, count), length + 1));
  }
  for (int i = 0; i < 4; ++i) {
    const unsigned block = Draw(random, 1U << 26);
    differences.Note(CompareMemo(reader, model, block, Below(random, i == 0 ? 2 : 700)));
  }
  return differences.First();
}

}  // namespace trovan::test
