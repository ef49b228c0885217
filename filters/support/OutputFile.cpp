#include "filters/support/OutputFile.h"

#include <filesystem>
#include <random>
#include <system_error>

#include <corvel/Path.h>
#include <corvel/Text.h>

#include "filters/support/FilterError.h"

namespace trovan::filters {
namespace {

// A name beside `path` that is not taken, as a file that is open.
std::wstring OpenBeside(const std::wstring& path, corvel::CBufferedFile& file) {
  // Not a fixed seed: programs that write the same file must not meet.
  std::random_device random;
  constexpr int kAttempts = 16;
  for (int attempt = 1;; ++attempt) {
    std::wstring name = path + L"." + std::to_wstring(random()) + L".part";
    if (corvel::FileExists(name) && attempt < kAttempts) continue;
    file.Open(name, "w+b", corvel::kFileExclusive, true);
    return name;
  }
}

}  // namespace

OutputFile::OutputFile(const std::wstring& path)
    : path_(path), temporary_(OpenBeside(path, file_)) {}

OutputFile::~OutputFile() {
  if (temporary_.empty()) return;
  file_.CloseNoThrow(true);
  corvel::RemoveFile(temporary_);
}

void OutputFile::Commit() {
  file_.Close();
  std::error_code failed;
  std::filesystem::rename(corvel::PathToSystem(temporary_), corvel::PathToSystem(path_), failed);
  if (failed) {
    throw FilterError("cannot give \"" + corvel::Utf8FromWide(path_) +
                      "\" its name: " + failed.message());
  }
  temporary_.clear();
}

}  // namespace trovan::filters
