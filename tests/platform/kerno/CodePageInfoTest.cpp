#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <corvel/Exception.h>
#include <kerno/CodePageInfo.h>

namespace kerno {
namespace {

struct Page {
  int number;
  const wchar_t* name;
};

// Microsoft's table, in its order.
constexpr Page kMicrosoftsTable[] = {
    {37, L"IBM EBCDIC (US-Canada)"},
    {437, L"OEM United States"},
    {500, L"IBM EBCDIC (International)"},
    {708, L"Arabic (ASMO 708)"},
    {720, L"Arabic (DOS)"},
    {737, L"Greek (DOS)"},
    {775, L"Baltic (DOS)"},
    {850, L"Western European (DOS)"},
    {852, L"Central European (DOS)"},
    {855, L"OEM Cyrillic"},
    {857, L"Turkish (DOS)"},
    {858, L"OEM Multilingual Latin I"},
    {860, L"Portuguese (DOS)"},
    {861, L"Icelandic (DOS)"},
    {862, L"Hebrew (DOS)"},
    {863, L"French Canadian (DOS)"},
    {864, L"Arabic (864)"},
    {865, L"Nordic (DOS)"},
    {866, L"Cyrillic (DOS)"},
    {869, L"Greek, Modern (DOS)"},
    {870, L"IBM EBCDIC (Multilingual Latin-2)"},
    {874, L"Thai (Windows)"},
    {875, L"IBM EBCDIC (Greek Modern)"},
    {932, L"Japanese (Shift-JIS)"},
    {936, L"Chinese Simplified (GB2312)"},
    {949, L"Korean"},
    {950, L"Chinese Traditional (Big5)"},
    {1026, L"IBM EBCDIC (Turkish Latin-5)"},
    {1047, L"IBM Latin-1"},
    {1140, L"IBM EBCDIC (US-Canada-Euro)"},
    {1141, L"IBM EBCDIC (Germany-Euro)"},
    {1142, L"IBM EBCDIC (Denmark-Norway-Euro)"},
    {1143, L"IBM EBCDIC (Finland-Sweden-Euro)"},
    {1144, L"IBM EBCDIC (Italy-Euro)"},
    {1145, L"IBM EBCDIC (Spain-Euro)"},
    {1146, L"IBM EBCDIC (UK-Euro)"},
    {1147, L"IBM EBCDIC (France-Euro)"},
    {1148, L"IBM EBCDIC (International-Euro)"},
    {1149, L"IBM EBCDIC (Icelandic-Euro)"},
    {1200, L"Unicode"},
    {1201, L"Unicode (Big-Endian)"},
    {1250, L"Central European (Windows)"},
    {1251, L"Cyrillic (Windows)"},
    {1252, L"Western European (Windows)"},
    {1253, L"Greek (Windows)"},
    {1254, L"Turkish (Windows)"},
    {1255, L"Hebrew (Windows)"},
    {1256, L"Arabic (Windows)"},
    {1257, L"Baltic (Windows)"},
    {1258, L"Vietnamese (Windows)"},
    {1361, L"Korean (Johab)"},
    {10000, L"Western European (Mac)"},
    {10001, L"Japanese (Mac)"},
    {10002, L"Chinese Traditional (Mac)"},
    {10003, L"Korean (Mac)"},
    {10004, L"Arabic (Mac)"},
    {10005, L"Hebrew (Mac)"},
    {10006, L"Greek (Mac)"},
    {10007, L"Cyrillic (Mac)"},
    {10008, L"Chinese Simplified (Mac)"},
    {10010, L"Romanian (Mac)"},
    {10017, L"Ukrainian (Mac)"},
    {10021, L"Thai (Mac)"},
    {10029, L"Central European (Mac)"},
    {10079, L"Icelandic (Mac)"},
    {10081, L"Turkish (Mac)"},
    {10082, L"Croatian (Mac)"},
    {12000, L"Unicode (UTF-32)"},
    {12001, L"Unicode (UTF-32 Big-Endian)"},
    {20000, L"Chinese Traditional (CNS)"},
    {20001, L"TCA Taiwan"},
    {20002, L"Chinese Traditional (Eten)"},
    {20003, L"IBM5550 Taiwan"},
    {20004, L"TeleText Taiwan"},
    {20005, L"Wang Taiwan"},
    {20105, L"Western European (IA5)"},
    {20106, L"German (IA5)"},
    {20107, L"Swedish (IA5)"},
    {20108, L"Norwegian (IA5)"},
    {20127, L"US-ASCII"},
    {20261, L"T.61"},
    {20269, L"ISO-6937"},
    {20273, L"IBM EBCDIC (Germany)"},
    {20277, L"IBM EBCDIC (Denmark-Norway)"},
    {20278, L"IBM EBCDIC (Finland-Sweden)"},
    {20280, L"IBM EBCDIC (Italy)"},
    {20284, L"IBM EBCDIC (Spain)"},
    {20285, L"IBM EBCDIC (UK)"},
    {20290, L"IBM EBCDIC (Japanese katakana)"},
    {20297, L"IBM EBCDIC (France)"},
    {20420, L"IBM EBCDIC (Arabic)"},
    {20423, L"IBM EBCDIC (Greek)"},
    {20424, L"IBM EBCDIC (Hebrew)"},
    {20833, L"IBM EBCDIC (Korean Extended)"},
    {20838, L"IBM EBCDIC (Thai)"},
    {20866, L"Cyrillic (KOI8-R)"},
    {20871, L"IBM EBCDIC (Icelandic)"},
    {20880, L"IBM EBCDIC (Cyrillic Russian)"},
    {20905, L"IBM EBCDIC (Turkish)"},
    {20924, L"IBM Latin-1"},
    {20932, L"Japanese (JIS 0208-1990 and 0212-1990)"},
    {20936, L"Chinese Simplified (GB2312-80)"},
    {20949, L"Korean Wansung"},
    {21025, L"IBM EBCDIC (Cyrillic Serbian-Bulgarian)"},
    {21866, L"Cyrillic (KOI8-U)"},
    {28591, L"Western European (ISO)"},
    {28592, L"Central European (ISO)"},
    {28593, L"Latin 3 (ISO)"},
    {28594, L"Baltic (ISO)"},
    {28595, L"Cyrillic (ISO)"},
    {28596, L"Arabic (ISO)"},
    {28597, L"Greek (ISO)"},
    {28598, L"Hebrew (ISO-Visual)"},
    {28599, L"Turkish (ISO)"},
    {28603, L"Estonian (ISO)"},
    {28605, L"Latin 9 (ISO)"},
    {29001, L"Europa"},
    {38598, L"Hebrew (ISO-Logical)"},
    {50220, L"Japanese (JIS)"},
    {50221, L"Japanese (JIS-Allow 1 byte Kana)"},
    {50222, L"Japanese (JIS-Allow 1 byte Kana - SO/SI)"},
    {50225, L"Korean (ISO)"},
    {50227, L"Chinese Simplified (ISO-2022)"},
    {51932, L"Japanese (EUC)"},
    {51936, L"Chinese Simplified (EUC)"},
    {51949, L"Korean (EUC)"},
    {52936, L"Chinese Simplified (HZ)"},
    {54936, L"Chinese Simplified (GB18030)"},
    {57002, L"ISCII Devanagari"},
    {57003, L"ISCII Bengali"},
    {57004, L"ISCII Tamil"},
    {57005, L"ISCII Telugu"},
    {57006, L"ISCII Assamese"},
    {57007, L"ISCII Oriya"},
    {57008, L"ISCII Kannada"},
    {57009, L"ISCII Malayalam"},
    {57010, L"ISCII Gujarati"},
    {57011, L"ISCII Punjabi"},
    {65000, L"Unicode (UTF-7)"},
    {65001, L"Unicode (UTF-8)"},
};
constexpr std::size_t kNowhere = 9999;

std::vector<Page> MicrosoftsTable() {
  return {std::begin(kMicrosoftsTable), std::end(kMicrosoftsTable)};
}

std::vector<Page> MicrosoftsTableByName() {
  std::vector<Page> pages = MicrosoftsTable();
  std::stable_sort(pages.begin(), pages.end(), [](const Page& left, const Page& right) {
    return std::wstring(left.name) < right.name;
  });
  return pages;
}

void ExpectPages(const CodePageInfo& list, const std::vector<Page>& pages) {
  ASSERT_EQ(list.Count(), pages.size());
  for (std::size_t i = 0; i < pages.size(); ++i) {
    SCOPED_TRACE(testing::Message() << "index " << i << ", page " << pages[i].number);
    EXPECT_EQ(list.GetPageNumberByIndex(i), static_cast<unsigned>(pages[i].number));
    EXPECT_EQ(list.GetNameByIndex(i), pages[i].name);
    std::size_t index = kNowhere;
    EXPECT_TRUE(list.GetIndexFromPageNumber(pages[i].number, index));
    EXPECT_EQ(index, i);
    // Of two pages with one name the first is found.
    const auto first = std::find_if(pages.begin(), pages.end(), [&](const Page& page) {
      return std::wstring(page.name) == pages[i].name;
    });
    EXPECT_TRUE(list.GetIndexFromName(pages[i].name, index));
    EXPECT_EQ(index, static_cast<std::size_t>(first - pages.begin()));
  }
}

void ExpectBadParameter(void (*action)()) {
  try {
    action();
    ADD_FAILURE() << "nothing was raised";
  } catch (const corvel::Exception& error) {
    EXPECT_EQ(error.Module(), "kerno");
    EXPECT_EQ(error.Message(), "Bad parameter");
  }
}

TEST(CodePageInfo, ListsAllPagesAsMicrosoftDocumentsThem) {
  ExpectPages(CodePageInfo(0), MicrosoftsTable());
}

TEST(CodePageInfo, ListsAllPagesByDisplayName) {
  ExpectPages(CodePageInfo(1), MicrosoftsTableByName());
}

TEST(CodePageInfo, ListsAllPagesByNumber) { ExpectPages(CodePageInfo(2), MicrosoftsTable()); }

TEST(CodePageInfo, NamesItsOrdersByFixedValues) {
  EXPECT_EQ(CodePageInfo::kAsDocumented, 0);
  EXPECT_EQ(CodePageInfo::kByDisplayName, 1);
  EXPECT_EQ(CodePageInfo::kByNumber, 2);
}

TEST(CodePageInfo, RefusesAnyOtherOrder) {
  ExpectBadParameter([] { CodePageInfo(-1); });
  ExpectBadParameter([] { CodePageInfo(3); });
}

TEST(CodePageInfo, FindsWesternEuropeanByItsExactNameOnly) {
  const CodePageInfo list(CodePageInfo::kByNumber);
  std::size_t index = kNowhere;
  for (const wchar_t* name : {L"", L"western european (windows)", L"Western European(Windows)",
                              L"Western European (Windows) ", L"Western European"}) {
    EXPECT_FALSE(list.GetIndexFromName(name, index));
    EXPECT_EQ(index, kNowhere);
  }
  ASSERT_TRUE(list.GetIndexFromName(L"Western European (Windows)", index));
  EXPECT_EQ(list.GetPageNumberByIndex(index), 1252U);
}

TEST(CodePageInfo, FindsTheFirstOfTheTwoPagesThatShareAName) {
  for (const int order : {0, 1, 2}) {
    const CodePageInfo list(order);
    std::size_t index = kNowhere;
    ASSERT_TRUE(list.GetIndexFromName(L"IBM Latin-1", index));
    EXPECT_EQ(list.GetPageNumberByIndex(index), 1047U);
  }
}

TEST(CodePageInfo, LeavesTheIndexAloneForAPageThatIsNotListed) {
  const CodePageInfo list(CodePageInfo::kByDisplayName);
  for (const int page : {-1, 0, 1, 2, 3, 42, 819, 28600, 65002, 1 << 30}) {
    std::size_t index = kNowhere;
    EXPECT_FALSE(list.GetIndexFromPageNumber(page, index)) << page;
    EXPECT_EQ(index, kNowhere);
  }
}

TEST(CodePageInfo, RefusesAnIndexPastTheEnd) {
  ExpectBadParameter([] { (void)CodePageInfo(0).GetPageNumberByIndex(140); });
  ExpectBadParameter(
      [] { (void)CodePageInfo(1).GetPageNumberByIndex(static_cast<std::size_t>(-1)); });
  ExpectBadParameter([] { (void)CodePageInfo(2).GetNameByIndex(140); });
}

}  // namespace
}  // namespace kerno
