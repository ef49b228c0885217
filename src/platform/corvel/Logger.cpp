#include <corvel/Logger.h>

#include <cstdarg>
#include <utility>

#include <spdlog/logger.h>
#include <spdlog/sinks/stdout_sinks.h>

#include <corvel/Text.h>

namespace corvel {

// The sink of messages that the application does not take itself.
struct Logger::StandardError {
  spdlog::logger logger{"corvel", std::make_shared<spdlog::sinks::stderr_sink_mt>()};

  StandardError() {
    logger.set_pattern("%l: %v");
    logger.set_level(spdlog::level::warn);
  }

  void Write(int level, const std::wstring& message) {
    const auto severity = level <= kLogError     ? spdlog::level::err
                          : level == kLogWarning ? spdlog::level::warn
                          : level == kLogInfo    ? spdlog::level::info
                                                 : spdlog::level::debug;
    logger.log(severity, spdlog::string_view_t(Utf8FromWide(message)));
  }
};

Logger::Logger() : standardError_(std::make_unique<StandardError>()) {}
Logger::~Logger() = default;

void Logger::operator()(int level, const wchar_t* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  std::wstring message;
  const bool formatted = FormatStringV(message, format, arguments);
  va_end(arguments);
  if (!formatted) message = format == nullptr ? L"(no message)" : format;
  if (sink_) {
    sink_(level, message);
  } else {
    standardError_->Write(level, message);
  }
}

void Logger::SetSink(Sink sink) { sink_ = std::move(sink); }

Logger g_Logger;

}  // namespace corvel
