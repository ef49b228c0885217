#include "filters/support/OutputFile.h"

#include <filesystem>
#include <random>
#include <system_error>

#include <corvel/Exception.h>
#include <corvel/Path.h>
#include <corvel/Text.h>

#include "filters/support/OutputName.h"

namespace trovan::filters {
namespace {

namespace fs = std::filesystem;

std::error_code Move(const std::wstring& from, const std::wstring& to) {
  std::error_code failed;
  fs::rename(corvel::PathToSystem(from), corvel::PathToSystem(to), failed);
  return failed;
}

// A name that is not taken, in the folder of `path`. It does not grow with the name of the file,
// which may be as long as the system allows.
std::wstring NameBeside(const std::wstring& path) {
  // Not a fixed seed: programs that write the same file must not meet.
  std::random_device random;
  constexpr int kAttempts = 16;
  const fs::path folder = fs::path(corvel::PathToSystem(path)).parent_path();
  for (int attempt = 1;; ++attempt) {
    const fs::path name = folder / (".trovan-" + std::to_string(random()) + ".part");
    std::wstring wide = corvel::PathFromSystem(name.string());
    if (attempt == kAttempts || !corvel::FileExists(wide)) return wide;
  }
}

// Keeps a file, if there is one, under another name while its own is taken by a newer one. It gets
// its name back unless it is dropped.
class OlderFile {
 public:
  explicit OlderFile(const std::wstring& path) : path_(path) {
    if (!corvel::FileExists(path)) return;
    const std::wstring name = NameBeside(path);
    if (const std::error_code failed = Move(path, name)) FailToWrite(path, failed.message());
    kept_ = name;
  }
  ~OlderFile() {
    if (!kept_.empty()) Move(kept_, path_);
  }
  OlderFile(const OlderFile&) = delete;
  OlderFile& operator=(const OlderFile&) = delete;

  void Drop() {
    if (!kept_.empty()) corvel::RemoveFile(kept_);
    kept_.clear();
  }

 private:
  std::wstring path_;
  std::wstring kept_;  // empty when there is none
};

}  // namespace

OutputFile::OutputFile(const std::wstring& path) : path_(path), target_(OutputTarget(path)) {
  const std::wstring name = NameBeside(target_);
  Try(name, [&] { file_.Open(name, "w+b", corvel::kFileExclusive, true); });
  temporary_ = name;
}

OutputFile::~OutputFile() {
  if (temporary_.empty()) return;
  file_.CloseNoThrow(true);
  corvel::RemoveFile(temporary_);
}

// Does work on the file `name`. Of its failures only the system's reason is told: the name itself
// means nothing to the user.
void OutputFile::Try(const std::wstring& name, const std::function<void()>& work) const {
  try {
    work();
  } catch (const corvel::Exception& error) {
    const std::string quoted = '"' + corvel::Utf8FromWide(name) + "\": ";
    const std::size_t at = error.Message().find(quoted);
    if (at == std::string::npos) throw;  // another file's
    FailToWrite(path_, error.Message().substr(at + quoted.size()));
  }
}

void OutputFile::Fill(const std::function<void(corvel::CBufferedFile&)>& fill) {
  Try(temporary_, [&] {
    fill(file_);
    file_.Flush();
  });
}

void OutputFile::Close() {
  Try(temporary_, [&] { file_.Close(); });
  OutputTarget(path_);  // renaming would replace a device or a pipe that came meanwhile
}

void OutputFile::Rename() {
  if (const std::error_code failed = Move(temporary_, target_)) {
    FailToWrite(path_, failed.message());
  }
  temporary_.clear();
}

void OutputFile::Commit() {
  Close();
  Rename();
}

void CommitTogether(OutputFile& first, OutputFile& second) {
  first.Close();
  second.Close();
  OlderFile older(first.target_);
  first.Rename();
  try {
    second.Rename();
  } catch (...) {
    corvel::RemoveFile(first.target_);
    throw;
  }
  older.Drop();
}

}  // namespace trovan::filters
