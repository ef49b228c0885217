#include "filters/lattice/EnviFields.h"

#include <corvel/Text.h>

#include "filters/support/FilterError.h"

namespace trovan::filters {
namespace {

constexpr std::string_view kBlanks = " \t\v\f";

std::string_view Trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

bool IsBlank(char c) { return kBlanks.find(c) != std::string_view::npos; }

char ToSmall(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

std::string NormalName(std::string_view text) {
  std::string name;
  for (const char c : Trimmed(text)) {
    if (!IsBlank(c)) {
      name += ToSmall(c);
    } else if (name.back() != ' ') {
      name += ' ';
    }
  }
  return name;
}

// Names and values may be of any length; a message should not.
std::string Quoted(std::string_view text) {
  constexpr std::size_t kMost = 60;
  if (text.size() <= kMost) return '"' + std::string(text) + '"';
  return '"' + std::string(text.substr(0, kMost)) + "...\"";
}

// The lines of a text, whether they end as on Unix, Windows or old Macintoshes.
class Lines {
 public:
  explicit Lines(std::string_view text) : rest_(text) {}

  // False after the last line.
  bool Next() {
    if (rest_.empty()) return false;
    const std::size_t end = rest_.find_first_of("\r\n");
    text_ = Trimmed(rest_.substr(0, end));
    ++number_;
    if (end == std::string_view::npos) {
      rest_ = {};
    } else {
      rest_.remove_prefix(end + (rest_.substr(end, 2) == "\r\n" ? 2 : 1));
    }
    return true;
  }

  std::string_view Text() const { return text_; }  // without blanks around it
  std::size_t Number() const { return number_; }   // from 1

 private:
  std::string_view rest_;
  std::string_view text_;
  std::size_t number_ = 0;
};

bool IsSkipped(std::string_view line) { return line.empty() || line.front() == ';'; }

// The rest of a value in braces, whose first line goes on with `text`. It ends at the last closing
// brace of the first line that has one: descriptions may have braces of their own.
std::string ReadBraced(std::string_view text, Lines& lines, const std::string& file) {
  const std::size_t opened = lines.Number();
  std::string value;
  for (;;) {
    const std::size_t end = text.rfind('}');
    if (!value.empty()) value += ' ';
    value += Trimmed(text.substr(0, end));
    if (end != std::string_view::npos) break;
    do {
      if (!lines.Next()) FailInLine(file, opened, "the brace that opens here is not closed");
    } while (IsSkipped(lines.Text()));
    text = lines.Text();
  }
  return std::string(Trimmed(value));
}

void RequireSignature(Lines& lines, const std::string& file) {
  if (lines.Next() && NormalName(lines.Text()) == "envi") return;
  throw FilterError(file + " is no ENVI header: its first line is " + Quoted(lines.Text()) +
                    ", expected \"ENVI\"");
}

// Programs write a byte order mark before UTF-8 where they should not.
std::string_view WithoutMark(std::string_view text) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  if (text.substr(0, kMark.size()) == kMark) text.remove_prefix(kMark.size());
  return text;
}

}  // namespace

std::vector<EnviField> SplitEnviFields(std::string_view text, const std::string& file) {
  const std::string valid = corvel::Utf8FromWide(corvel::WideFromUtf8(text));
  Lines lines(WithoutMark(valid));
  RequireSignature(lines, file);
  std::vector<EnviField> fields;
  while (lines.Next()) {
    const std::string_view line = lines.Text();
    if (IsSkipped(line)) continue;
    const std::size_t sign = line.find('=');
    if (sign == std::string_view::npos || sign == 0) {
      FailInLine(file, lines.Number(), Quoted(line) + " found, expected \"name = value\"");
    }
    EnviField field{NormalName(line.substr(0, sign)), {}, lines.Number()};
    const std::string_view value = Trimmed(line.substr(sign + 1));
    const bool isBraced = !value.empty() && value.front() == '{';
    field.value = isBraced ? ReadBraced(value.substr(1), lines, file) : std::string(value);
    fields.push_back(field);
  }
  return fields;
}

std::vector<std::string> SplitEnviList(std::string_view value) {
  std::vector<std::string> items;
  if (value.empty()) return items;
  for (;;) {
    const std::size_t comma = value.find(',');
    items.emplace_back(Trimmed(value.substr(0, comma)));
    if (comma == std::string_view::npos) return items;
    value.remove_prefix(comma + 1);
  }
}

void FailInLine(const std::string& file, std::size_t line, const std::string& problem) {
  throw FilterError(file + ", line " + std::to_string(line) + ": " + problem);
}

void FailInField(const std::string& file, const EnviField& field, const std::string& expected) {
  FailInLine(file, field.line,
             field.name + " is " + Quoted(field.value) + ", expected " + expected);
}

}  // namespace trovan::filters
