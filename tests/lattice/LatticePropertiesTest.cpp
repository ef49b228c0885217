#include <trovan/LatticeProperties.h>

#include <limits>
#include <string>

#include <gtest/gtest.h>

namespace trovan {
namespace {

using quillon::IoPropertyPage;
using quillon::TrUniformLattice;

const std::wstring kMin = IoPropertyPage::GetLatticeExportPropName_DataMin();
const std::wstring kMax = IoPropertyPage::GetLatticeExportPropName_DataMax();
const std::wstring kType = IoPropertyPage::GetLatticeExportPropName_DataType();

class GetExternalLatticePropertiesTest : public testing::Test {
 protected:
  bool Get() { return GetExternalLatticeProperties(page_, dataMin_, dataMax_, dataType_); }

  IoPropertyPage page_;
  double dataMin_ = -1.0;
  double dataMax_ = -2.0;
  corvel::PrimType dataType_ = corvel::kInt64;
};

TEST_F(GetExternalLatticePropertiesTest, ReadsAllThree) {
  page_.SetProperty(kMin, 0.5);
  page_.SetProperty(kMax, 99.5);
  page_.SetProperty(kType, 7);
  EXPECT_TRUE(Get());
  EXPECT_EQ(dataMin_, 0.5);
  EXPECT_EQ(dataMax_, 99.5);
  EXPECT_EQ(dataType_, corvel::kFloat);
}

TEST_F(GetExternalLatticePropertiesTest, HoldsWithTheTypeAlone) {
  page_.SetProperty(kType, 0);
  EXPECT_TRUE(Get());
  EXPECT_EQ(dataMin_, -1.0);
  EXPECT_EQ(dataMax_, -2.0);
  EXPECT_EQ(dataType_, corvel::kInt8);
}

TEST_F(GetExternalLatticePropertiesTest, FailsWithoutTheTypeThoughTheRangeIsRead) {
  page_.SetProperty(kMin, 0.5);
  page_.SetProperty(kMax, 99.5);
  EXPECT_FALSE(Get());
  EXPECT_EQ(dataMin_, 0.5);
  EXPECT_EQ(dataMax_, 99.5);
  EXPECT_EQ(dataType_, corvel::kInt64);
}

TEST_F(GetExternalLatticePropertiesTest, LeavesEverythingWhenThePageIsEmpty) {
  EXPECT_FALSE(Get());
  EXPECT_EQ(dataMin_, -1.0);
  EXPECT_EQ(dataMax_, -2.0);
  EXPECT_EQ(dataType_, corvel::kInt64);
}

TEST_F(GetExternalLatticePropertiesTest, TakesAnyNumberForTheType) {
  for (const int number : {9, 255, -1, std::numeric_limits<int>::max()}) {
    page_.SetProperty(kType, number);
    EXPECT_TRUE(Get());
    EXPECT_EQ(dataType_, number);
  }
}

// An application's own page, which keeps its numbers elsewhere.
TEST(GetExternalLatticeProperties, AsksThePageOfTheApplication) {
  class Page : public IoPropertyPage {
   public:
    bool GetProperty(const std::wstring& key, double& value) const override {
      if (key == kMin) value = 10.0;
      if (key == kMax) value = 20.0;
      return false;
    }
    bool GetProperty(const std::wstring& key, int& value) const override {
      value = 3;
      return key == kType;
    }
  };
  double dataMin = 0.0;
  double dataMax = 0.0;
  corvel::PrimType dataType = corvel::kInt8;
  EXPECT_TRUE(GetExternalLatticeProperties(Page(), dataMin, dataMax, dataType));
  EXPECT_EQ(dataMin, 10.0);
  EXPECT_EQ(dataMax, 20.0);
  EXPECT_EQ(dataType, corvel::kUInt16);
}

std::wstring InfoOf(TrUniformLattice& lattice) {
  FormatLatticeInfoString(lattice, L"Harz", L"Surfer grid");
  return lattice.Params().Get(L"LatticeInfo");
}

TEST(FormatLatticeInfoString, TellsNameFormatSizeSpacingExtentsAndCorners) {
  TrUniformLattice lattice(3, 2, 1);
  lattice.SetOrigin(10.0, 20.0);
  lattice.SetSpacing(5.0, 2.0, 0.0);
  EXPECT_EQ(InfoOf(lattice),
            L"Name:\tHarz\r\n"
            L"Format:\tSurfer grid\r\n"
            L"Size:\t2 rows x 3 columns x 1 planes\r\n"
            L"Spacing:\tX=5,   Y=2,   Z=0\r\n"
            L"xMin:\t10\txMax:\t20\r\n"
            L"yMin:\t20\tyMax:\t22\r\n"
            L"SW Corner:\t10, 20\r\n"
            L"NW Corner:\t10, 22\r\n"
            L"NE Corner:\t20, 22\r\n"
            L"SE Corner:\t20, 20\r\n");
}

TEST(FormatLatticeInfoString, ShowsNegativeSpacingsWithoutSignAndFollowsThem) {
  TrUniformLattice lattice(3, 2, 4);
  lattice.SetOrigin(10.0, 20.0);
  lattice.SetSpacing(-5.0, -2.0, -0.5);
  EXPECT_EQ(InfoOf(lattice),
            L"Name:\tHarz\r\n"
            L"Format:\tSurfer grid\r\n"
            L"Size:\t2 rows x 3 columns x 4 planes\r\n"
            L"Spacing:\tX=5,   Y=2,   Z=0.5\r\n"
            L"xMin:\t10\txMax:\t0\r\n"
            L"yMin:\t20\tyMax:\t18\r\n"
            L"SW Corner:\t10, 20\r\n"
            L"NW Corner:\t10, 18\r\n"
            L"NE Corner:\t0, 18\r\n"
            L"SE Corner:\t0, 20\r\n");
}

TEST(FormatLatticeInfoString, PrintsTwelveDigits) {
  TrUniformLattice lattice(1, 1, 1);
  lattice.SetOrigin(0.1, 1e20);
  lattice.SetSpacing(1.0 / 3, 123456789012.75, 1e-7);
  const std::wstring text = InfoOf(lattice);
  EXPECT_NE(text.find(L"X=0.333333333333,   Y=123456789013,   Z=1E-07\r\n"), std::wstring::npos);
  EXPECT_NE(text.find(L"xMin:\t0.1\txMax:\t0.1\r\nyMin:\t1E+20\tyMax:\t1E+20\r\n"),
            std::wstring::npos);
}

TEST(FormatLatticeInfoString, WrapsACountOfZero) {
  TrUniformLattice lattice(0, 0, 0);
  lattice.SetSpacing(1.0, 2.0, 3.0);
  const std::wstring text = InfoOf(lattice);
  EXPECT_NE(text.find(L"Size:\t0 rows x 0 columns x 0 planes\r\n"), std::wstring::npos);
  EXPECT_NE(text.find(L"xMax:\t4294967295\r\nyMin:\t0\tyMax:\t8589934590\r\n"), std::wstring::npos);
}

TEST(FormatLatticeInfoString, PrintsTheGreatestCountsWithoutSign) {
  TrUniformLattice lattice(4294967295U, 2147483648U, 3000000000U);
  const std::wstring text = InfoOf(lattice);
  EXPECT_NE(text.find(L"2147483648 rows x 4294967295 columns x 3000000000 planes"),
            std::wstring::npos);
  EXPECT_NE(text.find(L"xMax:\t4294967294\r\n"), std::wstring::npos);
}

TEST(FormatLatticeInfoString, ReplacesTheEntryAndKeepsTheOthers) {
  TrUniformLattice lattice(3, 2, 1);
  lattice.Params().Set(L"LatticeInfo", L"old");
  lattice.Params().Set(L"author", L"Ida");
  FormatLatticeInfoString(lattice, L"Größe", L"名");
  EXPECT_EQ(lattice.Params().Size(), 2U);
  EXPECT_EQ(lattice.Params().Get(L"author"), L"Ida");
  EXPECT_EQ(lattice.Params().Get(L"LatticeInfo").substr(0, 26),
            L"Name:\tGröße\r\nFormat:\t名\r\nSi");
}

}  // namespace
}  // namespace trovan
