// The attributes of the shapes of a shapefile: the records of the table beside it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include <corvel/ParamList.h>

#include "filters/support/Problems.h"

namespace trovan::filters {

class ShapeAttributes {
 public:
  // The table beside the file at `path`: its name with the extension ".dbf" in any case of letters.
  // Without `codePage` its texts are read as it says itself. Null when there is none. What is wrong
  // with values goes to `problems`, which outlives the object.
  //
  // Raises FilterError when the table cannot be read.
  static std::unique_ptr<ShapeAttributes> Open(const std::wstring& path,
                                               std::optional<int> codePage, Problems& problems);
  ~ShapeAttributes();

  // The attributes of record `index`, counted from 0: the field names and the values as texts,
  // without those that are empty or null. None, and a problem for the first such record, when the
  // table has no such record.
  corvel::CParamList Read(std::uint32_t index);

  // Parts of texts so far that the code page does not know, and its number.
  std::uint64_t Malformed() const;
  int CodePage() const;

 private:
  class Table;
  explicit ShapeAttributes(std::unique_ptr<Table> table);

  std::unique_ptr<Table> table_;
};

}  // namespace trovan::filters
