// Names of files and what the system tells of them. A path is wide text on every system; off
// Windows the system gets it as UTF-8, whatever the locale. A name on disk that is not UTF-8 can be
// given too: see PathFromSystem.
#pragma once

#include <string>
#include <string_view>

#include <corvel/Export.h>

namespace corvel {

// A path and its extension: what follows the last point of the last part, the point included.
//
//   CPath path(L"data/towns.DBF");
//   path.GetExtension();        // ".DBF"
//   path.SetExtension(L".cpg");
//   path.GetPath();             // "data/towns.cpg"
//
// A file named just ".dbf" has the extension ".dbf"; "." and ".." have none. Parts are separated by
// a slash, on Windows also by a backslash or the colon of a drive.
class CORVEL_API CPath {
 public:
  explicit CPath(const std::wstring& path) : path_(path) {}

  const std::wstring& GetPath() const { return path_; }

  // With its point; empty when there is none.
  std::wstring GetExtension() const;

  // Replaces the extension, or appends it where there is none. `extension` brings its point; an
  // empty one takes the extension away.
  void SetExtension(const std::wstring& extension);

  // The absolute form: the working folder is put before a relative path. Nothing is resolved, so
  // ".." and symbolic links stay. The path itself when the working folder cannot be told.
  std::wstring GetFullPath() const;

  // `path` with its extension replaced as by SetExtension. A null pointer counts as empty text.
  static std::wstring ChangeExtension(const wchar_t* path, const wchar_t* extension);

  // The folder for temporary files: on Windows the system's, elsewhere the one that TMPDIR names,
  // or /tmp. With `mustExist`, empty unless that is a folder.
  static std::wstring GetTempPath(bool mustExist);

 private:
  std::wstring path_;
};

// Whether `path` names a file. A folder is not a file.
CORVEL_API bool FileExists(const std::wstring& path);

// Deletes a file. False if there is none, or if the system refuses.
CORVEL_API bool RemoveFile(const std::wstring& path);

// Each character in lower case by Unicode's simple mapping, without regard to the locale.
CORVEL_API std::wstring ToLower(const std::wstring& text);

// A path as the system gives it (a program's argument, a folder entry), and back. Off Windows these
// are bytes; those that are no UTF-8 survive the way there and back.
CORVEL_API std::wstring PathFromSystem(std::string_view bytes);
CORVEL_API std::string PathToSystem(std::wstring_view path);

}  // namespace corvel
