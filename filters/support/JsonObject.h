// JSON objects with the same keys, one after the other (RFC 8259).
//
//   JsonObject object(out, {"NAME", "POP"});
//   object.Begin(); object.Text("Oslo"); object.Number("634293"); object.End();
//   // {"NAME":"Oslo","POP":634293}
#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "filters/support/OutputBuffer.h"

namespace trovan::filters {

class JsonObject {
 public:
  // Keys of the same name are told apart by a number. `out` outlives the object.
  //
  // Values beyond the keys are named "column_4", "column_5" and so on: the first of them by
  // `firstBeyond`, or its place in the object, counted from 1, without that.
  JsonObject(OutputBuffer& out, const std::vector<std::string>& keys, std::size_t firstBeyond = 0);

  void Begin();
  void End() { out_.Put('}'); }

  // One value for each key, in order; or less, or more. Texts are UTF-8.
  void Null();
  void Text(std::string_view text);
  // REQUIRES: IsNumber(number).
  void Number(std::string_view number);
  void Logical(bool value);
  // A text that is too long to be held: any number of pieces.
  void BeginLongText();
  void LongTextPiece(std::string_view piece);
  void EndLongText() { out_.Put('"'); }

 private:
  void PutKey();
  std::string UnusedName(const std::string& name, unsigned& number) const;

  OutputBuffer& out_;
  std::vector<std::string> keys_;  // with quotes and colon
  std::set<std::string> names_;    // as they came out
  std::size_t firstBeyond_;
  std::size_t member_ = 0;  // of this object, the next one
};

}  // namespace trovan::filters
