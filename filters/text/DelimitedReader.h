// The rows of a delimited text file, one after the other, in memory that does not grow with it.
//
//   DelimitedReader reader(file, "towns.csv", {});  // NAME,NOTE\nOslo,"big, ""old"""\nRome,\n
//   reader.ReadRow();  // true: NAME | NOTE
//   reader.ReadRow();  // true: Oslo | big, "old" (quoted)
//   reader.ReadRow();  // true: Rome | nothing; Line() is 3
//   reader.ReadRow();  // false
//
// docs/formats/delimited-text.md tells how rows and fields are read, case by case.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <corvel/BufferedFile.h>
#include <corvel/Progress.h>
#include <trovan/FileTokenizer.h>

#include "filters/support/Problems.h"
#include "filters/text/DelimitedFormat.h"
#include "filters/text/ReadProgress.h"

namespace trovan::filters {

// One value of a row: the bytes of the file, without carriage returns and NUL bytes. Line ends
// inside quotes are line feeds.
struct Field {
  std::string_view text;
  bool quoted = false;

  // Between two delimiters stood nothing, not even quotes.
  bool IsMissing() const { return text.empty() && !quoted; }
};

struct ReadLimits {
  // An offset in the file: what stands behind it is not read, and the row that reaches beyond it
  // is none.
  long long end = corvel::CBufferedFile::kNoReadEnd;

  // What bounds the memory: bytes of a row with its line end, and its fields. More is an error.
  long long longestRow = 64LL * 1024 * 1024;
  std::size_t mostFields = std::size_t{1024} * 1024;
};

class DelimitedReader {
 public:
  // Reads on where the file stands, which is to be the start of line 1. `file` is borrowed, and
  // only the reader may move it; its read end is the reader's. `name` is for messages. A line that
  // starts with the character `comment` is skipped; 0: none is.
  //
  // Raises FilterError when the format or the comment holds a line end or a NUL byte.
  DelimitedReader(corvel::CBufferedFile& file, std::string name, const DelimitedFormat& format,
                  char comment = 0, const ReadLimits& limits = {});

  DelimitedReader(const DelimitedReader&) = delete;
  DelimitedReader& operator=(const DelimitedReader&) = delete;

  // Tells `progress` now and then how much of the file was read. Once it asks to stop, there are no
  // more rows. REQUIRES: the file is one on a disk.
  void ReportTo(corvel::IProgress& progress);
  bool WasStopped() const { return progress_.WasStopped(); }

  // Skips whole lines, whatever they hold. REQUIRES: no row was read yet.
  void SkipLines(unsigned long long count);

  // Reads the next row; false when there is none. A row has at least one field.
  //
  // Raises FilterError, naming the line, for a quote that is never closed and for a row beyond the
  // limits, and corvel::Exception when the system cannot read. There are no more rows then.
  bool ReadRow();

  // The row read last; valid until the next call.
  std::span<const Field> Row() const { return fields_; }

  // The line on which it begins, from 1.
  unsigned long long Line() const { return rowLine_; }

  // What was read in a way that may not be meant: "line 3, column 2: text follows the closing
  // quote".
  const Problems& Remarks() const { return remarks_; }

  // Lines skipped because of the comment character.
  unsigned long long CommentLines() const { return commentLines_; }

 private:
  // What ended a field.
  enum class End { kField, kRow, kReads };

  bool FindRow();
  bool SkipLine();
  int FirstInField();
  End ReadField();
  End ParseField();
  End TakeRest();
  int LastByte();
  void NoteTextBehindQuote();
  void AddField(std::string_view text, bool quoted);
  bool FinishRow(End end);
  bool HasMore();
  bool IsOpenQuote();
  bool IsWhitespace(int byte) const;
  [[noreturn]] void FailTooLong() const;
  [[noreturn]] void Fail(unsigned long long line, const std::string& problem) const;

  corvel::CBufferedFile& file_;
  std::string name_;
  DelimitedFormat format_;
  char comment_;
  ReadLimits limits_;
  CFileTokenizer tokens_;

  std::string token_;
  std::string text_;               // of all fields of the row
  std::vector<std::size_t> ends_;  // of the fields in text_
  std::vector<Field> fields_;      // their texts are set when the row is complete
  long long tokenStart_ = 0;       // of the token read last, in the file
  unsigned long long tokenLine_ = 0;
  unsigned long long line_ = 1;  // of the next byte
  unsigned long long rowLine_ = 0;
  unsigned long long commentLines_ = 0;
  bool finished_ = false;
  Problems remarks_;
  ReadProgress progress_;
};

}  // namespace trovan::filters
