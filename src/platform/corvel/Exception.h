// The error that every library raises for a fault of the caller or of the installation. Bad data is
// never raised: it is reported as a status.
#pragma once

#include <stdexcept>
#include <string>

#include <corvel/Export.h>

namespace corvel {

// An error with the place that raised it. Its what() reads "module::file(line): message".
//
//   throw Exception("Trovan", "DBFReader", 746, "Internal error", false);
//   // what(): "Trovan::DBFReader(746): Internal error"
class CORVEL_API Exception : public std::runtime_error {
 public:
  // `file` is the base name of the source file without extension. `reported` says that the user
  // has been told already, so that whoever catches it need not tell again. All text is UTF-8.
  Exception(std::string module, std::string file, int line, std::string message, bool reported);

  Exception(const Exception&) = default;
  Exception& operator=(const Exception&) = default;
  // Not inline: the class's type record then lives in corvel, and not in whoever raises or catches.
  ~Exception() override;

  const std::string& Module() const { return module_; }
  const std::string& File() const { return file_; }
  int Line() const { return line_; }
  const std::string& Message() const { return message_; }
  bool Reported() const { return reported_; }

 private:
  std::string module_;
  std::string file_;
  int line_;
  std::string message_;
  bool reported_;
};

// Raises an Exception that says "Bad parameter": an argument is outside its range.
[[noreturn]] CORVEL_API void Throw_ERR_CORVEL_BAD_PARAMETER(const char* module, const char* file,
                                                            int line);

// Raises an Exception that says "Internal error": the program or its installation is broken.
[[noreturn]] CORVEL_API void ThrowInternalError(const char* module, const char* file, int line);

// Writes the exception that is being handled to the logger as a warning, with the function, the
// file and the line that caught it. Never raises: what the logger raises is dropped.
//
// REQUIRES: called from inside a catch clause; elsewhere it logs that there is no exception.
CORVEL_API void LogExceptionInfo(const wchar_t* where, const wchar_t* file, int line) noexcept;

}  // namespace corvel
