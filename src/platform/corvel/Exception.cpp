#include <corvel/Exception.h>

#include <utility>

#include <corvel/Logger.h>
#include <corvel/Text.h>

namespace corvel {
namespace {

std::string Describe(const std::string& module, const std::string& file, int line,
                     const std::string& message) {
  return module + "::" + file + "(" + std::to_string(line) + "): " + message;
}

// The text of the exception that is being handled.
std::wstring CurrentExceptionText() {
  if (std::current_exception() == nullptr) return L"no exception";
  try {
    throw;
  } catch (const std::exception& error) {
    return WideFromUtf8(error.what());
  } catch (...) {
    return L"an exception of unknown type";
  }
}

}  // namespace

Exception::Exception(std::string module, std::string file, int line, std::string message,
                     bool reported)
    : std::runtime_error(Describe(module, file, line, message)),
      module_(std::move(module)),
      file_(std::move(file)),
      line_(line),
      message_(std::move(message)),
      reported_(reported) {}

Exception::~Exception() = default;

void Throw_ERR_CORVEL_BAD_PARAMETER(const char* module, const char* file, int line) {
  throw Exception(module, file, line, "Bad parameter", false);
}

void ThrowInternalError(const char* module, const char* file, int line) {
  throw Exception(module, file, line, "Internal error", false);
}

void LogExceptionInfo(const wchar_t* where, const wchar_t* file, int line) noexcept {
  try {
    g_Logger(kLogWarning, L"%s [Function %s, File %s, Line %d]", CurrentExceptionText().c_str(),
             where, file, line);
  } catch (...) {
    // Called from destructors: there is nobody left to tell.
  }
}

}  // namespace corvel
