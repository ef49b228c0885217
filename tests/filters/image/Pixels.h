// The pixels of decoded pictures.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <brindle/MemoryBitmap.h>
#include <corvel/Color.h>

#include "filters/support/FilterError.h"

namespace trovan::test {

// All bytes, row by row from the top.
inline std::vector<std::uint8_t> PixelsOf(const brindle::MemoryBitmap& bitmap) {
  const bool isGrey = bitmap.GetColorFormat() == corvel::kColorFormat8;
  const unsigned stride = bitmap.GetWidth() * (isGrey ? 1 : 4);
  std::vector<std::uint8_t> pixels(std::size_t{stride} * bitmap.GetHeight());
  bitmap.FetchRegion(
      pixels.data(), static_cast<int>(stride),
      {0, 0, static_cast<LONG>(bitmap.GetWidth()), static_cast<LONG>(bitmap.GetHeight())});
  return pixels;
}

// What is raised, in words; empty: nothing.
inline std::string FaultOf(const std::function<void()>& work) {
  try {
    work();
    return {};
  } catch (const filters::FilterError& error) {
    return error.what();
  }
}

}  // namespace trovan::test
