// Locales made for a test, so that it needs none of the system's: which of those a machine has is
// nobody's promise.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include "support/Environment.h"
#include "support/TempFolder.h"

namespace trovan::test {

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
  TempFolder folder_;
  ScopedVariable search_;
};

}  // namespace trovan::test
