#include <corvel/ParamList.h>

#include <map>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace corvel {
namespace {

CParamList Three() {
  CParamList list;
  list.Set(L"layer", L"roads");
  list.Set(L"id", L"17");
  list.Set(L"name", L"Ringstraße");
  return list;
}

std::wstring Keys(const CParamList& list) {
  std::wstring keys;
  for (const auto& [key, value] : list) keys += key + L' ';
  return keys;
}

TEST(CParamList, StartsEmpty) {
  const CParamList list;
  EXPECT_TRUE(list.IsEmpty());
  EXPECT_EQ(list.Size(), 0U);
  EXPECT_TRUE(list.begin() == list.end());
  EXPECT_EQ(list.Find(L""), nullptr);
}

TEST(CParamList, AddsEntriesInOrder) {
  const CParamList list = Three();
  EXPECT_EQ(list.Size(), 3U);
  EXPECT_FALSE(list.IsEmpty());
  EXPECT_EQ(Keys(list), L"layer id name ");
}

TEST(CParamList, ReplacesAnEntryInItsPlace) {
  CParamList list = Three();
  list.Set(L"id", L"18");
  EXPECT_EQ(list.Size(), 3U);
  EXPECT_EQ(Keys(list), L"layer id name ");
  EXPECT_EQ(*list.Find(L"id"), L"18");
  EXPECT_EQ(*list.Find(L"layer"), L"roads");
}

TEST(CParamList, FindsAndGetsValues) {
  const CParamList list = Three();
  ASSERT_NE(list.Find(L"name"), nullptr);
  EXPECT_EQ(*list.Find(L"name"), L"Ringstraße");
  EXPECT_EQ(list.Get(L"name"), L"Ringstraße");
  EXPECT_EQ(list.Get(L"name", L"none"), L"Ringstraße");
}

TEST(CParamList, TellsAnAbsentKeyFromAnEmptyValue) {
  CParamList list = Three();
  list.Set(L"empty", L"");
  ASSERT_NE(list.Find(L"empty"), nullptr);
  EXPECT_EQ(*list.Find(L"empty"), L"");
  EXPECT_EQ(list.Get(L"empty", L"none"), L"");
  EXPECT_EQ(list.Find(L"absent"), nullptr);
  EXPECT_EQ(list.Get(L"absent"), L"");
  EXPECT_EQ(list.Get(L"absent", L"none"), L"none");
}

TEST(CParamList, ComparesKeysExactly) {
  const CParamList list = Three();
  EXPECT_EQ(list.Find(L"Layer"), nullptr);
  EXPECT_EQ(list.Find(L"laye"), nullptr);
  EXPECT_EQ(list.Find(L"layers"), nullptr);
}

TEST(CParamList, TakesAnyTextAsKeyAndValue) {
  CParamList list;
  const std::wstring key(L"a\0b", 3);
  list.Set(L"", L"value of the empty key");
  list.Set(key, std::wstring(1, L'\0'));
  EXPECT_EQ(list.Get(L""), L"value of the empty key");
  EXPECT_EQ(list.Get(key), std::wstring(1, L'\0'));
  EXPECT_EQ(list.Find(L"a"), nullptr);
}

TEST(CParamList, RemovesAnEntryAndKeepsTheOrderOfTheOthers) {
  CParamList list = Three();
  EXPECT_TRUE(list.Remove(L"id"));
  EXPECT_EQ(Keys(list), L"layer name ");
  EXPECT_FALSE(list.Remove(L"id"));
  EXPECT_EQ(list.Size(), 2U);
  list.Set(L"id", L"19");
  EXPECT_EQ(Keys(list), L"layer name id ");
}

TEST(CParamList, ClearsAllEntries) {
  CParamList list = Three();
  list.Clear();
  EXPECT_TRUE(list.IsEmpty());
  EXPECT_EQ(list, CParamList());
}

TEST(CParamList, CopiesTheWholeList) {
  const CParamList original = Three();
  CParamList copy;
  copy.Set(L"gone", L"after the copy");
  copy = original;
  EXPECT_EQ(copy, original);
  EXPECT_EQ(copy.Find(L"gone"), nullptr);
  copy.Set(L"id", L"18");
  EXPECT_EQ(original.Get(L"id"), L"17");
  const CParamList constructed(original);  // NOLINT: the copy is the subject
  EXPECT_EQ(constructed, original);
}

TEST(CParamList, EqualsByPairsAndTheirOrder) {
  EXPECT_TRUE(Three() == Three());
  CParamList other = Three();
  other.Set(L"id", L"18");
  EXPECT_TRUE(other != Three());
  other = Three();
  other.Remove(L"layer");
  EXPECT_TRUE(other != Three());
  other.Set(L"layer", L"roads");  // the same pairs, at another place
  EXPECT_TRUE(other != Three());
}

TEST(CParamList, TakesItsOwnTextsAsArguments) {
  CParamList list;
  list.Set(L"a long enough key to be on the heap", L"a long enough value to be on the heap");
  for (int i = 0; i < 20; ++i) {
    // Each addition may move the entry that the text is read from.
    list.Set(L"copy " + std::to_wstring(i), list.begin()->second);
    list.Set(*list.Find(L"copy " + std::to_wstring(i)), list.begin()->first);
  }
  EXPECT_EQ(list.Get(L"copy 19"), L"a long enough value to be on the heap");
  EXPECT_EQ(list.Get(L"a long enough value to be on the heap"),
            L"a long enough key to be on the heap");
  EXPECT_TRUE(list.Remove(list.begin()->first));
  EXPECT_EQ(list.Find(L"a long enough key to be on the heap"), nullptr);
}

TEST(CParamList, BehavesAsAMapWithAnOrder) {
  std::mt19937 random(20240611);
  std::uniform_int_distribution<int> number(0, 11);
  CParamList list;
  std::map<std::wstring, std::wstring> values;
  std::vector<std::wstring> order;
  for (int round = 0; round < 5'000; ++round) {
    const std::wstring key = L"key " + std::to_wstring(number(random));
    if (number(random) < 4) {
      ASSERT_EQ(list.Remove(key), values.erase(key) == 1) << "round " << round;
      std::erase(order, key);
    } else {
      const std::wstring value = std::to_wstring(round);
      list.Set(key, value);
      if (values.insert_or_assign(key, value).second) order.push_back(key);
    }
    ASSERT_EQ(list.Size(), order.size()) << "round " << round;
    std::size_t place = 0;
    for (const auto& [itsKey, itsValue] : list) {
      ASSERT_EQ(itsKey, order[place++]) << "round " << round;
      ASSERT_EQ(itsValue, values[itsKey]) << "round " << round;
    }
  }
}

}  // namespace
}  // namespace corvel
