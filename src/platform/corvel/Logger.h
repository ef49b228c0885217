// The log of all the libraries.
//
//   g_Logger(kLogWarning, L"Skipped %d of %d records of %s", skipped, total, path.c_str());
#pragma once

#include <functional>
#include <memory>
#include <string>

#include <corvel/Export.h>

namespace corvel {

// Levels of a log message.
inline constexpr int kLogError = 0;
inline constexpr int kLogWarning = 1;
inline constexpr int kLogInfo = 2;
inline constexpr int kLogDebug = 3;

class CORVEL_API Logger {
 public:
  // Takes a message with its level. What it raises reaches whoever logged.
  using Sink = std::function<void(int level, const std::wstring& message)>;

  Logger();
  ~Logger();
  Logger(const Logger&) = delete;
  Logger& operator=(const Logger&) = delete;

  // Formats by the rules of FormatString (so that %s is a wide string everywhere) and hands the
  // text to the sink. A format that cannot be formatted is logged as it stands.
  void operator()(int level, const wchar_t* format, ...);

  // Sends messages of every level to `sink` instead. Without one (an empty function) errors and
  // warnings go to standard error in UTF-8 and all else is dropped.
  //
  // Not to be called while another thread logs.
  void SetSink(Sink sink);

 private:
  struct StandardError;

  Sink sink_;
  std::unique_ptr<StandardError> standardError_;
};

extern CORVEL_API Logger g_Logger;

}  // namespace corvel
