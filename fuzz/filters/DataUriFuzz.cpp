// Any bytes as a "data:" address: the bytes that it holds are no more than its characters.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "Require.h"
#include "filters/image/DataUri.h"
#include "filters/support/FilterError.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using trovan::fuzz::Require;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  Require(trovan::filters::DecodePercents(text).size() <= size, "more bytes than characters");
  if (!trovan::filters::IsDataUri(text)) return 0;
  try {
    Require(trovan::filters::DecodeDataUri(text).size() < size, "more bytes than characters");
  } catch (const trovan::filters::FilterError& error) {
    Require(error.what()[0] != '\0', "an error without words");
  }
  return 0;
}
