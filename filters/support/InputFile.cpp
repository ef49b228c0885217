#include "InputFile.h"

#include <filesystem>
#include <system_error>

#include <corvel/Path.h>
#include <corvel/Text.h>

#include "filters/support/FilterError.h"

namespace trovan::filters {

void RequireFile(const std::wstring& path) {
  std::error_code failed;
  const auto status = std::filesystem::status(corvel::PathToSystem(path), failed);
  if (!std::filesystem::exists(status) || std::filesystem::is_regular_file(status) ||
      std::filesystem::is_directory(status)) {
    return;  // what is wrong with the others, the readers tell
  }
  throw FilterError(corvel::Utf8FromWide(path) + ": this is a device or a pipe, no file");
}

}  // namespace trovan::filters
