// Builds the bytes of dBASE tables for tests, right ones and wrong ones.
//
//   const auto bytes = DbfImage().Field("NAME", 'C', 4).Record("Oslo").Record("Rome").Bytes();
//
// Whatever is not said is as a good program writes it: the header length, the record length and the
// record count follow from the fields and records, a terminator ends the descriptors and an
// end-of-file mark the records.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace trovan::test {

class DbfImage {
 public:
  // `name` may have up to 11 bytes, NUL bytes among them; `length` is one byte in the file.
  DbfImage& Field(std::string_view name, char type, unsigned length, unsigned decimals = 0) {
    std::string descriptor(name.substr(0, 11));
    descriptor.resize(32, '\0');
    descriptor[11] = type;
    descriptor[16] = static_cast<char>(length);
    descriptor[17] = static_cast<char>(decimals);
    descriptors_ += descriptor;
    fieldBytes_ += length & 0xFFU;
    return *this;
  }

  // The flags of the field that was added last, as Visual FoxPro writes them.
  DbfImage& Flags(std::uint8_t flags) {
    descriptors_[descriptors_.size() - 32 + 18] = static_cast<char>(flags);
    return *this;
  }

  // A live record. `text` is padded with blanks to the length of the fields, but never cut.
  DbfImage& Record(std::string_view text) { return RecordWithFlag(' ', text); }
  DbfImage& DeletedRecord(std::string_view text) { return RecordWithFlag('*', text); }
  DbfImage& RecordWithFlag(char flag, std::string_view text) {
    records_.push_back(flag + std::string(text));
    return *this;
  }

  DbfImage& Version(std::uint8_t byte) { return version_ = byte, *this; }
  DbfImage& Language(std::uint8_t byte) { return language_ = byte, *this; }

  // Fills what no reader needs (the date, the reserved bytes) with `byte`.
  DbfImage& ReservedBytes(std::uint8_t byte) { return reserved_ = byte, *this; }

  // What the header says, whatever is there.
  DbfImage& RecordCount(std::uint32_t count) { return recordCount_ = count, *this; }
  DbfImage& HeaderLength(std::uint16_t length) { return headerLength_ = length, *this; }
  DbfImage& RecordLength(std::uint16_t length) { return recordLength_ = length, *this; }

  DbfImage& WithoutTerminator() { return terminator_.clear(), *this; }
  DbfImage& WithoutEndMark() { return tail_.clear(), *this; }

  // Bytes of the header behind the terminator, such as the name of a database container.
  DbfImage& BackLink(std::string_view bytes) { return backLink_ = bytes, *this; }

  // What stands behind the last record, instead of the end-of-file mark.
  DbfImage& Tail(std::string_view bytes) { return tail_ = bytes, *this; }

  std::vector<unsigned char> Bytes() const {
    const std::string text = Text();
    return {text.begin(), text.end()};
  }

  // The same bytes as narrow text, as WriteBytes takes them.
  std::string Text() const {
    const std::string head = descriptors_ + terminator_ + backLink_;
    std::string bytes(32, static_cast<char>(reserved_));
    bytes[0] = static_cast<char>(version_);
    Store(bytes, 4, 4, recordCount_.value_or(static_cast<std::uint32_t>(records_.size())));
    Store(bytes, 8, 2, headerLength_.value_or(static_cast<std::uint16_t>(32 + head.size())));
    Store(bytes, 10, 2, recordLength_.value_or(static_cast<std::uint16_t>(1 + fieldBytes_)));
    bytes[29] = static_cast<char>(language_);
    bytes += head;
    for (std::string record : records_) {
      record.resize(std::max<std::size_t>(record.size(), 1 + fieldBytes_), ' ');
      bytes += record;
    }
    return bytes + tail_;
  }

  // Stores the `width` low bytes of `value`, the lowest first.
  static void Store(std::string& bytes, std::size_t at, std::size_t width, std::uint32_t value) {
    for (std::size_t i = 0; i < width; ++i) bytes[at + i] = static_cast<char>(value >> 8 * i);
  }

 private:
  std::uint8_t version_ = 0x03;
  std::uint8_t language_ = 0;
  std::uint8_t reserved_ = 0;
  std::optional<std::uint32_t> recordCount_;
  std::optional<std::uint16_t> headerLength_;
  std::optional<std::uint16_t> recordLength_;
  std::string descriptors_;
  std::string terminator_ = "\x0D";
  std::string backLink_;
  std::size_t fieldBytes_ = 0;
  std::vector<std::string> records_;
  std::string tail_ = "\x1A";
};

}  // namespace trovan::test
