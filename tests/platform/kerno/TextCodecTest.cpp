#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <corvel/Exception.h>
#include <kerno/TextCodec.h>
#include <win32/Utf8.h>
#include <win32/WinApi.h>

#include "platform/kerno/CodecTesting.h"

namespace kerno {
namespace {

using testing::HasSubstr;

constexpr int kWithoutConverter[] = {10001, 10002, 10003, 10004, 10005, 10008, 10010, 10021, 10082,
                                     20000, 20001, 20002, 20003, 20004, 20005, 20833, 20924, 29001};

std::string MessageOfRefusal(int codePage) {
  try {
    TextCodec codec(codePage);
  } catch (const corvel::Exception& error) {
    EXPECT_EQ(error.Module(), "kerno");
    return error.Message();
  }
  return {};
}

TEST(TextCodec, OpensEveryListedPageOrRefusesIt) {
  for (const int page : ListedPages()) {
    const bool without =
        std::binary_search(std::begin(kWithoutConverter), std::end(kWithoutConverter), page);
    EXPECT_EQ(TextCodec::IsConvertible(page), !without) << page;
    if (without) {
      EXPECT_THROW(TextCodec codec(page), corvel::Exception) << page;
    } else {
      EXPECT_EQ(TextCodec(page).CodePage(), page);
    }
  }
}

TEST(TextCodec, SaysWhichPageItRefusesAndWhatToDo) {
  const std::string message = MessageOfRefusal(20000);
  EXPECT_THAT(message, HasSubstr("code page 20000 (Chinese Traditional (CNS))"));
  EXPECT_THAT(message, HasSubstr("Choose another code page"));
}

TEST(TextCodec, RefusesNumbersThatAreNoCodePage) {
  for (const int page : {-1, 4, 41, 43, 819, 28600, 65002, 1'000'000}) {
    EXPECT_FALSE(TextCodec::IsConvertible(page)) << page;
    EXPECT_THAT(MessageOfRefusal(page), HasSubstr("code page " + std::to_string(page) + ". "));
  }
}

TEST(TextCodec, TakesTheSpecialNumbersForThePagesTheyStandFor) {
  const auto ansi = static_cast<int>(GetACP());
  EXPECT_EQ(TextCodec(0).CodePage(), ansi);
  EXPECT_EQ(TextCodec(1).CodePage(), 437);
  EXPECT_EQ(TextCodec(2).CodePage(), 10000);
  EXPECT_EQ(TextCodec(3).CodePage(), ansi);
  for (const int page : {0, 1, 2, 3, 42}) EXPECT_TRUE(TextCodec::IsConvertible(page)) << page;
}

TEST(TextCodec, DecodesWellKnownLettersOfEachFamily) {
  const struct {
    int page;
    const char* bytes;
    const wchar_t* text;
  } cases[] = {
      {437, "\x81\x9B\xE1", L"ü¢ß"},
      {437, "\xC9\xCD\xBB", L"╔═╗"},
      {708, "\xC7\xE4", L"ال"},
      {720, "\x9F\xEE", L"اى"},
      {737, "\x80\x98", L"Αα"},
      {775, "\xD0\xA0", L"ąĀ"},
      {850, "\x84\x9D\xD5", L"äØı"},
      {852, "\x88\xA5\x9F", L"łąč"},
      {855, "\xA0\xA1", L"аА"},
      {857, "\x8D\x98\xA7", L"ıİğ"},
      {858, "\xD5", L"€"},
      {860, "\x84\xB5", L"ã╡"},
      {861, "\x8B\x8C", L"Ðð"},
      {862, "\x80\x9A", L"את"},
      {863, "\x8F\x84", L"§Â"},
      {864, "\x25\xE1\xD7", L"\u066A\uFED3\uFEC1"},
      {865, "\x9B\x9D\x8F", L"øØÅ"},
      {866, "\x8C\xA8\xE0\xF1", L"Мирё"},
      {869, "\xA4\xD6\x88\xEF", L"Αα\u00B7\u0384"},
      {874, "\xA1\xE4\xB7\xC2", L"กไทย"},
      {932, "\x93\x8C\x8B\x9E\xB1\\~", L"東京ｱ\\~"},
      {936, "\xB1\xB1\xBE\xA9\x80", L"北京€"},
      {949, "\xBC\xAD\xBF\xEF", L"서울"},
      {950, "\xA5\x78\xA5\x5F", L"台北"},
      {1250, "\xB9\xE6\x8C", L"ąćŚ"},
      {1251, "\xCC\xE8\xF0", L"Мир"},
      {1252, "\x80\xE9\xFF", L"€éÿ"},
      {1253, "\xC1\xF9", L"Αω"},
      {1254, "\xD0\xFD", L"Ğı"},
      {1255, "\xE0\xFA", L"את"},
      {1256, "\xC7\xE1", L"ال"},
      {1257, "\xE0\xD0", L"ąŠ"},
      {1258, "\xD0\xFE\xD2", L"Đ₫\u0309"},
      {37, "\xC8\x85\x93\x93\x96\x4B\x25", L"Hello.\n"},
      {500, "\x4F\x5A", L"!]"},
      {870, "\xC8\xA0", L"Hą"},
      {875, "\x41\xC1", L"ΑA"},
      {1026, "\x4A\x79", L"Çı"},
      {1047, "\xAD\xBD", L"[]"},
      {1140, "\x9F", L"€"},
      {1149, "\x9F", L"€"},
      {20273, "\x4A\xC0", L"Ää"},
      {20277, "\x5B\xD0", L"Åå"},
      {20290, "\x81", L"ｱ"},
      {20420, "\x56", L"ا"},
      {20423, "\x41\xC1", L"ΑA"},
      {20424, "\x41", L"א"},
      {20838, "\x42", L"ก"},
      {20880, "\x77", L"а"},
      {20905, "\x79", L"ı"},
      {21025, "\x77", L"а"},
      {1361, "\xAC\xE1\xB6\x89\\", L"서울\\"},
      {10000, "\x80\xCA\xDB", L"Ä\u00A0€"},
      {10006, "\xB0\xE1", L"Αα"},
      {10007, "\x80\xE0", L"Аа"},
      {10017, "\xA2\xB6", L"Ґґ"},
      {10029, "\x84\x88", L"Ąą"},
      {10079, "\xDC\xDD", L"Ðð"},
      {10081, "\xDD\xDA", L"ıĞ"},
      {20105, "A~", L"A~"},
      {20106, "{|}~", L"äöüß"},
      {20107, "{|}", L"äöå"},
      {20108, "{|}", L"æøå"},
      {20127, "A~", L"A~"},
      {20261,
       "\xC8"
       "a\xE9",
       L"äØ"},
      {20269,
       "\xC8"
       "a\xE9",
       L"äØ"},
      {20866, "\xED\xC9\xD2", L"Мир"},
      {21866, "\xA4\xA7", L"єї"},
      {28591, "\xE9", L"é"},
      {28592, "\xB1", L"ą"},
      {28593, "\xB1", L"ħ"},
      {28594, "\xB1", L"ą"},
      {28595, "\xBC\xD8\xE0", L"Мир"},
      {28596, "\xC7\xE4", L"ال"},
      {28597, "\xC1\xF9\xA4", L"Αω€"},
      {28598, "\xE0\xFA", L"את"},
      {28599, "\xD0\xFD", L"Ğı"},
      {28603, "\xE0", L"ą"},
      {28605, "\xA4", L"€"},
      {38598, "\xE0\xFA", L"את"},
      {20932, "\xC5\xEC\xB5\xFE\x8E\xB1", L"東京ｱ"},
      {51932, "\xC5\xEC\xB5\xFE", L"東京"},
      {20936, "\xB1\xB1\xBE\xA9", L"北京"},
      {51936, "\xB1\xB1\xBE\xA9", L"北京"},
      {20949, "\xBC\xAD\xBF\xEF", L"서울"},
      {51949, "\xBC\xAD\xBF\xEF", L"서울"},
      {50220, "\x1B$BEl5~\x1B(B!", L"東京!"},
      {50221, "\x1B$BEl5~\x1B(I1\x1B(B!", L"東京ｱ!"},
      {50222,
       "\x1B$BEl5~\x1B(B\x0E"
       "1\x0F!",
       L"東京ｱ!"},
      {50225, "\x1B$)C\x0E<-?o\x0F!", L"서울!"},
      {50227,
       "\x1B$)A\x0E"
       "11>)\x0F!",
       L"北京!"},
      {52936, "~{11>)~}!", L"北京!"},
      {54936, "\xB1\xB1\xBE\xA9\x94\x39\xDA\x33", L"北京\U0001F4A9"},
      {57002, "\xB3", L"क"},
      {57003, "\xB3", L"ক"},
      {57004, "\xB3", L"க"},
      {57005, "\xB3", L"క"},
      {57006, "\xB3", L"ক"},
      {57007, "\xB3", L"କ"},
      {57008, "\xB3", L"ಕ"},
      {57009, "\xB3", L"ക"},
      {57010, "\xB3", L"ક"},
      {57011, "\xB3", L"ਕ"},
      {65000, "Hi +JjoAIQ-", L"Hi ☺!"},
      {65001, "\xD0\x9C\xF0\x9F\x92\xA9", L"М\U0001F4A9"},
  };
  for (const auto& c : cases) {
    TextCodec codec(c.page);
    std::size_t malformed = 0;
    EXPECT_EQ(codec.Decode(c.bytes, &malformed), c.text) << c.page;
    EXPECT_EQ(malformed, 0U) << c.page;
    if (c.page == 50221) continue;  // writes no half-width katakana
    std::size_t unmappable = 0;
    const std::string bytes = codec.Encode(c.text, &unmappable);
    EXPECT_EQ(unmappable, 0U) << c.page;
    EXPECT_EQ(codec.Decode(bytes), c.text) << c.page;
  }
}

TEST(TextCodec, DecodesUtf16AndUtf32InBothByteOrders) {
  using namespace std::string_literals;
  const std::wstring text = L"A\U0001F4A9";
  const std::pair<int, std::string> cases[] = {
      {1200, "A\0\x3D\xD8\xA9\xDC"s},
      {1201, "\0A\xD8\x3D\xDC\xA9"s},
      {12000, "A\0\0\0\xA9\xF4\x01\0"s},
      {12001, "\0\0\0A\0\x01\xF4\xA9"s},
  };
  for (const auto& [page, bytes] : cases) {
    TextCodec codec(page);
    EXPECT_EQ(codec.Decode(bytes), text) << page;
    EXPECT_EQ(codec.Encode(text), bytes) << page;
  }
}

TEST(TextCodec, KeepsByteOrderMarksAsCharacters) {
  using namespace std::string_literals;
  EXPECT_EQ(TextCodec(65001).Decode("\xEF\xBB\xBF"
                                    "A"),
            L"\uFEFFA");
  EXPECT_EQ(TextCodec(1200).Decode("\xFF\xFE"
                                   "A\0"s),
            L"\uFEFFA");
  EXPECT_EQ(TextCodec(1200).Encode(L"A"), "A\0"s);
  EXPECT_EQ(TextCodec(12000).Encode(L"A"), "A\0\0\0"s);
}

TEST(TextCodec, TakesNulForAnOrdinaryCharacter) {
  using namespace std::string_literals;
  for (const int page : {437, 932, 1252, 54936, 20261, 50220, 65000, 65001}) {
    TextCodec codec(page);
    EXPECT_EQ(codec.Decode("a\0b\0"s), L"a\0b\0"s) << page;
    if (page == 65000) continue;  // writes NUL in its base 64
    EXPECT_EQ(codec.Encode(L"a\0b\0"s), "a\0b\0"s) << page;
  }
}

TEST(TextCodec, GivesNothingForNothing) {
  for (const int page : ConvertiblePages()) {
    TextCodec codec(page);
    EXPECT_EQ(codec.Decode({}), L"") << page;
    EXPECT_EQ(AsUtf8(codec, {}), "") << page;
    EXPECT_EQ(codec.Encode({}), "") << page;
  }
}

TEST(TextCodec, BeginsEachTextInTheFirstState) {
  for (const auto& [page, shift] : {std::pair{50220, "\x1B$B"}, std::pair{50222, "\x0E"},
                                    std::pair{52936, "~{"}, std::pair{65000, "+"}}) {
    TextCodec codec(page);
    (void)codec.Decode(shift);
    EXPECT_EQ(codec.Decode("Ab"), L"Ab") << page;
  }
  TextCodec hindi(57002);
  (void)hindi.Decode("\xEF\x43");  // switches to Bengali
  EXPECT_EQ(hindi.Decode("\xB3"), L"क");
}

TEST(TextCodec, AppendsToWhatIsThere) {
  TextCodec codec(1252);
  std::string utf8 = "x";
  EXPECT_EQ(codec.AppendUtf8("\xE9", utf8), 0U);
  EXPECT_EQ(utf8, "x\xC3\xA9");
}

TEST(TextCodec, MovesWithItsPage) {
  TextCodec first(866);
  TextCodec second(std::move(first));
  EXPECT_EQ(second.Decode("\x80"), L"А");
  TextCodec third(1252);
  third = std::move(second);
  EXPECT_EQ(third.CodePage(), 866);
  EXPECT_EQ(third.Decode("\x80"), L"А");
}

TEST(TextCodec, DecodesLongTextsLikeShortOnes) {
  // Characters that straddle every border of the blocks inside.
  for (const int page : {866, 932, 936, 51932, 54936, 65001, 1200, 50220}) {
    TextCodec codec(page);
    for (std::wstring text = L"aя"; text.size() < 9000; text += text + L"bЖ, 0123456789abcdef") {
      const std::string bytes = codec.Encode(text);
      EXPECT_EQ(codec.Decode(bytes), text) << page;
      EXPECT_EQ(AsUtf8(codec, bytes), win32::Utf8FromWide(text)) << page;
    }
  }
}

TEST(TextCodec, CopiesAsciiOfEveryLengthAndPlace) {
  std::string ascii;
  for (int i = 0; i < 40; ++i) ascii += static_cast<char>('!' + i);
  for (const int page : {866, 932, 1252, 54936, 65001}) {
    TextCodec codec(page);
    const std::wstring letter = page == 1252 ? L"é" : L"я";
    for (std::size_t length = 0; length <= ascii.size(); ++length) {
      for (std::size_t place = 0; place <= length; ++place) {
        std::wstring text(ascii.begin(), ascii.begin() + static_cast<std::ptrdiff_t>(length));
        text.insert(place, letter);
        EXPECT_EQ(codec.Decode(codec.Encode(text)), text) << page;
      }
    }
  }
}

TEST(TextCodec, EncodesWhatThePageLacksAsItsQuestionMark) {
  const struct {
    int page;
    const char* bytes;
  } cases[] = {
      {437, "a?b"},
      {1252, "a?b"},
      {932, "a?b"},
      {949, "a?b"},
      {20261, "a?b"},
      {37, "\x81\x6F\x82"},
      {20290, "\x62\x6F\x63"},
      {20127, "a?b"},
      {51932, "a?b"},
      {57002, "a?b"},
      {50220, "a?b"},
      {20105, "a?b"},
      {20880, "\x81\x6F\x82"},
  };
  for (const auto& c : cases) {
    std::size_t unmappable = 10;
    EXPECT_EQ(TextCodec(c.page).Encode(L"a\U0001F4A9b", &unmappable), c.bytes) << c.page;
    EXPECT_EQ(unmappable, 11U) << c.page;
  }
}

TEST(TextCodec, CountsEachCharacterThatIsUnmappableInEveryPage) {
  constexpr wchar_t kDeseret[] = L"\U00010400\U00010401";
  for (const int page : ConvertiblePages()) {
    const bool allOfUnicode = page == 1200 || page == 1201 || page == 12000 || page == 12001 ||
                              page == 54936 || page == 65000 || page == 65001;
    TextCodec codec(page);
    std::size_t unmappable = 0;
    const std::string bytes = codec.Encode(kDeseret, &unmappable);
    EXPECT_EQ(unmappable, allOfUnicode ? 0U : 2U) << page;
    if (page == 42) {
      EXPECT_EQ(bytes, "??");  // the byte: the page has no question mark
    } else {
      EXPECT_EQ(codec.Decode(bytes), allOfUnicode ? kDeseret : L"??") << page;
    }
  }
}

TEST(TextCodec, EncodesWhatIsNoCharacterAsReplacement) {
  const std::wstring lone = {L'a', static_cast<wchar_t>(0xDC00), static_cast<wchar_t>(0xD800),
                             L'b'};
  for (const int page : {1200, 1201, 12000, 12001, 54936, 65000, 65001}) {
    TextCodec codec(page);
    std::size_t unmappable = 0;
    const std::string bytes = codec.Encode(lone, &unmappable);
    EXPECT_EQ(unmappable, 2U) << page;
    EXPECT_EQ(codec.Decode(bytes), L"a\uFFFD\uFFFDb") << page;
  }
  for (const int page : {437, 932, 51932, 50220, 1361}) {
    std::size_t unmappable = 0;
    EXPECT_EQ(TextCodec(page).Encode(lone, &unmappable), "a??b") << page;
    EXPECT_EQ(unmappable, 2U) << page;
  }
  if constexpr (sizeof(wchar_t) == 4) {
    const std::wstring pairAndTooLarge = {
        static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDCA9), static_cast<wchar_t>(0x110000)};
    EXPECT_EQ(TextCodec(1252).Encode(pairAndTooLarge), "???");
  }
}

TEST(TextCodec, EncodesMoreThanOneBufferOfText) {
  TextCodec codec(54936);
  std::wstring text;
  for (int i = 0; i < 1'100'000; ++i) text += static_cast<wchar_t>(L'а' + i % 32);
  EXPECT_EQ(codec.Decode(codec.Encode(text)), text);
}

}  // namespace
}  // namespace kerno
