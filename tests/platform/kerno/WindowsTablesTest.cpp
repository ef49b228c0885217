// What single bytes mean: as on Windows, with other converters as witnesses where they agree.
#include <bit>
#include <cstring>
#include <iconv.h>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <kerno/TextCodec.h>

#include "platform/kerno/CodecTesting.h"

namespace kerno {
namespace {

constexpr wchar_t kReplacement = 0xFFFD;

// Pages where each character is one byte.
constexpr int kSingleBytePages[] = {
    37,    42,    437,   500,   708,   720,   737,   775,   850,   852,   855,   857,   858,
    860,   861,   862,   863,   864,   865,   866,   869,   870,   874,   875,   1026,  1047,
    1140,  1141,  1142,  1143,  1144,  1145,  1146,  1147,  1148,  1149,  1250,  1251,  1252,
    1253,  1254,  1255,  1256,  1257,  1258,  10000, 10006, 10007, 10017, 10029, 10079, 10081,
    20105, 20106, 20107, 20108, 20127, 20273, 20277, 20278, 20280, 20284, 20285, 20290, 20297,
    20420, 20423, 20424, 20838, 20866, 20871, 20880, 20905, 21025, 21866, 28591, 28592, 28593,
    28594, 28595, 28596, 28597, 28598, 28599, 28603, 28605, 38598};

// A page that knows all 256 bytes.
void ExpectRoundTrip(int page, int byte) {
  TextCodec codec(page);
  std::size_t unmappable = 0;
  const std::wstring text = codec.Decode(Byte(byte));
  EXPECT_EQ(codec.Encode(text, &unmappable), Byte(byte)) << page << " byte " << byte;
  EXPECT_EQ(unmappable, 0U);
}

struct Meaning {
  int byte;
  wchar_t character;
};

void ExpectMeanings(int page, const std::vector<Meaning>& meanings) {
  TextCodec codec(page);
  for (const auto& [byte, character] : meanings) {
    SCOPED_TRACE(testing::Message() << "page " << page << " byte " << std::hex << byte);
    EXPECT_EQ(codec.Decode(Byte(byte)), std::wstring(1, character));
    EXPECT_EQ(codec.Encode(std::wstring(1, character)), Byte(byte));
  }
}

TEST(WindowsTables, ReadOneCharacterFromEachByteAndWriteItBack) {
  for (const int page : kSingleBytePages) {
    TextCodec codec(page);
    for (int byte = 0; byte < 256; ++byte) {
      SCOPED_TRACE(testing::Message() << "page " << page << " byte " << std::hex << byte);
      std::size_t malformed = 0;
      const std::wstring text = codec.Decode(Byte(byte), &malformed);
      ASSERT_EQ(text.size(), 1U);
      ASSERT_EQ(malformed, text[0] == kReplacement ? 1U : 0U);
      if (malformed != 0) continue;
      std::size_t unmappable = 0;
      const std::string bytes = codec.Encode(text, &unmappable);
      EXPECT_EQ(unmappable, 0U);
      // The Thai EBCDIC page writes five marks twice; the lower byte is written.
      if (page == 20838 &&
          (byte == 0xED || byte == 0xEE || byte == 0xEF || byte == 0xFD || byte == 0xFE)) {
        EXPECT_LT(bytes, Byte(byte));
        EXPECT_EQ(codec.Decode(bytes), text);
      } else {
        EXPECT_EQ(bytes, Byte(byte));
      }
    }
  }
}

TEST(WindowsTables, ReadWholeTextsLikeSingleBytes) {
  for (const int page : kSingleBytePages) {
    TextCodec codec(page);
    std::string bytes;
    std::wstring text;
    for (int byte = 0; byte < 256; ++byte) {
      bytes += Byte(byte);
      text += codec.Decode(Byte(byte));
    }
    EXPECT_EQ(codec.Decode(bytes), text) << page;
  }
}

TEST(WindowsTables, KeepTheControlBytesOfIbmPcPages) {
  for (const int page :
       {437, 720, 737, 775, 850, 852, 855, 857, 858, 860, 861, 862, 863, 864, 865, 866, 869, 932}) {
    std::vector<Meaning> controls = {{0x7F, 0x7F}};
    for (int byte = 0; byte < 0x20; ++byte) controls.push_back({byte, static_cast<wchar_t>(byte)});
    ExpectMeanings(page, controls);
  }
}

TEST(WindowsTables, ReadTheMicroSignWhereOthersReadGreekMu) {
  for (const int page : {437, 860, 861, 862, 863, 865}) ExpectMeanings(page, {{0xE6, 0x00B5}});
}

TEST(WindowsTables, KeepUnassignedBytesOfTheWindowsPages) {
  ExpectMeanings(874, {{0x81, 0x81},
                       {0x84, 0x84},
                       {0x86, 0x86},
                       {0x90, 0x90},
                       {0x98, 0x98},
                       {0x9F, 0x9F},
                       {0xDB, 0xF8C1},
                       {0xDC, 0xF8C2},
                       {0xDD, 0xF8C3},
                       {0xDE, 0xF8C4},
                       {0xFC, 0xF8C5},
                       {0xFD, 0xF8C6},
                       {0xFE, 0xF8C7},
                       {0xFF, 0xF8C8}});
  ExpectMeanings(1250, {{0x81, 0x81}, {0x83, 0x83}, {0x88, 0x88}, {0x90, 0x90}, {0x98, 0x98}});
  ExpectMeanings(1251, {{0x98, 0x98}});
  ExpectMeanings(1252, {{0x81, 0x81}, {0x8D, 0x8D}, {0x8F, 0x8F}, {0x90, 0x90}, {0x9D, 0x9D}});
  ExpectMeanings(1253,
                 {{0x81, 0x81}, {0x9F, 0x9F}, {0xAA, 0xF8F9}, {0xD2, 0xF8FA}, {0xFF, 0xF8FB}});
  ExpectMeanings(1254, {{0x81, 0x81}, {0x8D, 0x8D}, {0x8E, 0x8E}, {0x9E, 0x9E}});
  ExpectMeanings(1255, {{0x81, 0x81},
                        {0x9F, 0x9F},
                        {0xCA, 0x05BA},
                        {0xD9, 0xF88D},
                        {0xDA, 0xF88E},
                        {0xDB, 0xF88F},
                        {0xDC, 0xF890},
                        {0xDD, 0xF891},
                        {0xDE, 0xF892},
                        {0xDF, 0xF893},
                        {0xFB, 0xF894},
                        {0xFC, 0xF895},
                        {0xFF, 0xF896}});
  ExpectMeanings(1257, {{0x81, 0x81}, {0x9F, 0x9F}, {0xA1, 0xF8FC}, {0xA5, 0xF8FD}});
  ExpectMeanings(1258, {{0x81, 0x81}, {0x8A, 0x8A}, {0x9E, 0x9E}});
}

TEST(WindowsTables, KnowAllBytesOfTheWindowsPages) {
  for (const int page : {874, 1250, 1251, 1252, 1253, 1254, 1255, 1256, 1257, 1258}) {
    for (int byte = 0; byte < 256; ++byte) ExpectRoundTrip(page, byte);
  }
}

TEST(WindowsTables, DifferFromIbmsInSomeBytesOfDosPages) {
  ExpectMeanings(720, {{0x80, 0x80},
                       {0x81, 0x81},
                       {0x84, 0x84},
                       {0x86, 0x86},
                       {0x8D, 0x8D},
                       {0x8E, 0x8E},
                       {0x8F, 0x8F},
                       {0x90, 0x90}});
  ExpectMeanings(852, {{0xAA, 0x00AC}});
  ExpectMeanings(864, {{0x25, 0x066A}, {0xD7, 0xFEC1}, {0xD8, 0xFEC5}, {0xF1, 0x0651}});
  ExpectMeanings(869, {{0x88, 0x00B7}, {0xEF, 0x0384}});
}

TEST(WindowsTables, DifferFromIbmsInSomeBytesOfEbcdicPages) {
  ExpectMeanings(1026, {{0x9A, 0x00AA}});
  ExpectMeanings(20424, {{0xB3, 0x00B7}, {0xBC, 0x00AF}});
}

TEST(WindowsTables, HaveTheIcelandicLettersOfTheMacintosh) {
  ExpectMeanings(10079, {{0xA0, L'Ý'},
                         {0xC6, L'∆'},
                         {0xD0, L'–'},
                         {0xD1, L'—'},
                         {0xD7, L'◊'},
                         {0xDB, L'€'},
                         {0xDC, L'Ð'},
                         {0xDD, L'ð'},
                         {0xDE, L'Þ'},
                         {0xDF, L'þ'},
                         {0xE0, L'ý'},
                         {0xF0, 0xF8FF},
                         {0xF6, L'ˆ'},
                         {0xF7, 0x02DC}});
}

TEST(WindowsTables, ReadABackslashInJohab) { ExpectMeanings(1361, {{0x5C, L'\\'}}); }

TEST(WindowsTables, KeepSingleBytesOfShiftJis) {
  ExpectMeanings(932, {{0x5C, L'\\'},
                       {0x7E, L'~'},
                       {0x80, 0x80},
                       {0xA0, 0xA0},
                       {0xA1, 0xFF61},
                       {0xDF, 0xFF9F},
                       {0xFD, 0xF8F1},
                       {0xFE, 0xF8F2},
                       {0xFF, 0xF8F3}});
}

TEST(WindowsTables, ReadSymbolFontsInPrivateUse) {
  TextCodec codec(42);
  for (int byte = 0; byte < 256; ++byte) {
    const int character = byte < 0x20 ? byte : 0xF000 + byte;
    EXPECT_EQ(codec.Decode(Byte(byte)), std::wstring(1, static_cast<wchar_t>(character)));
    EXPECT_EQ(codec.Encode(std::wstring(1, static_cast<wchar_t>(character))), Byte(byte));
  }
  EXPECT_EQ(codec.Encode(L"\uF01F\uF100A"), "???");
}

// The system's iconv: U+FFFD for a byte that it refuses.
std::wstring DecodeByteWithIconv(iconv_t converter, int byte) {
  char in = static_cast<char>(byte);
  char* source = &in;
  std::size_t left = 1;
  char out[8];
  char* target = out;
  std::size_t room = sizeof out;
  iconv(converter, nullptr, nullptr, nullptr, nullptr);
  if (iconv(converter, &source, &left, &target, &room) != 0) return std::wstring(1, kReplacement);
  char32_t character = 0;
  std::memcpy(&character, out, sizeof character);
  return std::wstring(1, static_cast<wchar_t>(character));
}

TEST(WindowsTables, AgreeWithIconvWhereNobodyDiffers) {
  const std::pair<int, const char*> pages[] = {
      {37, "IBM037"},         {500, "IBM500"},       {1047, "CP1047"},
      {1140, "CP1140"},       {1141, "CP1141"},      {1142, "CP1142"},
      {1143, "CP1143"},       {1144, "CP1144"},      {1145, "CP1145"},
      {1146, "CP1146"},       {1147, "CP1147"},      {1148, "CP1148"},
      {1149, "CP1149"},       {1256, "CP1256"},      {10029, "MAC-CENTRALEUROPE"},
      {20273, "IBM273"},      {20277, "IBM277"},     {20280, "IBM280"},
      {20284, "IBM284"},      {20297, "IBM297"},     {20866, "KOI8-R"},
      {21025, "IBM1025"},     {21866, "KOI8-U"},     {28591, "ISO-8859-1"},
      {28592, "ISO-8859-2"},  {28593, "ISO-8859-3"}, {28594, "ISO-8859-4"},
      {28595, "ISO-8859-5"},  {28596, "ISO-8859-6"}, {28597, "ISO-8859-7"},
      {28598, "ISO-8859-8"},  {28599, "ISO-8859-9"}, {28603, "ISO-8859-13"},
      {28605, "ISO-8859-15"},
  };
  constexpr bool kLittle = std::endian::native == std::endian::little;
  for (const auto& [page, name] : pages) {
    TextCodec codec(page);
    const iconv_t converter = iconv_open(kLittle ? "UTF-32LE" : "UTF-32BE", name);
    ASSERT_NE(converter, reinterpret_cast<iconv_t>(-1)) << name;
    for (int byte = 0; byte < 256; ++byte) {
      EXPECT_EQ(codec.Decode(Byte(byte)), DecodeByteWithIconv(converter, byte))
          << "page " << page << " byte " << byte;
    }
    iconv_close(converter);
  }
}

}  // namespace
}  // namespace kerno
