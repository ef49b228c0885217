#include "MemoFile.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include <corvel/Exception.h>
#include <corvel/Text.h>

#include "filters/support/FilterError.h"
#include "filters/support/StoredNumbers.h"

namespace trovan::filters {
namespace {

constexpr std::uint32_t kFptBlockOfReader = 64;
constexpr std::uint32_t kDbtBlockOfReader = 512;
constexpr std::uint32_t kDBase3Block = 512;
constexpr std::size_t kBlockHeader = 8;
constexpr unsigned char kDBase4Mark[] = {0xFF, 0xFF, 0x08, 0x00};
constexpr std::uint32_t kFoxProText = 1;
constexpr char kEndMark = 0x1A;
constexpr std::size_t kPiece = std::size_t{64} * 1024;

// The longest text that CDBFReader delivers: see its EnumMemo.
constexpr std::uint64_t kReaderLimit = 65534;

// The smallest buffer for which EnumMemo allows `length` bytes: the swapped bytes of its size bound
// the text, so the low byte is made as large as can be.
std::size_t BufferFor(std::uint64_t length) {
  return static_cast<std::size_t>((length + 1) | 0xFF);
}

std::string Name(const SideFile& side) { return corvel::Utf8FromWide(side.path); }

std::optional<SideFile> FindMemoFile(const std::wstring& path) {
  auto fpt = FindSideFile(path, L".fpt");
  auto dbt = FindSideFile(path, L".dbt");
  // The reader takes small letters only: a ".dbt" that it finds comes before a ".FPT" that it
  // does not.
  const bool preferDbt = dbt && dbt->foundInSmallLetters && fpt && !fpt->foundInSmallLetters;
  return fpt && !preferDbt ? fpt : dbt;
}

bool IsFpt(const SideFile& side) {
  const wchar_t letter = side.path[side.path.size() - 3];
  return letter == L'f' || letter == L'F';
}

}  // namespace

std::string_view DescribeMemoKind(MemoKind kind) {
  switch (kind) {
    case MemoKind::kFoxPro:
      return "FoxPro";
    case MemoKind::kDBase3:
      return "dBASE III";
    case MemoKind::kDBase4:
      return "dBASE IV";
  }
  return "";
}

MemoFile::MemoFile(SideFile side, CDBFReader& reader) : side_(std::move(side)), reader_(reader) {
  file_.Open(side_.path, "rb", corvel::kFileShareRead, false);
  length_ = file_.GetLength();
}

std::unique_ptr<MemoFile> MemoFile::Open(const std::wstring& path, const TableLayout& layout,
                                         CDBFReader& reader) {
  auto side = FindMemoFile(path);
  if (!side) return nullptr;
  std::unique_ptr<MemoFile> memo(new MemoFile(std::move(*side), reader));
  if (IsFpt(memo->side_)) {
    memo->ReadFoxProHeader();
  } else {
    memo->ReadDBaseHeader(layout);
  }
  return memo;
}

void MemoFile::ReadFoxProHeader() {
  unsigned char header[kBlockHeader];
  if (file_.Read(header, sizeof header) < sizeof header) {
    throw FilterError(Name(side_) + " is no memo file: it has only " + std::to_string(length_) +
                      " bytes, its header has 512");
  }
  kind_ = MemoKind::kFoxPro;
  blockSize_ = LoadU16HighFirst(header + 6);
  readerBlockSize_ = kFptBlockOfReader;
  if (blockSize_ == 0) {
    throw FilterError(Name(side_) +
                      " is of no kind that can be read: its header states blocks of "
                      "0 bytes (bytes 6 and 7)");
  }
}

void MemoFile::ReadDBaseHeader(const TableLayout& layout) {
  constexpr std::size_t kBlockSizeAt = 20;
  unsigned char header[kBlockSizeAt + 2] = {};
  file_.Read(header, sizeof header);
  readerBlockSize_ = kDbtBlockOfReader;
  const std::uint32_t stated = LoadU16(header + kBlockSizeAt);
  // dBASE III writes no block size, and some of its versions leave old bytes in its place.
  marksDBase3_ = layout.version == 0x83 || stated == 0;
  kind_ = marksDBase3_ ? MemoKind::kDBase3 : MemoKind::kDBase4;
  blockSize_ = marksDBase3_ ? kDBase3Block : stated;
}

MemoExtent MemoFile::Find(std::uint64_t block) {
  const auto limit = static_cast<std::uint64_t>(length_);
  if (block > limit / blockSize_ || block * blockSize_ >= limit) {
    throw FilterError("block " + std::to_string(block) + " lies beyond the end of the memo file, " +
                      std::to_string(length_) + " bytes in blocks of " +
                      std::to_string(blockSize_));
  }
  const std::uint64_t start = block * blockSize_;
  const auto offset = static_cast<long long>(start);
  return kind_ == MemoKind::kFoxPro ? FindFoxPro(offset) : FindDBase(offset);
}

MemoExtent MemoFile::FindFoxPro(long long offset) {
  unsigned char header[kBlockHeader];
  file_.Seek(offset, corvel::kFileBegin);
  if (file_.Read(header, sizeof header) < sizeof header) {
    throw FilterError("the memo file ends inside the block header at byte " +
                      std::to_string(offset));
  }
  MemoExtent memo;
  memo.isText = LoadU32HighFirst(header) == kFoxProText;
  memo.offset = offset + static_cast<long long>(kBlockHeader);
  memo.promised = LoadU32HighFirst(header + 4);
  memo.length = std::min(memo.promised, static_cast<std::uint64_t>(length_ - memo.offset));
  return memo;
}

MemoExtent MemoFile::FindDBase(long long offset) {
  unsigned char header[kBlockHeader];
  file_.Seek(offset, corvel::kFileBegin);
  const std::size_t got = file_.Read(header, sizeof header);
  const bool marked = got == sizeof header && std::equal(kDBase4Mark, kDBase4Mark + 4, header);
  if (!marked) {
    if (marksDBase3_) return FindDBase3(offset);
    throw FilterError("no memo begins at byte " + std::to_string(offset) +
                      " of the memo file: the bytes FF FF 08 00 are not there");
  }
  const std::uint32_t stated = LoadU32(header + 4);  // counts the block header
  MemoExtent memo;
  memo.offset = offset + static_cast<long long>(kBlockHeader);
  memo.promised = stated > kBlockHeader ? stated - kBlockHeader : 0;
  memo.length = std::min(memo.promised, static_cast<std::uint64_t>(length_ - memo.offset));
  return memo;
}

// A text without a block header: it runs to two end marks, or to the end of the file.
MemoExtent MemoFile::FindDBase3(long long offset) {
  MemoExtent memo;
  memo.offset = offset;
  buffer_.resize(kPiece);
  file_.Seek(offset, corvel::kFileBegin);
  bool afterMark = false;
  for (;;) {
    const std::size_t got = file_.Read(buffer_.data(), buffer_.size());
    for (std::size_t i = 0; i < got; ++i) {
      const bool mark = buffer_[i] == kEndMark;
      if (mark && afterMark) {
        memo.promised = --memo.length;
        return memo;
      }
      afterMark = mark;
      ++memo.length;
    }
    if (got < buffer_.size()) break;
  }
  // The last text of a file may end at a single mark.
  if (afterMark) --memo.length;
  memo.promised = memo.length;
  return memo;
}

std::size_t MemoFile::Read(const MemoExtent& memo, std::uint64_t from, char* buffer,
                           std::size_t count) {
  if (from >= memo.length) return 0;
  file_.Seek(memo.offset + static_cast<long long>(from), corvel::kFileBegin);
  const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(count, memo.length - from));
  return file_.Read(buffer, wanted);
}

