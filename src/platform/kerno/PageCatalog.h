// Which converter does the work for which code page.
#pragma once

namespace kerno {

enum class Engine {
  kSymbolTable,     // symbol fonts: no converter, the rule is arithmetic
  kIcuTable,        // one or two bytes a character; tables filled from ICU
  kIconvTable,      // the same, filled from the system's iconv
  kIcuAsciiStream,  // ICU itself, and bytes below 0x80 between characters are ASCII
  kIcuStream,       // ICU itself: pages with states, UTF-16, UTF-32
  kUtf8,            // our own
};

struct PageConverter {
  int codePage;
  Engine engine;
  const char* name;  // as the converter library knows it; null where none is asked
};

// Null for a page that nothing here can convert. Numbers that stand for other pages (0 to 3) are
// not in the catalog.
const PageConverter* FindConverter(int codePage);

}  // namespace kerno
