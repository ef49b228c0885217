// A file that appears under its name only when it is whole.
#pragma once

#include <cstddef>
#include <string>

#include <corvel/BufferedFile.h>

namespace trovan::filters {

// Written under a temporary name in the same folder. Commit gives it its name and replaces a file
// that had it before; without Commit it is removed again.
class OutputFile {
 public:
  // Raises corvel::Exception when the file cannot be made.
  explicit OutputFile(const std::wstring& path);
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  // For writing and reading back.
  corvel::CBufferedFile& File() { return file_; }

  // Closes the file and gives it its name. Raises corvel::Exception, or FilterError when the name
  // cannot be given; the file is then removed with this object.
  void Commit();

 private:
  std::wstring path_;
  corvel::CBufferedFile file_;  // before the name under which it is opened
  std::wstring temporary_;
};

}  // namespace trovan::filters
