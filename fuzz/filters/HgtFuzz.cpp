// Any bytes as a height tile: refused, or read and written again byte for byte.
#include <cstdint>
#include <string>
#include <string_view>

#include "Require.h"
#include "filters/lattice/HgtReader.h"
#include "filters/lattice/HgtWriter.h"
#include "filters/lattice/MemoryLattice.h"
#include "filters/support/FilterError.h"
#include "support/TempFolder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const trovan::test::TempFolder folder;
  const std::string bytes(data, data + size);
  trovan::test::WriteBytes(folder.Path() / "S05W070.hgt", bytes);
  try {
    trovan::filters::HgtReader reader(folder.File(L"S05W070.hgt"));
    trovan::test::MemoryLattice nodes(reader.Header());
    reader.ReadRows(nodes);
    trovan::filters::HgtWriter writer(folder.File(L"s05w070.hgt"), {});
    writer.Check(nodes.Header());
    writer.Write(nodes.Header(), nodes);
    trovan::fuzz::Require(trovan::test::ReadBytes(folder.Path() / "s05w070.hgt") == bytes,
                          "other bytes after writing");
  } catch (const trovan::filters::FilterError& error) {
    trovan::fuzz::Require(std::string_view(error.what()).size() > 10, "a refusal without a reason");
  }
  return 0;
}
