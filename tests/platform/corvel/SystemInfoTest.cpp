#include <corvel/SystemInfo.h>

#include <locale.h>

#include <atomic>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "support/Environment.h"
#include "support/MadeLocale.h"

// The C library never frees the list that it makes of LOCPATH when it looks for a locale.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();
const char* __lsan_default_suppressions() { return "leak:__argz_add_sep\n"; }

namespace corvel {
namespace {

using trovan::test::MadeLocales;
using trovan::test::ScopedVariable;

// What the variables say, and nothing else of the environment.
wchar_t DecimalCharWith(const char* all, const char* numeric, const char* lang) {
  const ScopedVariable setAll("LC_ALL", all);
  const ScopedVariable setNumeric("LC_NUMERIC", numeric);
  const ScopedVariable setLang("LANG", lang);
  return CSystemInfo().DefDecimalChar();
}

TEST(CSystemInfo, HasAPointWhereNothingIsSaid) {
  EXPECT_EQ(DecimalCharWith(nullptr, nullptr, nullptr), L'.');
  EXPECT_EQ(DecimalCharWith("", "", ""), L'.');
}

TEST(CSystemInfo, HasAPointInTheNeutralLocales) {
  for (const char* name : {"C", "POSIX", "C.UTF-8"}) {
    EXPECT_EQ(DecimalCharWith(name, nullptr, nullptr), L'.') << name;
  }
}

TEST(CSystemInfo, HasAPointWhereTheLocaleIsUnknown) {
  EXPECT_EQ(DecimalCharWith("xx_NOWHERE", nullptr, nullptr), L'.');
}

TEST(CSystemInfo, ReadsTheVariablesInTheirOrder) {
  const MadeLocales locales;
  locales.Make("comma", "ISO-8859-1", ",");
  locales.Make("prime", "ISO-8859-1", "'");
  locales.Make("low", "ISO-8859-1", "_");
  EXPECT_EQ(DecimalCharWith("comma", "prime", "low"), L',');
  EXPECT_EQ(DecimalCharWith(nullptr, "prime", "low"), L'\'');
  EXPECT_EQ(DecimalCharWith(nullptr, nullptr, "low"), L'_');
  EXPECT_EQ(DecimalCharWith("", "", "low"), L'_');
  EXPECT_EQ(DecimalCharWith("C", "prime", "low"), L'.');
  EXPECT_EQ(DecimalCharWith("xx_NOWHERE", "prime", "low"), L'.');
}

TEST(CSystemInfo, DecodesTheCharacterByTheCharacterSetOfTheNumbers) {
  const MadeLocales locales;
  locales.Make("latin", "ISO-8859-1", "<U00B7>", "<U00B7> /xb7");
  locales.Make("arabic", "UTF-8", "<U066B>", "<U066B> /xd9/xab");
  EXPECT_EQ(DecimalCharWith("latin", nullptr, nullptr), L'\u00B7');
  EXPECT_EQ(DecimalCharWith("arabic", nullptr, nullptr), L'\u066B');
  // The character set of texts is another.
  const ScopedVariable texts("LC_CTYPE", "C");
  EXPECT_EQ(DecimalCharWith(nullptr, "arabic", "C"), L'\u066B');
}

TEST(CSystemInfo, HasAPointWhereTheLocaleHasNotOneCharacter) {
  const MadeLocales locales;
  locales.Make("two", "ISO-8859-1", ",,");
  EXPECT_EQ(DecimalCharWith("two", nullptr, nullptr), L'.');
}

TEST(CSystemInfo, NeitherUsesNorChangesTheLocaleOfTheProgram) {
  const MadeLocales locales;
  locales.Make("swiss", "ISO-8859-1", ",");
  const std::string before = ::setlocale(LC_ALL, nullptr);
  ASSERT_NE(::setlocale(LC_NUMERIC, "swiss"), nullptr);
  const ::locale_t ofThread = ::uselocale(static_cast<::locale_t>(0));
  EXPECT_EQ(DecimalCharWith("C", nullptr, nullptr), L'.');
  EXPECT_STREQ(::setlocale(LC_NUMERIC, nullptr), "swiss");
  EXPECT_EQ(::uselocale(static_cast<::locale_t>(0)), ofThread);
  ASSERT_NE(::setlocale(LC_ALL, before.c_str()), nullptr);
}

TEST(CSystemInfo, ReadsTheLocaleOnce) {
  const MadeLocales locales;
  locales.Make("once", "ISO-8859-1", ",");
  const ScopedVariable all("LC_ALL", "once");
  const CSystemInfo info;
  const ScopedVariable later("LC_ALL", "C");
  EXPECT_EQ(info.DefDecimalChar(), L',');
}

TEST(CSystemInfo, TakesAnotherDecimalCharacter) {
  CSystemInfo info;
  for (const wchar_t character : {L',', L'\u066B', L'.'}) {
    info.SetDefDecimalChar(character);
    EXPECT_EQ(info.DefDecimalChar(), character);
  }
}

TEST(CSystemInfo, IsNeitherCopiedNorMoved) {
  static_assert(!std::is_copy_constructible_v<CSystemInfo>);
  static_assert(!std::is_copy_assignable_v<CSystemInfo>);
}

TEST(CSystemInfo, IsReadFromThreadsWhileItIsSet) {
  CSystemInfo info;
  info.SetDefDecimalChar(L'.');
  constexpr int kReaders = 4;
  std::vector<std::thread> readers;
  readers.reserve(kReaders);
  std::atomic<bool> strange = false;
  for (int i = 0; i < kReaders; ++i) {
    readers.emplace_back([&] {
      for (int round = 0; round < 10'000; ++round) {
        const wchar_t read = info.DefDecimalChar();
        if (read != L'.' && read != L',') strange = true;
      }
    });
  }
  for (int round = 0; round < 10'000; ++round) info.SetDefDecimalChar(round % 2 == 0 ? L',' : L'.');
  for (std::thread& reader : readers) reader.join();
  EXPECT_FALSE(strange);
}

TEST(Singleton, HasOneSystemInfo) {
  CSystemInfo& info = Singleton<CSystemInfo>::Instance();
  EXPECT_EQ(&Singleton<CSystemInfo>::Instance(), &info);
  const wchar_t before = info.DefDecimalChar();
  info.SetDefDecimalChar(L'\'');
  EXPECT_EQ(Singleton<CSystemInfo>::Instance().DefDecimalChar(), L'\'');
  info.SetDefDecimalChar(before);
}

TEST(Singleton, MakesTheObjectOfAClassOnce) {
  struct Counted {
    Counted() { ++Made(); }
    static int& Made() {
      static int made = 0;
      return made;
    }
  };
  EXPECT_EQ(Counted::Made(), 0);
  Counted& first = Singleton<Counted>::Instance();
  EXPECT_EQ(&Singleton<Counted>::Instance(), &first);
  EXPECT_EQ(Counted::Made(), 1);
}

}  // namespace
}  // namespace corvel
