// The vocabulary of the table reader's tests.
#pragma once

#include <cstring>
#include <filesystem>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <trovan/DBFReader.h>

#include "support/DbfImage.h"
#include "support/TempFolder.h"

namespace trovan::test {

// What a buffer holds where nothing was written.
inline constexpr char kUntouched = '\xEE';

// Bytes on the heap, as many as given and no more: the address sanitizer sees a read behind them.
inline std::vector<unsigned char> ToBytes(std::string_view text) {
  return {text.begin(), text.end()};
}

inline std::string StatusText(CDBFReader::DBFError status) {
  return "<status " + std::to_string(static_cast<int>(status)) + ">";
}

// A reader, a folder for its files, and results as text.
class DBFReaderTest : public testing::Test {
 protected:
  // Writes the table to a file, without memo files beside it, and opens that.
  CDBFReader::DBFError OpenFile(const std::string& table) {
    WriteBytes(folder_.Path() / "table.dbf", table);
    return reader_.OpenFromFile(folder_.File(L"table.dbf"));
  }

  // Keeps a copy of the table and opens that.
  CDBFReader::DBFError OpenMemory(const std::string& table) {
    reader_.Close();
    memory_ = ToBytes(table);
    return reader_.OpenFromMemory(memory_.data(), static_cast<unsigned>(memory_.size()));
  }

  // The RecordSize() bytes that the reader makes of a record, or what it answers instead.
  std::string Record(unsigned index) {
    std::string buffer(reader_.RecordSize(), kUntouched);
    char none = kUntouched;
    char* to = buffer.empty() ? &none : buffer.data();
    const auto status = reader_.EnumRecord(index, to, reader_.RecordSize());
    EXPECT_EQ(none, kUntouched);
    return status == CDBFReader::DBF_OK ? buffer : StatusText(status);
  }

  // The whole buffer that the reader fills with a memo, or what it answers instead.
  std::string MemoBuffer(unsigned block, unsigned size) {
    std::string buffer(size, kUntouched);
    const auto status = reader_.EnumMemo(block, buffer.data(), size);
    return status == CDBFReader::DBF_OK ? buffer : StatusText(status);
  }

  // The text of a memo up to its NUL, or what the reader answers instead.
  std::string Memo(unsigned block, unsigned size) { return MemoBuffer(block, size).c_str(); }

  DBF_FIELDINFO Field(unsigned index) {
    DBF_FIELDINFO info{};
    EXPECT_EQ(reader_.EnumFieldInfo(index, &info), CDBFReader::DBF_OK) << "field " << index;
    return info;
  }

  std::vector<std::string> FieldNames() {
    std::vector<std::string> names;
    for (unsigned i = 0; i < reader_.CountFields(); ++i) names.emplace_back(Field(i).name);
    return names;
  }

  void ExpectNothingOpen() {
    EXPECT_FALSE(reader_.IsOpen());
    EXPECT_EQ(reader_.CountFields(), 0U);
    EXPECT_EQ(reader_.CountRecords(), 0U);
    EXPECT_EQ(reader_.RecordSize(), 0U);
  }

  TempFolder folder_;
  std::vector<unsigned char> memory_;
  CDBFReader reader_;
};

enum class Source { kMemory, kFile };

inline void PrintTo(Source source, std::ostream* out) {
  *out << (source == Source::kMemory ? "Memory" : "File");
}

// The same test over a table in memory and a table in a file.
class DBFReaderSourceTest : public DBFReaderTest, public testing::WithParamInterface<Source> {
 protected:
  CDBFReader::DBFError TryOpen(const DbfImage& image) {
    return GetParam() == Source::kMemory ? OpenMemory(image.Text()) : OpenFile(image.Text());
  }
  void Open(const DbfImage& image) { ASSERT_EQ(TryOpen(image), CDBFReader::DBF_OK); }
};

inline auto BothSources() { return testing::Values(Source::kMemory, Source::kFile); }

inline std::string SourceName(const testing::TestParamInfo<Source>& info) {
  return testing::PrintToString(info.param);
}

}  // namespace trovan::test
