// Splits the text of a file into tokens, one call at a time: free-format and delimited data files.
//
//   CBufferedFile file;
//   file.Open(L"towns.txt", "rb", kFileShareRead, false);  // Oslo, "New ""Old"" Town"\n
//   CFileTokenizer tokens(&file);
//   std::string name;
//   tokens.Parse(name, true);  // TOKEN_OK: Oslo; LastTokenTermChar() is ','
//   tokens.Parse(name, true);  // TOKEN_OK: New "Old" Town; it is '\n', LastTokenQuoted() is true
//   tokens.Parse(name, true);  // TOKEN_EOF
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>

#include <corvel/BufferedFile.h>

#include <trovan/Export.h>

namespace trovan {

// Bytes go in one of three sets, each of which the caller may replace:
//
//   white space  " \t"  separates tokens; in front of a token and of a delimiter it is skipped
//   delimiters   ","    end tokens; one with nothing in front of it reports an empty field
//   quotes       "\""   open tokens that may hold anything and that end at the same quote
//
// What stands in two sets is white space first, then a delimiter, then a quote. Whatever the sets
// hold, a line feed and a form feed end tokens outside quotes, line ends never make fields, and
// carriage returns and NUL bytes never reach a token. The tokenizer knows nothing of character
// sets: it reads bytes.
//
// Nothing is raised for data of any kind; what the file raises comes through. One thread at a time;
// copies read on in the same file.
class TROVAN_API CFileTokenizer {
 public:
  enum Status {
    TOKEN_OK = 0,         // a token was read; a quoted one may be empty
    TOKEN_EMPTY = 1,      // an empty field: a delimiter or a form feed stood in front of any token
    TOKEN_EOF = 2,        // the file ended before the token did
    TOKEN_BAD_VALUE = 3,  // what was to be a number does not start with one
  };

  // No source; the sets as above.
  CFileTokenizer();

  // `source` is borrowed: it must be open when tokens are read, and is never closed here.
  explicit CFileTokenizer(corvel::CBufferedFile* source);

  // A copy reads on in the same file. What is moved from keeps its source and its counts, and has
  // empty sets.
  CFileTokenizer(const CFileTokenizer& other);
  CFileTokenizer& operator=(const CFileTokenizer& other);
  CFileTokenizer(CFileTokenizer&& other) noexcept;
  CFileTokenizer& operator=(CFileTokenizer&& other) noexcept;
  ~CFileTokenizer();

  // Starts anew with another source, or none: the counts and what is known of the last token are
  // reset, the sets stay.
  void SetSource(corvel::CBufferedFile* source);

  // The path with which the source was opened. REQUIRES: there is a source.
  std::wstring GetSource() const;

  // Gives the three sets what they hold at first.
  void SetDefaults();

  // Each replaces one set by the characters of the text; their order does not matter. The empty
  // text empties the set: without white space, for one, blanks are part of tokens.
  //
  // REQUIRES: a NUL-terminated text.
  void SetWhitespace(const char* characters);
  void SetDelimiters(const char* characters);
  void SetQuotes(const char* characters);
  const std::string& GetWhitespace() const { return whitespace_; }
  const std::string& GetDelimiters() const { return delimiters_; }
  const std::string& GetQuotes() const { return quotes_; }

  // Reads the next token as text. With `useQuotes`, one that starts with a quote goes to the next
  // such quote, whatever lies between; a doubled quote stands for one. What follows the closing
  // quote, up to the next delimiter, is a token of its own.
  //
  // TOKEN_EOF leaves in `token` what there was: the last token of a file without a final line end.
  //
  // Deliberate: white space that ends a token without a delimiter behind it reports a line feed as
  // the terminating character, which says no more than that no delimiter ended the token.
  //
  // REQUIRES: there is a source, also for the other three.
  Status Parse(std::string& token, bool useQuotes);

  // Read the next token as a number, by the rules of strtol in base 10 and of strtod in the C
  // library's current locale: what follows the number in the token does not matter, quotes are no
  // part of numbers, and what is too large is clamped. `value` is written for TOKEN_OK only.
  Status Parse(int& value);
  Status Parse(double& value);

  // Whether the next token, as an integer, is other than 0.
  Status Parse(bool& value);

  // How the last token began, and the character that ended it: that of the last TOKEN_OK or
  // TOKEN_EMPTY.
  bool LastTokenQuoted() const { return lastTokenQuoted_; }
  char LastTokenTermChar() const { return lastTokenTermChar_; }

  // Line feeds and TOKEN_OKs so far. A caller that reads some lines by other means can set them
  // right.
  unsigned int GetNumLinesParsed() const { return numLinesParsed_; }
  unsigned int GetNumTokensParsed() const { return numTokensParsed_; }
  void SetNumLinesParsed(unsigned int count) { numLinesParsed_ = count; }
  void SetNumTokensParsed(unsigned int count) { numTokensParsed_ = count; }

  // Those of the source; true and 0 without one.
  bool EndOfFile() const;
  long long GetFilePosition() const;

 protected:
  bool IsWhitespace(char character) const { return Is(kWhitespace, character); }
  // Line feeds and form feeds too.
  bool IsDelimiter(char character) const { return Is(kDelimiter | kLineEnd, character); }
  bool IsQuote(char character) const { return Is(kQuote, character); }

  // Reads the next character that is no carriage return; false at the end of the source. A line
  // feed counts as a line.
  bool GetNextChar(char& character);

 private:
  // What a byte is; none of them: an ordinary character.
  enum Class : unsigned char {
    kWhitespace = 1,
    kDelimiter = 2,
    kQuote = 4,
    kLineEnd = 8,   // line feed, form feed
    kDropped = 16,  // carriage return, NUL
  };

  // What ends a run of characters that go into a token as they are.
  struct RunEnds {
    unsigned classes;
    std::array<unsigned char, 2> rare;  // those above a blank
    bool isFew;                         // there are no more than these
  };

  bool Is(unsigned classes, char character) const {
    return (classes_[static_cast<unsigned char>(character)] & classes) != 0;
  }
  void NoteClasses();
  template <class Text>
  Status ParseText(Text& token, bool useQuotes);
  template <class Text>
  bool ParseBuffered(Text& token, bool useQuotes);
  bool ParseBufferedNumber(double& value);
  std::size_t FindLast(std::span<const unsigned char> bytes, std::size_t length) const;
  void TakePlain(unsigned char last, std::size_t count);
  template <class Text>
  Status ParsePlain(Text& token, char first);
  template <class Text>
  Status ParseQuoted(Text& token, char quote);
  template <class Text>
  void TakeRun(Text& token, const RunEnds& ends);
  RunEnds EndsOf(unsigned classes) const;
  std::size_t FindEnd(std::span<const unsigned char> bytes, std::size_t at,
                      const RunEnds& ends) const;
  bool SkipWhitespace(char& character);
  Status EndPlain(char next);
  Status Finish(char terminator);

  corvel::CBufferedFile* source_ = nullptr;
  bool lastTokenQuoted_ = false;
  char lastTokenTermChar_ = 0;
  unsigned int numTokensParsed_ = 0;
  unsigned int numLinesParsed_ = 0;
  std::string whitespace_;
  std::string delimiters_;
  std::string quotes_;

  // From the sets.
  std::array<unsigned char, 256> classes_{};  // of each byte
  RunEnds plainEnds_{};                       // outside quotes
  RunEnds quotedEnds_{};
  bool numbersAreOrdinary_ = true;  // the characters of decimal numbers are in none of the sets
};

}  // namespace trovan
