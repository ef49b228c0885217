#include <win32/WinTypes.h>

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include <gtest/gtest.h>

namespace {

TEST(WinTypes, HaveTheWidthsOfWindows) {
  static_assert(sizeof(BYTE) == 1 && std::is_unsigned_v<BYTE>);
  static_assert(sizeof(WORD) == 2 && std::is_unsigned_v<WORD>);
  static_assert(sizeof(DWORD) == 4 && std::is_unsigned_v<DWORD>);
  static_assert(sizeof(UINT) == 4 && std::is_unsigned_v<UINT>);
  static_assert(sizeof(LONG) == 4 && std::is_signed_v<LONG>);
  static_assert(std::is_same_v<WCHAR, wchar_t>);
}

TEST(RECT, LiesInMemoryAsOnWindows) {
  EXPECT_EQ(sizeof(RECT), 16U);
  EXPECT_EQ(offsetof(RECT, left), 0U);
  EXPECT_EQ(offsetof(RECT, top), 4U);
  EXPECT_EQ(offsetof(RECT, right), 8U);
  EXPECT_EQ(offsetof(RECT, bottom), 12U);
}

TEST(RGBQUAD, LiesInMemoryAsOnWindows) {
  EXPECT_EQ(sizeof(RGBQUAD), 4U);
  EXPECT_EQ(offsetof(RGBQUAD, rgbBlue), 0U);
  EXPECT_EQ(offsetof(RGBQUAD, rgbGreen), 1U);
  EXPECT_EQ(offsetof(RGBQUAD, rgbRed), 2U);
  EXPECT_EQ(offsetof(RGBQUAD, rgbReserved), 3U);
}

TEST(LOGFONTW, LiesInMemoryAsOnWindowsButForTheWidthOfTheName) {
  EXPECT_EQ(LF_FACESIZE, 32);
  EXPECT_EQ(sizeof(LOGFONTW), 28 + 32 * sizeof(wchar_t));
  EXPECT_EQ(offsetof(LOGFONTW, lfHeight), 0U);
  EXPECT_EQ(offsetof(LOGFONTW, lfWidth), 4U);
  EXPECT_EQ(offsetof(LOGFONTW, lfEscapement), 8U);
  EXPECT_EQ(offsetof(LOGFONTW, lfOrientation), 12U);
  EXPECT_EQ(offsetof(LOGFONTW, lfWeight), 16U);
  EXPECT_EQ(offsetof(LOGFONTW, lfItalic), 20U);
  EXPECT_EQ(offsetof(LOGFONTW, lfUnderline), 21U);
  EXPECT_EQ(offsetof(LOGFONTW, lfStrikeOut), 22U);
  EXPECT_EQ(offsetof(LOGFONTW, lfCharSet), 23U);
  EXPECT_EQ(offsetof(LOGFONTW, lfOutPrecision), 24U);
  EXPECT_EQ(offsetof(LOGFONTW, lfClipPrecision), 25U);
  EXPECT_EQ(offsetof(LOGFONTW, lfQuality), 26U);
  EXPECT_EQ(offsetof(LOGFONTW, lfPitchAndFamily), 27U);
  EXPECT_EQ(offsetof(LOGFONTW, lfFaceName), 28U);
}

// The numbers stand in files and in interfaces, so none may drift.
TEST(GdiConstants, HaveTheValuesOfWindows) {
  const struct {
    const char* name;
    long long actual;
    long long expected;
  } cases[] = {
      {"MAX_PATH", MAX_PATH, 260},
      {"PS_SOLID", PS_SOLID, 0},
      {"PS_DASH", PS_DASH, 1},
      {"PS_DOT", PS_DOT, 2},
      {"PS_DASHDOT", PS_DASHDOT, 3},
      {"PS_DASHDOTDOT", PS_DASHDOTDOT, 4},
      {"PS_NULL", PS_NULL, 5},
      {"PS_INSIDEFRAME", PS_INSIDEFRAME, 6},
      {"PS_USERSTYLE", PS_USERSTYLE, 7},
      {"PS_ALTERNATE", PS_ALTERNATE, 8},
      {"PS_STYLE_MASK", PS_STYLE_MASK, 0xF},
      {"PS_ENDCAP_ROUND", PS_ENDCAP_ROUND, 0},
      {"PS_ENDCAP_SQUARE", PS_ENDCAP_SQUARE, 0x100},
      {"PS_ENDCAP_FLAT", PS_ENDCAP_FLAT, 0x200},
      {"PS_ENDCAP_MASK", PS_ENDCAP_MASK, 0xF00},
      {"PS_JOIN_ROUND", PS_JOIN_ROUND, 0},
      {"PS_JOIN_BEVEL", PS_JOIN_BEVEL, 0x1000},
      {"PS_JOIN_MITER", PS_JOIN_MITER, 0x2000},
      {"PS_JOIN_MASK", PS_JOIN_MASK, 0xF000},
      {"PS_COSMETIC", PS_COSMETIC, 0},
      {"PS_GEOMETRIC", PS_GEOMETRIC, 0x10000},
      {"PS_TYPE_MASK", PS_TYPE_MASK, 0xF0000},
      {"ANSI_CHARSET", ANSI_CHARSET, 0},
      {"DEFAULT_CHARSET", DEFAULT_CHARSET, 1},
      {"SYMBOL_CHARSET", SYMBOL_CHARSET, 2},
      {"MAC_CHARSET", MAC_CHARSET, 77},
      {"SHIFTJIS_CHARSET", SHIFTJIS_CHARSET, 128},
      {"HANGUL_CHARSET", HANGUL_CHARSET, 129},
      {"HANGEUL_CHARSET", HANGEUL_CHARSET, 129},
      {"JOHAB_CHARSET", JOHAB_CHARSET, 130},
      {"GB2312_CHARSET", GB2312_CHARSET, 134},
      {"CHINESEBIG5_CHARSET", CHINESEBIG5_CHARSET, 136},
      {"GREEK_CHARSET", GREEK_CHARSET, 161},
      {"TURKISH_CHARSET", TURKISH_CHARSET, 162},
      {"VIETNAMESE_CHARSET", VIETNAMESE_CHARSET, 163},
      {"HEBREW_CHARSET", HEBREW_CHARSET, 177},
      {"ARABIC_CHARSET", ARABIC_CHARSET, 178},
      {"BALTIC_CHARSET", BALTIC_CHARSET, 186},
      {"RUSSIAN_CHARSET", RUSSIAN_CHARSET, 204},
      {"THAI_CHARSET", THAI_CHARSET, 222},
      {"EASTEUROPE_CHARSET", EASTEUROPE_CHARSET, 238},
      {"OEM_CHARSET", OEM_CHARSET, 255},
      {"OUT_DEFAULT_PRECIS", OUT_DEFAULT_PRECIS, 0},
      {"OUT_STRING_PRECIS", OUT_STRING_PRECIS, 1},
      {"OUT_CHARACTER_PRECIS", OUT_CHARACTER_PRECIS, 2},
      {"OUT_STROKE_PRECIS", OUT_STROKE_PRECIS, 3},
      {"OUT_TT_PRECIS", OUT_TT_PRECIS, 4},
      {"OUT_DEVICE_PRECIS", OUT_DEVICE_PRECIS, 5},
      {"OUT_RASTER_PRECIS", OUT_RASTER_PRECIS, 6},
      {"OUT_TT_ONLY_PRECIS", OUT_TT_ONLY_PRECIS, 7},
      {"OUT_OUTLINE_PRECIS", OUT_OUTLINE_PRECIS, 8},
      {"OUT_SCREEN_OUTLINE_PRECIS", OUT_SCREEN_OUTLINE_PRECIS, 9},
      {"OUT_PS_ONLY_PRECIS", OUT_PS_ONLY_PRECIS, 10},
      {"CLIP_DEFAULT_PRECIS", CLIP_DEFAULT_PRECIS, 0},
      {"CLIP_CHARACTER_PRECIS", CLIP_CHARACTER_PRECIS, 1},
      {"CLIP_STROKE_PRECIS", CLIP_STROKE_PRECIS, 2},
      {"CLIP_MASK", CLIP_MASK, 0x0F},
      {"CLIP_LH_ANGLES", CLIP_LH_ANGLES, 0x10},
      {"CLIP_TT_ALWAYS", CLIP_TT_ALWAYS, 0x20},
      {"CLIP_DFA_DISABLE", CLIP_DFA_DISABLE, 0x40},
      {"CLIP_EMBEDDED", CLIP_EMBEDDED, 0x80},
      {"DEFAULT_QUALITY", DEFAULT_QUALITY, 0},
      {"DRAFT_QUALITY", DRAFT_QUALITY, 1},
      {"PROOF_QUALITY", PROOF_QUALITY, 2},
      {"NONANTIALIASED_QUALITY", NONANTIALIASED_QUALITY, 3},
      {"ANTIALIASED_QUALITY", ANTIALIASED_QUALITY, 4},
      {"CLEARTYPE_QUALITY", CLEARTYPE_QUALITY, 5},
      {"CLEARTYPE_NATURAL_QUALITY", CLEARTYPE_NATURAL_QUALITY, 6},
      {"DEFAULT_PITCH", DEFAULT_PITCH, 0},
      {"FIXED_PITCH", FIXED_PITCH, 1},
      {"VARIABLE_PITCH", VARIABLE_PITCH, 2},
      {"MONO_FONT", MONO_FONT, 8},
      {"FF_DONTCARE", FF_DONTCARE, 0x00},
      {"FF_ROMAN", FF_ROMAN, 0x10},
      {"FF_SWISS", FF_SWISS, 0x20},
      {"FF_MODERN", FF_MODERN, 0x30},
      {"FF_SCRIPT", FF_SCRIPT, 0x40},
      {"FF_DECORATIVE", FF_DECORATIVE, 0x50},
      {"FW_DONTCARE", FW_DONTCARE, 0},
      {"FW_THIN", FW_THIN, 100},
      {"FW_EXTRALIGHT", FW_EXTRALIGHT, 200},
      {"FW_LIGHT", FW_LIGHT, 300},
      {"FW_NORMAL", FW_NORMAL, 400},
      {"FW_MEDIUM", FW_MEDIUM, 500},
      {"FW_SEMIBOLD", FW_SEMIBOLD, 600},
      {"FW_BOLD", FW_BOLD, 700},
      {"FW_EXTRABOLD", FW_EXTRABOLD, 800},
      {"FW_HEAVY", FW_HEAVY, 900},
  };
  for (const auto& c : cases) EXPECT_EQ(c.actual, c.expected) << c.name;
}

}  // namespace
