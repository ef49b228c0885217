// Pictures as PNG files.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace trovan::filters {

// The bytes of a file that holds pixels of four bytes (red, green, blue, opacity), top row first.
//
// Raises FilterError when the picture cannot be encoded.
// REQUIRES: pixels.size() == width * height * 4, width and height at least 1.
std::vector<std::uint8_t> EncodePng(unsigned width, unsigned height,
                                    const std::vector<std::uint8_t>& pixels);

// Writes them. The file appears under its name when it is whole.
//
// Raises FilterError also when the file cannot be written.
// REQUIRES: as EncodePng.
void WritePng(const std::wstring& path, unsigned width, unsigned height,
              const std::vector<std::uint8_t>& pixels);

}  // namespace trovan::filters
