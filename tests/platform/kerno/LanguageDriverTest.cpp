#include <gtest/gtest.h>

#include <kerno/CodePageInfo.h>

namespace kerno {
namespace {

// One row for eight bytes, from 0x00.
constexpr int kExpected[256] = {
    -1,  437, 850, 1252, 10000, -1,  -1,    -1,    865,   437,  850,  437,  -1,   437,  850,  437,
    850, 437, 850, 932,  850,   437, 850,   865,   437,   437,  850,  437,  863,  850,  -1,   852,
    -1,  -1,  852, 852,  860,   850, 866,   -1,    -1,    -1,   -1,   -1,   -1,   -1,   -1,   -1,
    -1,  -1,  -1,  -1,   -1,    -1,  -1,    850,   -1,    -1,   -1,   -1,   -1,   -1,   -1,   -1,
    852, -1,  -1,  -1,   -1,    -1,  -1,    -1,    -1,    -1,   -1,   -1,   -1,   936,  949,  950,
    874, -1,  -1,  -1,   -1,    -1,  -1,    1252,  1252,  1252, -1,   -1,   -1,   -1,   -1,   -1,
    -1,  -1,  -1,  -1,   852,   866, 865,   861,   -1,    -1,   737,  857,  863,  -1,   -1,   -1,
    -1,  -1,  -1,  -1,   -1,    -1,  -1,    -1,    950,   949,  936,  932,  874,  1255, 1256, -1,
    -1,  -1,  -1,  -1,   -1,    -1,  737,   852,   857,   -1,   -1,   -1,   -1,   -1,   -1,   -1,
    -1,  -1,  -1,  -1,   -1,    -1,  10007, 10029, 10006, -1,   -1,   -1,   -1,   -1,   -1,   -1,
    -1,  -1,  -1,  -1,   -1,    -1,  -1,    -1,    -1,    -1,   -1,   -1,   -1,   -1,   -1,   -1,
    -1,  -1,  -1,  -1,   -1,    -1,  -1,    -1,    -1,    -1,   -1,   -1,   -1,   -1,   -1,   -1,
    -1,  -1,  -1,  -1,   -1,    -1,  -1,    -1,    1250,  1251, 1254, 1253, 1257, -1,   -1,   -1,
    -1,  -1,  -1,  -1,   -1,    -1,  -1,    -1,    -1,    -1,   -1,   -1,   -1,   -1,   -1,   -1,
    -1,  -1,  -1,  -1,   -1,    -1,  -1,    -1,    -1,    -1,   -1,   -1,   -1,   -1,   -1,   -1,
    -1,  -1,  -1,  -1,   -1,    -1,  -1,    -1,    -1,    -1,   -1,   -1,   -1,   -1,   -1,   -1,
};

TEST(MapDBFLangIDtoCodePage, GivesThePageOfEachLanguageByte) {
  for (int id = 0; id < 256; ++id) {
    EXPECT_EQ(MapDBFLangIDtoCodePage(static_cast<unsigned char>(id)), kExpected[id]) << id;
  }
}

TEST(MapDBFLangIDtoCodePage, GivesOnlyPagesThatAreListed) {
  const CodePageInfo pages(CodePageInfo::kByNumber);
  int mapped = 0;
  for (int id = 0; id < 256; ++id) {
    const int page = MapDBFLangIDtoCodePage(static_cast<unsigned char>(id));
    if (page < 0) continue;
    std::size_t index = 0;
    EXPECT_TRUE(pages.GetIndexFromPageNumber(page, index)) << id;
    ++mapped;
  }
  EXPECT_EQ(mapped, 65);
}

}  // namespace
}  // namespace kerno
