// One open file of the operating system, without a buffer. The only place of the library that makes
// the system's file calls; another system needs another SystemFile.cpp.
#pragma once

#include <cstddef>
#include <string>
#include <system_error>

#include <corvel/BufferedFile.h>

namespace corvel {

// What a mode string asks for.
struct FileMode {
  bool read = false;
  bool write = false;
  bool create = false;     // makes the file if there is none
  bool truncate = false;   // empties the file if there is one
  bool atEnd = false;      // starts at the end
  bool mustBeNew = false;  // refuses a file that exists
};

class SystemFile {
 public:
  SystemFile() = default;
  ~SystemFile();
  SystemFile(const SystemFile&) = delete;
  SystemFile& operator=(const SystemFile&) = delete;

  // A folder is refused. Leaves the object closed on failure.
  //
  // REQUIRES: the object is closed.
  std::error_code Open(const std::wstring& path, const FileMode& mode, FileSharing sharing);

  // Closes, whatever it returns. The error may be that of an earlier write which the system
  // delayed.
  std::error_code Close();

  // Pipes and terminals have no positions: offsets are ignored there.
  bool HasPositions() const { return hasPositions_; }

  // Reads at least one byte, or 0 at the end of the file, or sets `error`.
  std::size_t ReadSome(long long offset, void* buffer, std::size_t count, std::error_code& error);

  // Writes all, or sets `error` and returns how many bytes were written before it.
  std::size_t Write(long long offset, const void* bytes, std::size_t count, std::error_code& error);

  long long Length(std::error_code& error) const;

 private:
  int descriptor_ = -1;
  bool hasPositions_ = false;
};

}  // namespace corvel
