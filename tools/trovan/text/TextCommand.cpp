#include "text/TextCommand.h"

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <system_error>

#include "Printable.h"
#include "filters/text/EscapedText.h"
#include "text/TextArguments.h"

namespace trovan::tool {

const CLI::Validator kCount(
    [](const std::string& text) -> std::string {
      std::uint64_t count = 0;
      const char* end = text.data() + text.size();
      const auto parsed = std::from_chars(text.data(), end, count);
      return parsed.ec == std::errc() && parsed.ptr == end ? "" : "no count: " + text;
    },
    "COUNT");

CLI::Option* AddCharacters(CLI::App& command, const std::string& name,
                           std::optional<std::string>& characters, const std::string& description) {
  return command
      .add_option_function<std::string>(
          name,
          [name, &characters](const std::string& text) {
            characters = filters::Unescaped(text);
            if (characters && characters->find('\0') == std::string::npos) return;
            throw CLI::ValidationError(name,
                                       "characters and the escapes \\t \\n \\r \\f \\\\ and "
                                       "\\xHH (not \\x00) are expected, not " +
                                           text);
          },
          description)
      ->type_name("CHARACTERS");
}

void WarnOfText(const std::string& message) {
  std::fprintf(stderr, "trovan: %s\n", Printable(message).c_str());
}

void AddTextCommand(CLI::App& app, std::function<int()>& work) {
  auto* text = app.add_subcommand(
      "text", "Look into text files of delimited values, and convert their columns");
  text->require_subcommand(1);
  AddTextSniff(*text, work);
  AddTextTokens(*text, work);
  AddTextColumns(*text, work);
}

}  // namespace trovan::tool
