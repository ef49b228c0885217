// How a text file sets its values apart.
#pragma once

#include <string>

namespace trovan::filters {

// Sets of single-byte characters with the meaning that CFileTokenizer gives them.
//
// In files of delimited values the white space is empty, since blanks are part of the values. In
// files of columns between blanks the delimiters are empty and the white space is " \t".
struct DelimitedFormat {
  std::string delimiters = ",";
  std::string whitespace;
  std::string quotes = "\"";  // empty: quotes are ordinary characters

  friend bool operator==(const DelimitedFormat&, const DelimitedFormat&) = default;
};

}  // namespace trovan::filters
