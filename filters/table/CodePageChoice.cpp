#include "CodePageChoice.h"

#include <cstddef>
#include <cstdio>

#include <corvel/Path.h>
#include <corvel/Text.h>
#include <kerno/CodePageInfo.h>
#include <trovan/DBFCodePages.h>

#include "filters/support/CodePageNames.h"
#include "filters/table/SideFiles.h"

namespace trovan::filters {
namespace {

std::string Hex(std::uint8_t byte) {
  char text[8];
  std::snprintf(text, sizeof text, "0x%02X", byte);
  return text;
}

std::string FileName(const std::wstring& path) {
  const std::string bytes = corvel::Utf8FromWide(path);
  const std::size_t slash = bytes.find_last_of('/');
  return slash == std::string::npos ? bytes : bytes.substr(slash + 1);
}

std::string LanguageReason(const TableLayout& layout, const std::string& otherwise) {
  const std::string byte = "language byte " + Hex(layout.languageByte);
  if (kerno::MapDBFLangIDtoCodePage(layout.languageByte) >= 0) return byte + " stands for it";
  return byte + " stands for no code page; " + otherwise;
}

void RemarkUnseen(const std::optional<SideFile>& side, const char* extension,
                  std::vector<std::string>& remarks) {
  if (!side || side->foundInSmallLetters) return;
  remarks.push_back(FileName(side->path) + " is not looked at: its extension has to be " +
                    extension + " in small letters; rename it");
}

}  // namespace

CodePageChoice ChooseCodePage(const std::wstring& path, const TableLayout& layout,
                              std::optional<int> asked) {
  CodePageChoice choice;
  choice.number = asked ? *asked : CodePageForDBFTranslation(path, layout.languageByte);
  choice.name = CodePageName(choice.number);
  if (asked) {
    choice.reason = "asked for";
    return choice;
  }
  const auto shapefile = FindSideFile(path, L".shp");
  const auto side = FindSideFile(path, L".cpg");
  RemarkUnseen(shapefile, ".shp", choice.remarks);
  RemarkUnseen(side, ".cpg", choice.remarks);
  if (!shapefile || !shapefile->foundInSmallLetters) {
    choice.reason = LanguageReason(layout, "a table without a shapefile is then read in it");
    if (side) {
      choice.remarks.push_back(FileName(side->path) +
                               " has no say: there is no shapefile (.shp) beside the table");
    }
    return choice;
  }
  constexpr int kByNumber = 2;
  const kerno::CodePageInfo pages(kByNumber);
  const int named = CPGFileRead(path);
  std::size_t index = 0;
  if (named != 0 && named == choice.number && pages.GetIndexFromPageNumber(named, index)) {
    choice.reason = FileName(side->path) + " names it";
    return choice;
  }
  if (side && side->foundInSmallLetters) {
    choice.remarks.push_back(FileName(side->path) + " names no known code page");
  }
  choice.reason = LanguageReason(layout, "it is what shapefiles are read in by default");
  return choice;
}

}  // namespace trovan::filters
