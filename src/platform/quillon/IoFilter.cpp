#include <quillon/IoFilter.h>

namespace quillon {
namespace {

std::string Placed(const char* what, const char* file, int line) {
  return std::string(what) + " (" + file + ", line " + std::to_string(line) + ")";
}

}  // namespace

InternalError::~InternalError() = default;
AbortError::~AbortError() = default;
IoFilter::~IoFilter() = default;

void IoFilter::GetPropertyPages(std::vector<IoPropertyPage*>&, const std::wstring&) {}
void IoFilter::SetOptionsFromString(const std::wstring&) {}
std::wstring IoFilter::GetOptionsInStringForm() { return {}; }
wchar_t IoFilter::GetOptionStringDelimiter() { return L';'; }

void IoFilter::Throw_ERR_INTERNAL(const char* file, int line) {
  throw InternalError(Placed("Internal error", file, line));
}

void IoFilter::Throw_ABORT(const char* file, int line) {
  throw AbortError(Placed("Stopped by the user", file, line));
}

}  // namespace quillon
