// Locales made for a test, so that it needs none of the system's: which of those a machine has is
// nobody's promise.
#pragma once

#include <stdlib.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>

namespace test_support {

// A folder that exists as long as the object.
class ScratchFolder {
 public:
  ScratchFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "trovan-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no scratch folder");
    path_ = name;
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::filesystem::path& Path() const { return path_; }

 private:
  std::filesystem::path path_;
};

// An environment variable with another value as long as the object lives; null unsets it.
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const char* value) : name_(name) {
    if (const char* old = std::getenv(name)) old_ = old;
    Set(value);
  }
  ~ScopedVariable() { Set(old_ ? old_->c_str() : nullptr); }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  void Set(const char* value) const {
    if (value != nullptr) {
      ::setenv(name_.c_str(), value, 1);
    } else {
      ::unsetenv(name_.c_str());
    }
  }

  std::string name_;
  std::optional<std::string> old_;
};

// A folder of locales that setlocale and newlocale search as long as the object lives.
class MadeLocales {
 public:
  MadeLocales() : search_("LOCPATH", folder_.Path().c_str()) {}

  // Makes the locale `name`. Its character set is named `charset` and has, beyond ASCII, the one
  // character that `extra` describes as in a charmap, such as "<U00B7> /xb7"; its decimal character
  // is `decimal`, as in a locale source, such as "<U00B7>".
  void Make(const std::string& name, const std::string& charset, const std::string& decimal,
            const std::string& extra = "") const {
    const auto charmap = folder_.Path() / (name + ".charmap");
    const auto source = folder_.Path() / (name + ".source");
    std::ofstream(charmap) << "<code_set_name> " << charset << "\n<mb_cur_min> 1\n<mb_cur_max> "
                           << (charset == "UTF-8" ? 6 : 1)
                           << "\n<comment_char> %\n<escape_char> /\nCHARMAP\n"
                              "<U0000>..<U007F> /x00 ASCII\n"
                           << (extra.empty() ? "" : extra + " EXTRA\n") << "END CHARMAP\n";
    std::ofstream(source) << "comment_char %\nescape_char /\nLC_CTYPE\nEND LC_CTYPE\nLC_NUMERIC\n"
                          << "decimal_point \"" << decimal
                          << "\"\nthousands_sep \"\"\ngrouping -1\nEND LC_NUMERIC\n";
    // Part of the C library's own package. It warns of the categories that are left out.
    const auto made = folder_.Path() / name;
    const std::string command = "localedef --no-archive -c -i '" + source.string() + "' -f '" +
                                charmap.string() + "' '" + made.string() + "' >/dev/null 2>&1";
    (void)!std::system(command.c_str());
    if (!std::filesystem::exists(made / "LC_CTYPE")) {
      throw std::runtime_error("localedef made no locale " + name);
    }
  }

 private:
  ScratchFolder folder_;
  ScopedVariable search_;
};

}  // namespace test_support
