// Reads dBASE attribute tables: the table itself, from a file or from memory, and the texts of its
// memo fields from the memo file beside it. The layout of the files is in docs/formats/dbf.md.
//
//   CDBFReader reader;
//   if (reader.OpenFromFile(L"towns.dbf") != CDBFReader::DBF_OK) ...
//   std::vector<char> record(reader.RecordSize());
//   for (unsigned i = 0; i < reader.CountRecords(); ++i) {
//     reader.EnumRecord(i, record.data(), reader.RecordSize());
//     // Field f is the info.length bytes from record[reader.EnumFieldOffset(f)] on.
//   }
//
// Texts are delivered as the bytes of the file; CodePageForDBFTranslation tells how to read them.
// Bad data never raises: every operation answers with a status.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <corvel/BufferedFile.h>
#include <trovan/Export.h>

namespace trovan {

// One field of a table.
struct DBF_FIELDINFO {
  char name[12];         // the first 10 bytes of the descriptor's name, raw, then NUL bytes
  char type;             // 'C', 'N', 'D', 'L', 'M', ... as stored
  std::uint32_t length;  // bytes of the field in each record
};

// Random access to the records and memos of one table at a time. Reads only; one thread at a time.
//
// Deliberate, and kept for the filters that rely on it:
// - The number of fields follows from the header length alone, not from the terminator. A header
//   without room for the terminator loses its last field; further bytes in the header (the 263-byte
//   back link of some programs) come out as fields.
// - A record is delivered from behind its deletion flag, and ends with the deletion flag of the
//   record behind it. Deleted records are delivered like others.
// - Offsets are formed in 32 bits: records and memos that lie beyond 2 GiB are out of reach.
class TROVAN_API CDBFReader {
 public:
  enum DBFError {
    DBF_OK = 0,
    DBF_ERR_OPEN = 1,      // the table file cannot be opened
    DBF_ERR_READ = 2,      // the data ends too early, or lies out of reach
    DBF_ERR_PARAM = 3,     // an argument is outside its range
    DBF_ERR_FORMAT = 4,    // a block of memory does not look like a table
    DBF_ERR_NOT_OPEN = 5,  // no table is open; for memos: no memo file
  };

  CDBFReader();
  ~CDBFReader();

  CDBFReader(const CDBFReader&) = delete;
  CDBFReader& operator=(const CDBFReader&) = delete;

  // Opens a table and, beside it, its memo file: the one with the extension ".fpt", else ".dbt",
  // in small letters. A table without a memo file opens all the same.
  //
  // DBF_ERR_PARAM: the extension is not ".dbf" (in any case of letters); what was open stays open.
  // DBF_ERR_READ: the header is cut off; the source stays open until Close.
  DBFError OpenFromFile(const std::wstring& path);

  // Opens a table that lies in memory. The bytes are not copied and must outlive the use of the
  // reader. There are no memos in this mode.
  //
  // DBF_ERR_PARAM: `data` is null or shorter than 32 bytes; what was open stays open.
  // DBF_ERR_FORMAT: the bytes fail IsDBFData; the reader is closed.
  DBFError OpenFromMemory(const unsigned char* data, unsigned int size);

  // Closes both files and forgets the memory. LangID keeps its value until the next header is read.
  void Close();

  bool IsOpen() const;

  unsigned int CountFields() const;

  // What the header says: not checked against the size of the file.
  unsigned int CountRecords() const;

  // Bytes of a record in the file, its deletion flag included.
  unsigned int RecordSize() const;

  // The language driver byte of the header.
  unsigned char LangID() const;

  // Copies the description of field `index`, counted from 0.
  DBFError EnumFieldInfo(unsigned int index, DBF_FIELDINFO* info);

  // Where field `index` begins in the buffer that EnumRecord fills. 0 for an index out of range or
  // when no table is open, which is also where field 0 begins.
  unsigned int EnumFieldOffset(unsigned int index);

  // Fills `buffer` with record `index`, counted from 0: RecordSize() - 1 bytes of fields and one
  // byte of what follows. Only the last record may lack bytes at its end.
  //
  // DBF_ERR_PARAM: `index` is not below CountRecords(), `buffer` is null, or `size` is below
  // RecordSize().
  DBFError EnumRecord(unsigned int index, void* buffer, unsigned int size);

  // Fills `buffer` with the text of the memo that begins at `block`, and a NUL. Blocks have 64
  // bytes in a ".fpt" file and 512 in a ".dbt" file, whatever the file says.
  //
  // Deliberate: the text ends at a NUL byte, at the end of the file, at `size` - 1 bytes, or at as
  // many bytes as the low 16 bits of `size` give with their two bytes swapped, whichever comes
  // first. A `size` of 255 thus allows all 254 bytes, 256 but one, 65535 all 65534. The length that
  // the memo file states is not read.
  //
  // DBF_ERR_PARAM: `buffer` is null or `size` is 0.
  DBFError EnumMemo(unsigned int block, void* buffer, unsigned int size);

  // A quick look at a file: 1 a plausible table, 0 an empty file, -1 anything else.
  static int CheckDBFFile(const std::wstring& path);

  // Whether a whole table in memory is plausible: its record length lies in 2 to 16384, its header
  // has 64 bytes or more, and at most 512 bytes follow the last record.
  //
  // REQUIRES: at least 32 bytes are readable.
  static bool IsDBFData(const void* data, unsigned int size);

 private:
  int Read(void* buffer, int count);
  int Seek(int offset);
  int Tell();
  DBFError ReadHeader();
  void ForgetTable();
  bool SeekMemo(std::uint32_t offset);

  corvel::CBufferedFile table_;
  corvel::CBufferedFile memo_;
  const unsigned char* data_ = nullptr;  // the caller's; null when a file is read
  std::uint32_t dataSize_ = 0;
  std::uint32_t dataPosition_ = 0;
  bool memoIsFpt_ = false;
  std::uint32_t recordCount_ = 0;
  std::uint32_t headerLength_ = 0;
  std::uint32_t recordLength_ = 0;
  unsigned char langID_ = 0;
  std::vector<DBF_FIELDINFO> fields_;
};

}  // namespace trovan
