#include "WindowsCorrections.h"

#include <algorithm>
#include <iterator>

namespace kerno {
namespace {

struct Correction {
  int codePage;
  unsigned char byte;
  char32_t character;
};

// Source: Unicode Consortium, vendor mappings "MICSFT" (PC, EBCDIC, MAC, WindowsBestFit).
constexpr Correction kCorrections[] = {
    // The micro sign, where ICU has the Greek letter mu.
    {437, 0xE6, 0x00B5},
    {860, 0xE6, 0x00B5},
    {861, 0xE6, 0x00B5},
    {862, 0xE6, 0x00B5},
    {863, 0xE6, 0x00B5},
    {865, 0xE6, 0x00B5},

    // Bytes without a character stay themselves in the range of the C1 controls.
    {720, 0x80, 0x0080},
    {720, 0x81, 0x0081},
    {720, 0x84, 0x0084},
    {720, 0x86, 0x0086},
    {720, 0x8D, 0x008D},
    {720, 0x8E, 0x008E},
    {720, 0x8F, 0x008F},
    {720, 0x90, 0x0090},

    {852, 0xAA, 0x00AC},  // not sign
    {864, 0x25, 0x066A},  // Arabic percent sign
    {864, 0xD7, 0xFEC1},  // isolated, where ICU has the initial form
    {864, 0xD8, 0xFEC5},
    {864, 0xF1, 0x0651},  // shadda that combines
    {869, 0x88, 0x00B7},  // middle dot
    {869, 0xEF, 0x0384},  // Greek tonos

    {1026, 0x9A, 0x00AA},   // feminine ordinal, where ICU has the lira sign of 2012
    {20424, 0xB3, 0x00B7},  // middle dot, where ICU has the bullet
    {20424, 0xBC, 0x00AF},  // macron, where ICU has the overline

    // Icelandic Macintosh: glibc's table has Croatian letters and signs of other pages.
    {10079, 0xA0, 0x00DD},
    {10079, 0xC6, 0x2206},
    {10079, 0xD0, 0x2013},
    {10079, 0xD1, 0x2014},
    {10079, 0xD7, 0x25CA},
    {10079, 0xDB, 0x20AC},
    {10079, 0xDC, 0x00D0},
    {10079, 0xDD, 0x00F0},
    {10079, 0xE0, 0x00FD},
    {10079, 0xF0, 0xF8FF},
    {10079, 0xF6, 0x02C6},
    {10079, 0xF7, 0x02DC},

    {1361, 0x5C, 0x005C},  // backslash, where glibc has the won sign

    // From here on: bytes without a character, which Windows carries through in private use.
    {932, 0x80, 0x0080},
    {932, 0xA0, 0x00A0},
    {932, 0xFD, 0xF8F1},
    {932, 0xFE, 0xF8F2},
    {932, 0xFF, 0xF8F3},
    {1253, 0xAA, 0xF8F9},
    {1253, 0xD2, 0xF8FA},
    {1253, 0xFF, 0xF8FB},
    {1255, 0xCA, 0x05BA},  // holam haser for vav: a character that is newer than ICU's table
    {1255, 0xD9, 0xF88D},
    {1255, 0xDA, 0xF88E},
    {1255, 0xDB, 0xF88F},
    {1255, 0xDC, 0xF890},
    {1255, 0xDD, 0xF891},
    {1255, 0xDE, 0xF892},
    {1255, 0xDF, 0xF893},
    {1255, 0xFB, 0xF894},
    {1255, 0xFC, 0xF895},
    {1255, 0xFF, 0xF896},
    {1257, 0xA1, 0xF8FC},
    {1257, 0xA5, 0xF8FD},
};

// The pages whose ICU tables come from IBM PCs. There three control bytes change places: 1A is read
// as 1C, 1C as 7F, 7F as 1A. dBASE ends text with 1A, so the difference shows.
constexpr int kIbmPcPages[] = {437, 720, 737, 775, 850, 852, 855, 857, 858,
                               860, 861, 862, 863, 864, 865, 866, 869, 932};

constexpr unsigned char kMovedControls[] = {0x1A, 0x1C, 0x7F};

void Set(SingleBytes& singles, unsigned char byte, char32_t character) {
  singles[byte] = {DecodedCharacter::kCharacter, 1, character};
}

}  // namespace

void CorrectToWindows(int codePage, SingleBytes& singles) {
  if (std::binary_search(std::begin(kIbmPcPages), std::end(kIbmPcPages), codePage)) {
    for (const unsigned char control : kMovedControls) Set(singles, control, control);
  }
  for (const Correction& correction : kCorrections) {
    if (correction.codePage == codePage) Set(singles, correction.byte, correction.character);
  }
}

}  // namespace kerno
