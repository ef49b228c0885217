// Delimited text as mapping programs meet it. The same arguments always give the same bytes.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>

namespace trovan::bench {

// Writes at least `bytes` of lines such as
//
//   104728,Kirkholmton,NO,city,51.482913,-7.219384,184.2,2019-04-13
//
// without blanks, quotes and empty fields, so that every way of splitting them finds the same
// tokens. An existing file is replaced.
//
// Raises std::ios_base::failure when the file cannot be written.
void WriteSampleText(const std::filesystem::path& path, std::uint64_t bytes);

// The same of lines of measurements, three coordinates and a value with as many digits as programs
// write: 51.482913,-7.219384,184.25,0.8363291730880737
//
// `separator` and `lineEnd` stand between the numbers and behind the lines.
void WriteSampleNumbers(const std::filesystem::path& path, std::uint64_t bytes,
                        std::string_view separator, std::string_view lineEnd);

}  // namespace trovan::bench
