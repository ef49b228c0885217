// What the table reader must answer, worked out as slowly and literally as can be: no buffers, no
// positions, whole numbers of 64 bits that are wrapped by division. The reader is compared with it.
#pragma once

#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include <trovan/DBFReader.h>

namespace trovan::test {

// Whether a table of `size` bytes with this header of 32 bytes is plausible. `exactExtent` is the
// way of files, where the end of the records is not wrapped.
bool ModelIsPlausible(const std::string& header, std::int64_t size, bool exactExtent);

// What CheckDBFFile says about a file that has the right extension.
int ModelCheck(const std::string& file);

class DBFReaderModel {
 public:
  struct Answer {
    CDBFReader::DBFError status;
    std::string bytes;  // what the reader writes to the front of the buffer
  };
  struct Field {
    std::string name;  // 12 bytes
    char type;
    unsigned length;
  };
  struct Memo {
    std::string bytes;
    std::int64_t blockSize;
  };

  static DBFReaderModel Memory(const std::string& table);
  static DBFReaderModel File(const std::string& table, const std::optional<Memo>& memo);

  CDBFReader::DBFError OpenStatus() const { return openStatus_; }
  bool IsOpen() const { return isOpen_; }
  const std::vector<Field>& Fields() const { return fields_; }
  std::int64_t CountRecords() const { return recordCount_; }
  std::int64_t RecordSize() const { return recordLength_; }

  // Nothing where no header was read: the reader then keeps what it had.
  std::optional<int> LangID() const { return langID_; }

  std::int64_t FieldOffset(std::int64_t index) const;
  Answer Record(std::int64_t index, std::int64_t size) const;
  Answer MemoText(std::int64_t block, std::int64_t size) const;

 private:
  DBFReaderModel() = default;
  CDBFReader::DBFError ReadHeader();

  std::string table_;
  std::optional<Memo> memo_;
  CDBFReader::DBFError openStatus_ = CDBFReader::DBF_OK;
  bool isOpen_ = false;
  std::vector<Field> fields_;
  std::int64_t recordCount_ = 0;
  std::int64_t headerLength_ = 0;
  std::int64_t recordLength_ = 0;
  std::optional<int> langID_;
};

// Asks the open or closed `reader` everything that can be asked, at places where answers change and
// at random. Returns the first answer that is not the model's, in words; empty where there is none.
std::string Disagreement(CDBFReader& reader, const DBFReaderModel& model, std::mt19937& random);

}  // namespace trovan::test
