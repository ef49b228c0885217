// Any text as the header of an ENVI raster. What is read from it must read back after it was
// written; and as the header of a small raw file it must be refused, or give each row once, which
// written again must give the same values.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "Require.h"
#include "filters/lattice/EnviHeader.h"
#include "filters/lattice/EnviReader.h"
#include "filters/lattice/EnviWriter.h"
#include "filters/lattice/MemoryLattice.h"
#include "filters/support/FilterError.h"
#include "support/TempFolder.h"

namespace {

using trovan::filters::EnviHeader;
using trovan::filters::EnviReader;
using trovan::filters::EnviWriter;
using trovan::filters::FilterError;
using trovan::filters::LatticeHeader;
using trovan::fuzz::Require;
using trovan::test::MemoryLattice;

constexpr std::size_t kRawSize = 512;

// A header that is refused is right too.
template <typename Work>
void Try(Work work) {
  try {
    work();
  } catch (const FilterError& error) {
    Require(std::string_view(error.what()).size() > 10, "a refusal without a reason");
  }
}

void RequireSame(EnviHeader before, EnviHeader after) {
  before.otherFields.clear();
  if (before.dataIgnoreValue && std::isnan(*before.dataIgnoreValue)) {
    Require(after.dataIgnoreValue && std::isnan(*after.dataIgnoreValue), "the void value");
    before.dataIgnoreValue = after.dataIgnoreValue = 0.0;
  }
  Require(before == after, "the header reads back as another one");
}

void ReadBack(const std::string& text) {
  const EnviHeader header = trovan::filters::ParseEnviHeader(text, "fuzz.hdr");
  const std::string written = trovan::filters::FormatEnviHeader(header);
  RequireSame(header, trovan::filters::ParseEnviHeader(written, "again.hdr"));
}

MemoryLattice ReadAll(const std::wstring& path, unsigned planes) {
  EnviReader reader(path, planes);
  MemoryLattice nodes(reader.Header());
  reader.ReadRows(nodes);
  const LatticeHeader& header = reader.Header();
  Require(nodes.RowsTaken() == std::size_t{header.rows} * header.planes, "a row is missing");
  return nodes;
}

void Rewrite(const trovan::test::TempFolder& folder, unsigned planes) {
  MemoryLattice nodes = ReadAll(folder.File(L"in.hdr"), planes);
  EnviWriter writer(folder.File(L"out.img"), {});
  writer.Check(nodes.Header());
  writer.Write(nodes.Header(), nodes);
  const MemoryLattice again = ReadAll(folder.File(L"out.img"), planes);
  Require(again.Nodes() == nodes.Nodes(), "other values after writing");
  Require(again.Header().origin == nodes.Header().origin, "another origin after writing");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  Try([&text] { ReadBack(text); });

  static const trovan::test::TempFolder folder;
  static const bool isRawThere = [] {
    std::string raw;
    for (std::size_t i = 0; i < kRawSize; ++i) raw += static_cast<char>(i * 37);
    trovan::test::WriteBytes(folder.Path() / "in.img", raw);
    return true;
  }();
  Require(isRawThere, "no raw file");
  trovan::test::WriteBytes(folder.Path() / "in.hdr", text);
  Try([] { Rewrite(folder, 1); });
  Try([] { Rewrite(folder, 2); });
  return 0;
}
