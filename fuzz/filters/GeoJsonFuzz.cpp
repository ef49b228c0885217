// Any bytes as GeoJSON: an error, or objects that are valid, and more of them never come without
// properties than with.
#include <cstddef>
#include <cstdint>

#include "Require.h"
#include "filters/geometry/GeoJsonImportFilter.h"
#include "filters/support/FilterError.h"

namespace {

using trovan::filters::FilterError;
using trovan::filters::GeoJsonImportFilter;
using trovan::fuzz::Require;

class Checker : public quillon::IoManager {
 public:
  void ImportObject(quillon::TrBase& object) override { object.AssertValid(); }
};

// How many objects there are; -1 for an error.
long long Import(const std::uint8_t* data, std::size_t size, bool withProperties) {
  Checker checker;
  GeoJsonImportFilter filter(checker);
  filter.SetKeepAttributes(withProperties);
  try {
    filter.ImportFromMemory(data, static_cast<unsigned int>(size), false);
  } catch (const FilterError&) {
    return -1;
  }
  return static_cast<long long>(filter.Statistics().Objects());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Require(Import(data, size, true) == Import(data, size, false), "properties change the objects");
  return 0;
}