void MemoFile::ReadWhole(std::uint64_t block, const MemoExtent& memo, std::string& bytes) {
  if (ReadThroughReader(block, memo, bytes)) return;
  bytes.resize(static_cast<std::size_t>(memo.length));
  if (!bytes.empty()) bytes.resize(Read(memo, 0, bytes.data(), bytes.size()));
}

// Reads a memo with CDBFReader, whose blocks have a fixed size: a larger block is a multiple of it.
// False when the memo is one that the reader cannot deliver whole: it holds a NUL byte, is too
// long, begins between the reader's blocks or beyond its reach, or has no block header.
bool MemoFile::ReadThroughReader(std::uint64_t block, const MemoExtent& memo, std::string& bytes) {
  if (!side_.foundInSmallLetters || memo.length > kReaderLimit) return false;
  const std::uint64_t start = block * blockSize_;
  if (static_cast<std::uint64_t>(memo.offset) != start + kBlockHeader) return false;
  if (start % readerBlockSize_ != 0) return false;
  if (start + kBlockHeader + kReaderLimit > std::numeric_limits<std::int32_t>::max()) return false;
  buffer_.resize(std::max(buffer_.size(), BufferFor(memo.length)));
  const auto error =
      reader_.EnumMemo(static_cast<unsigned>(start / readerBlockSize_), buffer_.data(),
                       static_cast<unsigned>(BufferFor(memo.length)));
  if (error != CDBFReader::DBF_OK) return false;
  const auto length = static_cast<std::size_t>(memo.length);
  if (std::memchr(buffer_.data(), '\0', length) != nullptr) return false;
  bytes.assign(buffer_.data(), length);
  return true;
}

std::unique_ptr<MemoFile> OpenMemos(const std::wstring& path, const TableLayout& layout,
                                    const ColumnPlan& plan, CDBFReader& reader,
                                    Problems& problems) {
  if (!plan.HasMemos() || layout.recordCount == 0) return nullptr;
  try {
    return MemoFile::Open(path, layout, reader);
  } catch (const FilterError& error) {
    problems.Add(error.what());
  } catch (const corvel::Exception& error) {
    problems.Add(error.Message());
  }
  return nullptr;
}

}  // namespace trovan::filters
