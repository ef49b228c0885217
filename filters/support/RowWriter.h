// Takes the rows of a table, value by value, and writes them in some format.
//
//   writer.Begin({"NAME", "POP"});
//   writer.BeginRow(); writer.Text("Oslo"); writer.Number("634293"); writer.EndRow();
//   writer.End();
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace trovan::filters {

class RowWriter {
 public:
  virtual ~RowWriter() = default;

  // All text is UTF-8.
  virtual void Begin(const std::vector<std::string>& columns) = 0;

  virtual void BeginRow() = 0;

  // One value for each column, in order. A row may bring more, which then have no name, or less.
  virtual void Null() = 0;
  virtual void Text(std::string_view text) = 0;
  // REQUIRES: IsNumber(number).
  virtual void Number(std::string_view number) = 0;
  virtual void Logical(bool value) = 0;
  // A text that is too long to be held: any number of pieces.
  virtual void BeginLongText() = 0;
  virtual void LongTextPiece(std::string_view piece) = 0;
  virtual void EndLongText() = 0;

  virtual void EndRow() = 0;

  virtual void End() = 0;
};

}  // namespace trovan::filters
