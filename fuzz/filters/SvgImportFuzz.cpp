// Any bytes as an SVG document, with and without a region: all that arrives is consistent and
// finite, and what is wrong is said.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include <quillon/IoManager.h>
#include <quillon/TrBase.h>

#include "Require.h"
#include "filters/support/FilterError.h"
#include "filters/svg/SvgImportFilter.h"
#include "filters/svg/SvgSniffer.h"

namespace {

using trovan::fuzz::Require;

class CheckingManager : public quillon::IoManager {
 public:
  void ImportObject(quillon::TrBase& object) override { object.AssertValid(); }
};

void Import(const std::uint8_t* data, std::size_t size, bool hasRegion) {
  CheckingManager manager;
  trovan::filters::SvgImportFilter filter(manager);
  if (hasRegion) filter.SetRegion({{{-500, -900}, {700, -300}, {100, 200}}, {3}});
  try {
    filter.ImportFromMemory(data, static_cast<unsigned>(size), false);
  } catch (const trovan::filters::FilterError& error) {
    Require(error.what()[0] != '\0', "an error without words");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Import(data, size, false);
  Import(data, size, true);
  (void)trovan::filters::RootAlone({reinterpret_cast<const char*>(data), size});
  return 0;
}
