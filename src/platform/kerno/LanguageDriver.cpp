#include <array>

#include <kerno/CodePageInfo.h>

namespace kerno {
namespace {

struct LanguageDriver {
  unsigned char id;
  int codePage;
};

// Sources: Microsoft, "Code Pages Supported by Visual FoxPro", and ESRI, "Setting the code page for
// shapefiles". Left out: Kamenicky (0x68) and Mazovia (0x69), which are no Windows code pages, and
// ids that a single program made up. 0x57 means the writer's own ANSI page; 1252 is what nearly
// every such file holds.
constexpr LanguageDriver kLanguageDrivers[] = {
    {0x01, 437},    // U.S. MS-DOS
    {0x02, 850},    // International (multilingual) MS-DOS
    {0x03, 1252},   // Windows ANSI
    {0x04, 10000},  // Standard Macintosh
    {0x08, 865},    // Danish OEM
    {0x09, 437},    // Dutch OEM
    {0x0A, 850},    // Dutch OEM, secondary
    {0x0B, 437},    // Finnish OEM
    {0x0D, 437},    // French OEM
    {0x0E, 850},    // French OEM, secondary
    {0x0F, 437},    // German OEM
    {0x10, 850},    // German OEM, secondary
    {0x11, 437},    // Italian OEM
    {0x12, 850},    // Italian OEM, secondary
    {0x13, 932},    // Japanese Shift-JIS
    {0x14, 850},    // Spanish OEM, secondary
    {0x15, 437},    // Swedish OEM
    {0x16, 850},    // Swedish OEM, secondary
    {0x17, 865},    // Norwegian OEM
    {0x18, 437},    // Spanish OEM
    {0x19, 437},    // English OEM (Britain)
    {0x1A, 850},    // English OEM (Britain), secondary
    {0x1B, 437},    // English OEM (U.S.)
    {0x1C, 863},    // French OEM (Canada)
    {0x1D, 850},    // French OEM, secondary (Canada in the Borland list)
    {0x1F, 852},    // Czech OEM
    {0x22, 852},    // Hungarian OEM
    {0x23, 852},    // Polish OEM
    {0x24, 860},    // Portuguese OEM
    {0x25, 850},    // Portuguese OEM, secondary (Brazil)
    {0x26, 866},    // Russian OEM
    {0x37, 850},    // English OEM (U.S.), secondary
    {0x40, 852},    // Romanian OEM
    {0x4D, 936},    // Chinese Simplified GBK (PRC)
    {0x4E, 949},    // Korean (ANSI/OEM)
    {0x4F, 950},    // Chinese Traditional Big5 (Taiwan)
    {0x50, 874},    // Thai (ANSI/OEM)
    {0x57, 1252},   // ANSI ("current ANSI code page")
    {0x58, 1252},   // Western European ANSI
    {0x59, 1252},   // Spanish ANSI
    {0x64, 852},    // Eastern European MS-DOS
    {0x65, 866},    // Russian MS-DOS
    {0x66, 865},    // Nordic MS-DOS
    {0x67, 861},    // Icelandic MS-DOS
    {0x6A, 737},    // Greek MS-DOS (437G)
    {0x6B, 857},    // Turkish MS-DOS
    {0x6C, 863},    // French Canadian MS-DOS
    {0x78, 950},    // Chinese Traditional Windows (Hong Kong, Taiwan)
    {0x79, 949},    // Korean Windows
    {0x7A, 936},    // Chinese Simplified Windows (PRC, Singapore)
    {0x7B, 932},    // Japanese Windows
    {0x7C, 874},    // Thai Windows
    {0x7D, 1255},   // Hebrew Windows
    {0x7E, 1256},   // Arabic Windows
    {0x86, 737},    // Greek OEM
    {0x87, 852},    // Slovenian OEM
    {0x88, 857},    // Turkish OEM
    {0x96, 10007},  // Russian Macintosh
    {0x97, 10029},  // Eastern European Macintosh
    {0x98, 10006},  // Greek Macintosh
    {0xC8, 1250},   // Eastern European Windows
    {0xC9, 1251},   // Russian Windows
    {0xCA, 1254},   // Turkish Windows
    {0xCB, 1253},   // Greek Windows
    {0xCC, 1257},   // Baltic Windows
};

constexpr int kUnknown = -1;

constexpr std::array<int, 256> PageOfEachId() {
  std::array<int, 256> pages{};
  pages.fill(kUnknown);
  for (const LanguageDriver& driver : kLanguageDrivers) pages[driver.id] = driver.codePage;
  return pages;
}

constexpr std::array<int, 256> kPageOfId = PageOfEachId();

}  // namespace

int MapDBFLangIDtoCodePage(unsigned char langID) { return kPageOfId[langID]; }

}  // namespace kerno
