// The Windows types and constants that the libraries speak of. On Windows they are the system's
// own; elsewhere they are declared here with the same names, widths and values.
//
// Differences off Windows: a wide character is the system's wchar_t, so LOGFONTW is 92 bytes only
// where wchar_t has 16 bits. Never write one to a file.
#pragma once

#if defined(_WIN32)

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
// Names of ours that the system's header takes as macros.
#undef GetTempPath
#undef GetTempFileName

#else

#include <cstdint>

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using LONG = std::int32_t;  // 32 bits whatever the system's long
using UINT = std::uint32_t;
using WCHAR = wchar_t;

// A rectangle; right and bottom lie, by convention, just outside it.
struct RECT {
  LONG left;
  LONG top;
  LONG right;
  LONG bottom;
};

// A palette entry: blue first. The reserved byte is no alpha.
struct RGBQUAD {
  BYTE rgbBlue;
  BYTE rgbGreen;
  BYTE rgbRed;
  BYTE rgbReserved;
};

inline constexpr int LF_FACESIZE = 32;  // characters of a face name, its NUL included
inline constexpr int MAX_PATH = 260;    // characters of a path, its NUL included

// A font as GDI describes it (Microsoft, "LOGFONTW structure").
struct LOGFONTW {
  LONG lfHeight;          // positive: cell height; negative: character height; 0: default
  LONG lfWidth;           // average character width; 0 keeps the font's aspect
  LONG lfEscapement;      // tenths of a degree
  LONG lfOrientation;     // tenths of a degree
  LONG lfWeight;          // 0 to 1000
  BYTE lfItalic;          // zero or not
  BYTE lfUnderline;       // zero or not
  BYTE lfStrikeOut;       // zero or not
  BYTE lfCharSet;         // ..._CHARSET
  BYTE lfOutPrecision;    // OUT_..._PRECIS
  BYTE lfClipPrecision;   // CLIP_...
  BYTE lfQuality;         // ..._QUALITY
  BYTE lfPitchAndFamily;  // ..._PITCH | FF_...
  WCHAR lfFaceName[LF_FACESIZE];
};

// Pen styles (Microsoft, "CreatePen function", "ExtCreatePen function").
inline constexpr DWORD PS_SOLID = 0;
inline constexpr DWORD PS_DASH = 1;
inline constexpr DWORD PS_DOT = 2;
inline constexpr DWORD PS_DASHDOT = 3;
inline constexpr DWORD PS_DASHDOTDOT = 4;
inline constexpr DWORD PS_NULL = 5;
inline constexpr DWORD PS_INSIDEFRAME = 6;
inline constexpr DWORD PS_USERSTYLE = 7;
inline constexpr DWORD PS_ALTERNATE = 8;
inline constexpr DWORD PS_STYLE_MASK = 0x0000000F;
inline constexpr DWORD PS_ENDCAP_ROUND = 0x00000000;
inline constexpr DWORD PS_ENDCAP_SQUARE = 0x00000100;
inline constexpr DWORD PS_ENDCAP_FLAT = 0x00000200;
inline constexpr DWORD PS_ENDCAP_MASK = 0x00000F00;
inline constexpr DWORD PS_JOIN_ROUND = 0x00000000;
inline constexpr DWORD PS_JOIN_BEVEL = 0x00001000;
inline constexpr DWORD PS_JOIN_MITER = 0x00002000;
inline constexpr DWORD PS_JOIN_MASK = 0x0000F000;
inline constexpr DWORD PS_COSMETIC = 0x00000000;
inline constexpr DWORD PS_GEOMETRIC = 0x00010000;
inline constexpr DWORD PS_TYPE_MASK = 0x000F0000;

