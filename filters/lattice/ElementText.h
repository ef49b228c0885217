// The elements of packed arrays as text and back.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <corvel/BufferedFile.h>
#include <corvel/PrimType.h>

#include "filters/support/NumberText.h"

namespace trovan::filters {

// As for single numbers. REQUIRES: `type` is an element type.
NumberStatus ParseNumber(std::string_view text, corvel::PrimType type, void* element);
void AppendNumber(std::string& text, corvel::PrimType type, const void* element);

// Writes elements as one line, blanks between them.
void WriteLineOfNumbers(corvel::CBufferedFile& file, corvel::PrimType type, const void* elements,
                        std::size_t count);

}  // namespace trovan::filters
