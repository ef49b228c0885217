// The true layout of a dBASE table: every field that the header describes and no other.
//
// CDBFReader counts fields by the header's length alone, which is one too few for a header without
// terminator and several too many for one with a back link. A person wants to see the columns that
// are there, so this reads the descriptors up to their terminator, in the layout of their level.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace trovan::filters {

struct FieldLayout {
  std::string name;  // raw bytes in the table's code page, without the NUL padding
  char type = 0;
  std::size_t length = 0;  // bytes in each record
  unsigned decimals = 0;
  unsigned flags = 0;      // Visual FoxPro's: kSystemField, ...; 0 in tables of other programs
  std::size_t offset = 0;  // from the byte behind the record's deletion flag
};

// Flags of Visual FoxPro's descriptors (Microsoft, "Table File Structure").
inline constexpr unsigned kSystemField = 0x01;
inline constexpr unsigned kNullableField = 0x02;
inline constexpr unsigned kBinaryField = 0x04;

struct TableLayout {
  std::uint8_t version = 0;
  bool level7 = false;  // descriptors of 48 bytes, numbers with the high byte first
  std::uint32_t recordCount = 0;
  std::size_t headerLength = 0;
  std::size_t recordLength = 0;  // deletion flag included
  std::uint8_t languageByte = 0;
  std::uint8_t transactionByte = 0;  // not 0: a transaction was not finished
  std::uint8_t encryptionByte = 0;   // not 0: the records are encrypted
  std::vector<FieldLayout> fields;
  bool terminated = false;               // a terminator byte follows the descriptors
  std::size_t bytesAfterTerminator = 0;  // up to the header length
  long long fileLength = 0;

  bool IsVisualFoxPro() const { return version >= 0x30 && version <= 0x32; }

  // Bytes of the fields of a record, its deletion flag left out.
  std::size_t DataLength() const { return recordLength - 1; }

  // Where a record begins, its deletion flag first. Never wraps.
  long long RecordOffset(std::uint32_t index) const {
    return static_cast<long long>(headerLength) +
           static_cast<long long>(index) * static_cast<long long>(recordLength);
  }

  // Bytes that the fields take, by their descriptors.
  std::size_t SumOfFieldLengths() const;
};

// What the version byte says of the program that wrote the table.
std::string_view DescribeVersion(std::uint8_t version);

// Reads the header of the table at `path`.
//
// Raises FilterError when the file is no table that can be read, dBASE II tables among them, and
// corvel::Exception when the system refuses.
TableLayout ReadTableLayout(const std::wstring& path);

}  // namespace trovan::filters