// Character sets of LOGFONTW.
inline constexpr BYTE ANSI_CHARSET = 0;
inline constexpr BYTE DEFAULT_CHARSET = 1;
inline constexpr BYTE SYMBOL_CHARSET = 2;
inline constexpr BYTE MAC_CHARSET = 77;
inline constexpr BYTE SHIFTJIS_CHARSET = 128;
inline constexpr BYTE HANGUL_CHARSET = 129;
inline constexpr BYTE HANGEUL_CHARSET = 129;
inline constexpr BYTE JOHAB_CHARSET = 130;
inline constexpr BYTE GB2312_CHARSET = 134;
inline constexpr BYTE CHINESEBIG5_CHARSET = 136;
inline constexpr BYTE GREEK_CHARSET = 161;
inline constexpr BYTE TURKISH_CHARSET = 162;
inline constexpr BYTE VIETNAMESE_CHARSET = 163;
inline constexpr BYTE HEBREW_CHARSET = 177;
inline constexpr BYTE ARABIC_CHARSET = 178;
inline constexpr BYTE BALTIC_CHARSET = 186;
inline constexpr BYTE RUSSIAN_CHARSET = 204;
inline constexpr BYTE THAI_CHARSET = 222;
inline constexpr BYTE EASTEUROPE_CHARSET = 238;
inline constexpr BYTE OEM_CHARSET = 255;

// Output precision, clipping precision and quality of LOGFONTW.
inline constexpr BYTE OUT_DEFAULT_PRECIS = 0;
inline constexpr BYTE OUT_STRING_PRECIS = 1;
inline constexpr BYTE OUT_CHARACTER_PRECIS = 2;
inline constexpr BYTE OUT_STROKE_PRECIS = 3;
inline constexpr BYTE OUT_TT_PRECIS = 4;
inline constexpr BYTE OUT_DEVICE_PRECIS = 5;
inline constexpr BYTE OUT_RASTER_PRECIS = 6;
inline constexpr BYTE OUT_TT_ONLY_PRECIS = 7;
inline constexpr BYTE OUT_OUTLINE_PRECIS = 8;
inline constexpr BYTE OUT_SCREEN_OUTLINE_PRECIS = 9;
inline constexpr BYTE OUT_PS_ONLY_PRECIS = 10;
inline constexpr BYTE CLIP_DEFAULT_PRECIS = 0;
inline constexpr BYTE CLIP_CHARACTER_PRECIS = 1;
inline constexpr BYTE CLIP_STROKE_PRECIS = 2;
inline constexpr BYTE CLIP_MASK = 0x0F;
inline constexpr BYTE CLIP_LH_ANGLES = 0x10;
inline constexpr BYTE CLIP_TT_ALWAYS = 0x20;
inline constexpr BYTE CLIP_DFA_DISABLE = 0x40;
inline constexpr BYTE CLIP_EMBEDDED = 0x80;
inline constexpr BYTE DEFAULT_QUALITY = 0;
inline constexpr BYTE DRAFT_QUALITY = 1;
inline constexpr BYTE PROOF_QUALITY = 2;
inline constexpr BYTE NONANTIALIASED_QUALITY = 3;
inline constexpr BYTE ANTIALIASED_QUALITY = 4;
inline constexpr BYTE CLEARTYPE_QUALITY = 5;
inline constexpr BYTE CLEARTYPE_NATURAL_QUALITY = 6;

// Pitch (bits 0 and 1) and family (bits 4 to 7) of LOGFONTW.
inline constexpr BYTE DEFAULT_PITCH = 0;
inline constexpr BYTE FIXED_PITCH = 1;
inline constexpr BYTE VARIABLE_PITCH = 2;
inline constexpr BYTE MONO_FONT = 8;
inline constexpr BYTE FF_DONTCARE = 0x00;
inline constexpr BYTE FF_ROMAN = 0x10;
inline constexpr BYTE FF_SWISS = 0x20;
inline constexpr BYTE FF_MODERN = 0x30;
inline constexpr BYTE FF_SCRIPT = 0x40;
inline constexpr BYTE FF_DECORATIVE = 0x50;

// Weights of LOGFONTW.
inline constexpr LONG FW_DONTCARE = 0;
inline constexpr LONG FW_THIN = 100;
inline constexpr LONG FW_EXTRALIGHT = 200;
inline constexpr LONG FW_LIGHT = 300;
inline constexpr LONG FW_NORMAL = 400;
inline constexpr LONG FW_MEDIUM = 500;
inline constexpr LONG FW_SEMIBOLD = 600;
inline constexpr LONG FW_BOLD = 700;
inline constexpr LONG FW_EXTRABOLD = 800;
inline constexpr LONG FW_HEAVY = 900;

#endif
