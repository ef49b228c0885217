#include "TableLayout.h"

#include <algorithm>

#include <corvel/BufferedFile.h>
#include <corvel/Text.h>

#include "filters/support/FilterError.h"
#include "filters/support/StoredNumbers.h"

namespace trovan::filters {
namespace {

using corvel::CBufferedFile;

constexpr std::size_t kHeaderSize = 32;
constexpr std::uint8_t kVersionDBase2 = 0x02;
constexpr unsigned char kTerminator = 0x0D;

// How the descriptors of one level lie.
struct DescriptorLayout {
  std::size_t first;  // offset of the first descriptor in the file
  std::size_t size;
  std::size_t nameLength;
  std::size_t typeAt;
  std::size_t lengthAt;
  std::size_t decimalsAt;
  std::size_t flagsAt;
};

constexpr DescriptorLayout kLevel5{32, 32, 11, 11, 16, 17, 18};
constexpr DescriptorLayout kLevel7{68, 48, 32, 32, 33, 34, 0};

std::vector<unsigned char> ReadHeaderBytes(CBufferedFile& file, const std::string& name) {
  std::vector<unsigned char> header(kHeaderSize);
  const std::size_t got = file.Read(header.data(), header.size());
  if (got == 0) throw FilterError(name + " is empty: a table begins with a header of 32 bytes");
  if (got < kHeaderSize) {
    throw FilterError(name + " is no dBASE table: it has only " + std::to_string(got) +
                      " bytes, a header has 32");
  }
  header.resize(std::max<std::size_t>(LoadU16(&header[8]), kHeaderSize));
  const std::size_t rest = header.size() - kHeaderSize;
  const std::size_t more = rest == 0 ? 0 : file.Read(header.data() + kHeaderSize, rest);
  header.resize(kHeaderSize + more);
  return header;
}

void RequireReadable(const TableLayout& layout, std::size_t headerBytes, const std::string& name) {
  if (layout.version == kVersionDBase2) {
    throw FilterError(name +
                      " is a dBASE II table (version byte 02), whose layout is another one: "
                      "save it as dBASE III or later first");
  }
  if (layout.headerLength <= kHeaderSize) {
    throw FilterError(name + " is no dBASE table: the header length at byte 8 is " +
                      std::to_string(layout.headerLength) + ", which leaves no room for a field");
  }
  if (layout.headerLength > headerBytes) {
    throw FilterError(name + " is cut off or no dBASE table: the header should have " +
                      std::to_string(layout.headerLength) + " bytes, the file ends after " +
                      std::to_string(headerBytes));
  }
  if (layout.recordLength == 0) {
    throw FilterError(name + " is no dBASE table: the record length at byte 10 is 0");
  }
}

// Some programs end the descriptors with a NUL, or forget the end; an unnamed field is none.
bool EndsDescriptors(const unsigned char* at) { return *at == kTerminator || *at == 0; }

FieldLayout ParseDescriptor(const unsigned char* at, const DescriptorLayout& descriptor,
                            bool hasFlags) {
  FieldLayout field;
  const auto* name = reinterpret_cast<const char*>(at);
  field.name.assign(name, std::find(name, name + descriptor.nameLength, '\0'));
  field.type = static_cast<char>(at[descriptor.typeAt]);
  field.length = at[descriptor.lengthAt];
  field.decimals = at[descriptor.decimalsAt];
  if (hasFlags) field.flags = at[descriptor.flagsAt];
  return field;
}

void ReadFields(TableLayout& layout, const std::vector<unsigned char>& header) {
  const DescriptorLayout& descriptor = layout.level7 ? kLevel7 : kLevel5;
  std::size_t at = descriptor.first;
  while (at + descriptor.size <= layout.headerLength && !EndsDescriptors(&header[at])) {
    layout.fields.push_back(ParseDescriptor(&header[at], descriptor, layout.IsVisualFoxPro()));
    at += descriptor.size;
  }
  layout.terminated = at < layout.headerLength && header[at] == kTerminator;
  layout.bytesAfterTerminator =
      layout.headerLength - std::min(layout.headerLength, at + (layout.terminated ? 1 : 0));
}

// Clipper and some others store texts longer than 255 bytes: the decimal count is then the high
// byte of the length. Such a table is known by lengths that add up only in this way.
void WidenLongTexts(TableLayout& layout) {
  const auto wide = [](const FieldLayout& field) {
    return field.length + (field.type == 'C' ? std::size_t{field.decimals} * 256 : 0);
  };
  std::size_t sum = 0;
  for (const FieldLayout& field : layout.fields) sum += wide(field);
  if (layout.SumOfFieldLengths() + 1 == layout.recordLength || sum + 1 != layout.recordLength) {
    return;
  }
  for (FieldLayout& field : layout.fields) {
    field.length = wide(field);
    if (field.type == 'C') field.decimals = 0;
  }
}

}  // namespace

std::size_t TableLayout::SumOfFieldLengths() const {
  std::size_t sum = 0;
  for (const FieldLayout& field : fields) sum += field.length;
  return sum;
}

std::string_view DescribeVersion(std::uint8_t version) {
  switch (version) {
    case 0x02:
      return "dBASE II";
    case 0x03:
      return "dBASE III or later, no memo";
    case 0x04:
      return "dBASE 7, no memo";
    case 0x05:
      return "dBASE 5, no memo";
    case 0x30:
      return "Visual FoxPro";
    case 0x31:
      return "Visual FoxPro with autoincrement";
    case 0x32:
      return "Visual FoxPro with Varchar or Varbinary";
    case 0x43:
    case 0x63:
    case 0xCB:
      return "dBASE IV SQL table";
    case 0x7B:
    case 0x8B:
      return "dBASE IV with memo";
    case 0x83:
      return "dBASE III with memo";
    case 0x8C:
      return "dBASE 7 with memo";
    case 0xE5:
      return "Clipper SIX with memo";
    case 0xF5:
      return "FoxPro 2 with memo";
    case 0xFB:
      return "FoxBASE";
    default:
      return "unknown";
  }
}

TableLayout ReadTableLayout(const std::wstring& path) {
  CBufferedFile file;
  file.Open(path, "rb", corvel::kFileShareRead, false);
  const std::string name = corvel::Utf8FromWide(path);
  const std::vector<unsigned char> header = ReadHeaderBytes(file, name);

  TableLayout layout;
  layout.version = header[0];
  // The low three bits of the version are the level; 4 is dBASE 7's.
  layout.level7 = (layout.version & 0x07U) == 0x04;
  layout.recordCount = LoadU32(&header[4]);
  layout.headerLength = LoadU16(&header[8]);
  layout.recordLength = LoadU16(&header[10]);
  layout.transactionByte = header[14];
  layout.encryptionByte = header[15];
  layout.languageByte = header[29];
  layout.fileLength = file.GetLength();
  RequireReadable(layout, header.size(), name);
  ReadFields(layout, header);
  WidenLongTexts(layout);
  std::size_t offset = 0;
  for (FieldLayout& field : layout.fields) {
    field.offset = offset;
    offset += field.length;
  }
  return layout;
}

}  // namespace trovan::filters
