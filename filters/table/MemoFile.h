// The memo file beside a table: finds each memo and delivers its bytes, complete and without
// padding. The layouts of the kinds are in docs/formats/memo.md.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <corvel/BufferedFile.h>
#include <trovan/DBFReader.h>

#include "filters/support/Problems.h"
#include "filters/table/ColumnPlan.h"
#include "filters/table/SideFiles.h"
#include "filters/table/TableLayout.h"

namespace trovan::filters {

enum class MemoKind {
  kFoxPro,  // .fpt: blocks with a type and a length, high byte first
  kDBase3,  // .dbt: blocks of 512 bytes, a text ends at two bytes 1A
  kDBase4,  // .dbt: blocks that begin with FF FF 08 00 and a length
};

std::string_view DescribeMemoKind(MemoKind kind);

// Where the bytes of one memo lie.
struct MemoExtent {
  long long offset = 0;
  std::uint64_t length = 0;
  std::uint64_t promised = 0;  // what the block states; more than `length` when the file is cut off
  bool isText = true;          // FoxPro tells pictures apart
};

class MemoFile {
 public:
  // Opens the memo file that belongs to the table at `path`: the ".fpt", else the ".dbt". Null when
  // there is none.
  //
  // `reader` has the table open and outlives the result: where its block size fits, memos are read
  // through it.
  //
  // Raises FilterError when the file is of a kind that cannot be read.
  static std::unique_ptr<MemoFile> Open(const std::wstring& path, const TableLayout& layout,
                                        CDBFReader& reader);

  const SideFile& File() const { return side_; }
  MemoKind Kind() const { return kind_; }
  std::uint32_t BlockSize() const { return blockSize_; }

  // Finds the memo that begins at `block`. Raises FilterError when no memo begins there.
  MemoExtent Find(std::uint64_t block);

  // Reads `count` bytes of a memo from its byte `from` on. Returns how many there were.
  std::size_t Read(const MemoExtent& memo, std::uint64_t from, char* buffer, std::size_t count);

  // A whole memo of moderate size.
  //
  // REQUIRES: the memo fits into memory; see kLargestWholeMemo.
  void ReadWhole(std::uint64_t block, const MemoExtent& memo, std::string& bytes);

 private:
  MemoFile(SideFile side, CDBFReader& reader);

  void ReadFoxProHeader();
  void ReadDBaseHeader(const TableLayout& layout);
  MemoExtent FindFoxPro(long long offset);
  MemoExtent FindDBase(long long offset);
  MemoExtent FindDBase3(long long offset);
  bool ReadThroughReader(std::uint64_t block, const MemoExtent& memo, std::string& bytes);

  SideFile side_;
  CDBFReader& reader_;
  corvel::CBufferedFile file_;
  MemoKind kind_ = MemoKind::kFoxPro;
  bool marksDBase3_ = false;  // nothing in the file contradicts texts without a block header
  std::uint32_t blockSize_ = 0;
  std::uint32_t readerBlockSize_ = 0;
  long long length_ = 0;
  std::vector<char> buffer_;
};

// Opens the memo file as above, unless the table has no records or the plan no memos. A file that
// cannot be opened or read is a problem, and no memo file.
std::unique_ptr<MemoFile> OpenMemos(const std::wstring& path, const TableLayout& layout,
                                    const ColumnPlan& plan, CDBFReader& reader, Problems& problems);

// Memos up to this size are read at once; larger ones in pieces, so that memory stays constant.
inline constexpr std::uint64_t kLargestWholeMemo = std::uint64_t{256} * 1024;

}  // namespace trovan::filters
