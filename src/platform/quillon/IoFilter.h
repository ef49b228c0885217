// What import and export filters have in common: which files they are for, their options, and how
// they report faults.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include <quillon/Export.h>
#include <quillon/IoPropertyPage.h>

namespace quillon {

// A fault of the program itself: something is as it never should be.
class QUILLON_API InternalError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
  ~InternalError() override;
};

// The user has stopped the work.
class QUILLON_API AbortError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
  ~AbortError() override;
};

// The order of the virtual operations is fixed.
class QUILLON_API IoFilter {
 public:
  IoFilter(const IoFilter&) = delete;
  IoFilter& operator=(const IoFilter&) = delete;
  virtual ~IoFilter();

  // What a user chooses the filter by: L"Scalable Vector Graphics".
  virtual std::wstring GetFilterName() const = 0;

  // Appends the pages on which the user can set options for the file at `path`. The pages belong to
  // the filter. Here: none.
  virtual void GetPropertyPages(std::vector<IoPropertyPage*>& pages, const std::wstring& path);

  // Options as one text, the form in which an application stores them or a user types them: the
  // options of the filter between its delimiter. Here: a filter without options, which ignores what
  // it is given.
  virtual void SetOptionsFromString(const std::wstring& options);
  virtual std::wstring GetOptionsInStringForm();

  // What stands between two options. Here: a semicolon.
  virtual wchar_t GetOptionStringDelimiter();

  // Of the files that it is for, with their points: L".svg".
  virtual std::vector<std::wstring> GetFileExtensions() const = 0;

  // Whether the file looks like one that the filter reads.
  virtual bool CanImport(const std::wstring& path) const = 0;

  // Raise InternalError and AbortError, with a text that names the place. `file` is the base name
  // of the source file without extension.
  [[noreturn]] static void Throw_ERR_INTERNAL(const char* file, int line);
  [[noreturn]] static void Throw_ABORT(const char* file, int line);

 protected:
  IoFilter() = default;
};

}  // namespace quillon
