// Pictures as PNG files.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace trovan::filters {

// Writes pixels of four bytes (red, green, blue, opacity), top row first. The file appears under
// its name when it is whole.
//
// Raises FilterError when the picture cannot be encoded or the file cannot be written.
// REQUIRES: pixels.size() == width * height * 4, width and height at least 1.
void WritePng(const std::wstring& path, unsigned width, unsigned height,
              const std::vector<std::uint8_t>& pixels);

}  // namespace trovan::filters
