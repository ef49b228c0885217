// Any text as the ".cpg" file of a shapefile. What is read from it must come back after it was
// written, and a page that is found for the table must be one that Windows numbers.
#include <cstdint>
#include <string>

#include <trovan/DBFCodePages.h>

#include "Require.h"
#include "support/TempFolder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const trovan::test::TempFolder folder;
  const std::wstring path = folder.File(L"towns.dbf");
  trovan::test::WriteBytes(folder.Path() / "towns.shp", "");
  trovan::test::WriteBytes(folder.Path() / "towns.cpg", std::string(data, data + size));

  // The length stands for the language byte, so that every input tries one.
  const auto language = static_cast<unsigned char>(size);
  const int page = trovan::CodePageForDBFTranslation(path, language);
  trovan::fuzz::Require(page > 1 && page <= 65535, "page " + std::to_string(page));

  const int named = trovan::CPGFileRead(path);
  if (named == 0) return 0;  // written, 0 is the page of the process
  trovan::CPGFileWrite(path, named);
  trovan::fuzz::Require(trovan::CPGFileRead(path) == named, "name " + std::to_string(named));
  return 0;
}
