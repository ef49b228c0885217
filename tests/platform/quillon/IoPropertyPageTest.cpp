#include <quillon/IoPropertyPage.h>

#include <limits>
#include <set>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

namespace quillon {
namespace {

constexpr int kMinInt = std::numeric_limits<int>::min();
constexpr int kMaxInt = std::numeric_limits<int>::max();

TEST(IoPropertyPage, HasThreeKeysForLatticeExports) {
  const std::set<std::wstring> keys = {IoPropertyPage::GetLatticeExportPropName_DataMin(),
                                       IoPropertyPage::GetLatticeExportPropName_DataMax(),
                                       IoPropertyPage::GetLatticeExportPropName_DataType()};
  EXPECT_EQ(keys.size(), 3U);
  EXPECT_FALSE(keys.contains(L""));
}

TEST(IoPropertyPage, GivesBackWhatWasSet) {
  IoPropertyPage page;
  page.SetProperty(L"step", 0.1);
  page.SetProperty(L"count", kMaxInt);
  double step = 0.0;
  int count = 0;
  EXPECT_TRUE(page.GetProperty(L"step", step));
  EXPECT_TRUE(page.GetProperty(L"count", count));
  EXPECT_EQ(step, 0.1);
  EXPECT_EQ(count, kMaxInt);
}

TEST(IoPropertyPage, LeavesTheValueOfAnUnknownKey) {
  IoPropertyPage page;
  page.SetProperty(L"Step", 1);
  double real = 2.5;
  int whole = 7;
  EXPECT_FALSE(page.GetProperty(L"step", real));
  EXPECT_FALSE(page.GetProperty(L"step", whole));
  EXPECT_EQ(real, 2.5);
  EXPECT_EQ(whole, 7);
}

TEST(IoPropertyPage, ReplacesAValueWhateverItsKind) {
  IoPropertyPage page;
  page.SetProperty(L"key", 1);
  page.SetProperty(L"key", 2.5);
  double real = 0.0;
  EXPECT_TRUE(page.GetProperty(L"key", real));
  EXPECT_EQ(real, 2.5);
  page.SetProperty(L"key", 3);
  EXPECT_TRUE(page.GetProperty(L"key", real));
  EXPECT_EQ(real, 3.0);
}

TEST(IoPropertyPage, TruncatesToAnInt) {
  const struct {
    double set;
    int expected;
  } cases[] = {
      {2.9, 2},
      {-2.9, -2},
      {2147483647.5, kMaxInt},
      {-2147483648.5, kMinInt},
      {2147483648.0, kMinInt},
      {-1e300, kMinInt},
      {std::numeric_limits<double>::quiet_NaN(), kMinInt},
  };
  for (const auto& c : cases) {
    IoPropertyPage page;
    page.SetProperty(L"key", c.set);
    int value = 0;
    EXPECT_TRUE(page.GetProperty(L"key", value));
    EXPECT_EQ(value, c.expected) << c.set;
  }
}

TEST(IoPropertyPage, IsABaseForTheApplicationsOwn) {
  static_assert(std::has_virtual_destructor_v<IoPropertyPage>);
  static_assert(!std::is_copy_constructible_v<IoPropertyPage>);
  class Seven : public IoPropertyPage {
   public:
    using IoPropertyPage::GetProperty;
    bool GetProperty(const std::wstring&, int& value) const override {
      value = 7;
      return true;
    }
  };
  const Seven seven;
  const IoPropertyPage& page = seven;
  int value = 0;
  EXPECT_TRUE(page.GetProperty(L"any", value));
  EXPECT_EQ(value, 7);
}

}  // namespace
}  // namespace quillon
