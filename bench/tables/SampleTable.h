// A table as mapping programs meet them: places of the world with names, codes, numbers, a date and
// a logical value. The same arguments always give the same bytes.
#pragma once

#include <cstdint>
#include <filesystem>

namespace trovan::bench {

enum class SampleMemos {
  kNone,
  // A memo of about 2 KiB in each record, and one of 64 MiB in the first one: in a ".fpt" file
  // beside the table.
  kWithMemos,
};

// Bytes of a record without memos, the deletion flag included: 12 fields. Real attribute tables
// have some ten fields and one to two hundred bytes.
inline constexpr std::uint32_t kSampleRecordLength = 150;

// Writes the table to `path`, which ends in ".dbf". An existing file is replaced. Texts are in
// Windows page 1252; one name in four has letters beyond ASCII; one value in thirty is blank.
//
// Raises std::ios_base::failure when the files cannot be written.
void WriteSampleTable(const std::filesystem::path& path, std::uint32_t records, SampleMemos memos);

}  // namespace trovan::bench
