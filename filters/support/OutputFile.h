// A file that appears under its name only when it is whole.
#pragma once

#include <functional>
#include <string>

#include <corvel/BufferedFile.h>

namespace trovan::filters {

// Written under a short temporary name (".trovan-<number>.part") in the same folder. Commit gives
// it its name and replaces a file that had it before; without Commit it is removed again. Where the
// name is a symbolic link, the file that it leads to is replaced, and the link stays.
class OutputFile {
 public:
  // Raises FilterError when the file cannot be made, or its name is taken by what is no file.
  explicit OutputFile(const std::wstring& path);
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  // For writing and reading back.
  corvel::CBufferedFile& File() { return file_; }

  // Calls `fill` to write the file. What it raises comes through, but for failures of this file (a
  // full disk, say): those are raised as FilterError with the name that the user knows.
  void Fill(const std::function<void(corvel::CBufferedFile&)>& fill);

  // Closes the file and gives it its name. Raises FilterError when what still rests cannot be
  // written, or the name cannot be given; the file is then removed with this object.
  void Commit();

 private:
  friend void CommitTogether(OutputFile& first, OutputFile& second);

  void Try(const std::wstring& name, const std::function<void()>& work) const;
  void Close();
  void Rename();

  std::wstring path_;    // as the user knows it
  std::wstring target_;  // what gets replaced: path_, or where it leads as a link
  corvel::CBufferedFile file_;
  std::wstring temporary_;  // empty when it is no more
};

// Commits both files, or none: where the second cannot have its name, the file that the first one
// replaced comes back. Raises as Commit does.
void CommitTogether(OutputFile& first, OutputFile& second);

}  // namespace trovan::filters
