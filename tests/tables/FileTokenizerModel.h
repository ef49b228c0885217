// What the tokenizer must answer, worked out as slowly and literally as can be: one character at a
// time, by the rules in their order, from a file that is a text in memory. The tokenizer is
// compared with it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include <corvel/BufferedFile.h>
#include <trovan/FileTokenizer.h>

namespace trovan::test {

// An open file without a buffer: its bytes, a position, one byte that was pushed back, the end
// mark.
class TextSource {
 public:
  // The position starts at `position`. The bytes must outlive the source.
  explicit TextSource(std::string_view bytes, std::size_t position = 0)
      : bytes_(bytes), position_(position) {}

  int Getc();
  int UnGetc(int byte);
  void Seek(std::size_t position);
  std::size_t Position() const { return position_; }
  bool EndOfFile() const { return end_; }

 private:
  std::string_view bytes_;
  std::size_t position_;
  int pushedBack_ = -1;
  bool end_ = false;
};

class FileTokenizerModel {
 public:
  struct Sets {
    std::string whitespace = " \t";
    std::string delimiters = ",";
    std::string quotes = "\"";
  };

  FileTokenizerModel(TextSource& source, Sets sets) : source_(source), sets_(std::move(sets)) {}

  CFileTokenizer::Status Parse(std::string& token, bool useQuotes);
  CFileTokenizer::Status Parse(int& value);
  CFileTokenizer::Status Parse(double& value);
  CFileTokenizer::Status Parse(bool& value);

  TextSource& Source() { return source_; }
  const TextSource& Source() const { return source_; }
  Sets& TheSets() { return sets_; }
  bool LastTokenQuoted() const { return quoted_; }
  char LastTokenTermChar() const { return terminator_; }
  unsigned NumLines() const { return lines_; }
  unsigned NumTokens() const { return tokens_; }

 private:
  bool ReadCharacter(char& c);
  CFileTokenizer::Status ReadPlain(std::string& token, char c);
  CFileTokenizer::Status ReadQuoted(std::string& token, char quote);
  CFileTokenizer::Status End(char terminator);
  bool IsWhitespace(char c) const;
  bool EndsToken(char c) const;

  TextSource& source_;
  Sets sets_;
  bool quoted_ = false;
  char terminator_ = 0;
  unsigned lines_ = 0;
  unsigned tokens_ = 0;
};

// One call of the tokenizer.
enum class TokenCall { kText, kQuotedText, kInt, kDouble, kBool };

// Gives the sets of the model to the tokenizer.
void GiveSets(CFileTokenizer& tokens, const FileTokenizerModel::Sets& sets);

// Makes one call on both and compares all that can be seen afterwards. Returns what differs, in
// words; empty where nothing does. `status` is that of the model.
std::string DisagreementAfter(TokenCall call, CFileTokenizer& tokens, FileTokenizerModel& model,
                              CFileTokenizer::Status& status);

// The text between quotes, its control and other special characters as in a program.
std::string ShownText(std::string_view text);

// What differs between a file and its double: the position, the end mark.
std::string DisagreementOfSources(const corvel::CBufferedFile& file, const TextSource& source);

}  // namespace trovan::test
