#include "filters/lattice/LatticeReport.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "AnyLattice.h"
#include "LatticeErrors.h"
#include "LatticeFakes.h"
#include "filters/lattice/NodeTypes.h"

namespace trovan::filters {
namespace {

using test::MemoryReader;
using testing::ElementsAre;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInf = std::numeric_limits<float>::infinity();

LatticeReport Report(LatticeReader& reader, double tolerance = 0.01) {
  auto report = ReportLattice(reader, L"Harz", tolerance, nullptr);
  EXPECT_TRUE(report.has_value());
  return report ? *report : LatticeReport();
}

TEST(LatticeReport, CountsAndRangesEachComponentByItself) {
  LatticeHeader header = test::UniformHeader(corvel::kFloat, 2, 2, 1, 2);
  header.voidValue = -9999.0;
  header.componentNames = {"height", "slope"};
  MemoryReader reader(
      test::LatticeOf<float>(header, {5, kNaN, -3, kInf, -9999, -kInf, 12.5F, -9999}));
  const LatticeReport report = Report(reader);
  ASSERT_EQ(report.components.size(), 2U);
  const auto& height = report.components[0];
  EXPECT_EQ(height.name, "height");
  EXPECT_EQ(height.lowest, -3.0);
  EXPECT_EQ(height.highest, 12.5);
  EXPECT_EQ(height.valid, 3U);
  EXPECT_EQ(height.voids, 1U);
  EXPECT_EQ(height.invalid, 0U);
  const auto& slope = report.components[1];
  EXPECT_EQ(slope.name, "slope");
  EXPECT_EQ(slope.lowest, std::nullopt);
  EXPECT_EQ(slope.highest, std::nullopt);
  EXPECT_EQ(slope.valid, 0U);
  EXPECT_EQ(slope.voids, 1U);
  EXPECT_EQ(slope.invalid, 3U);
}

TEST(LatticeReport, KnowsTheExtremesOfEveryType) {
  for (const corvel::PrimType type : test::kElementTypes) {
    VisitElementType(type, [&](auto element) {
      using T = decltype(element);
      const T lowest = std::numeric_limits<T>::lowest();
      const T highest = std::numeric_limits<T>::max();
      MemoryReader reader(
          test::LatticeOf<T>(test::UniformHeader(type, 3, 1), {0, highest, lowest}));
      const LatticeReport report = Report(reader);
      EXPECT_EQ(report.components[0].lowest, static_cast<double>(lowest));
      EXPECT_EQ(report.components[0].highest, static_cast<double>(highest));
    });
  }
}

TEST(LatticeReport, TakesTheNearestFloatForTheVoidValueOfFloats) {
  LatticeHeader header = test::UniformHeader(corvel::kFloat, 3, 1);
  header.voidValue = -3.4028235e38;
  MemoryReader lowest(test::LatticeOf<float>(header, {std::numeric_limits<float>::lowest(), 1, 2}));
  EXPECT_EQ(Report(lowest).components[0].voids, 1U);
  header.voidValue = 1e20;
  MemoryReader large(test::LatticeOf<float>(header, {1e20F, 1, 2}));
  EXPECT_EQ(Report(large).components[0].voids, 1U);
}

TEST(LatticeReport, DoesNotTakeNodesForAVoidValueThatTheyCannotHold) {
  LatticeHeader header = test::UniformHeader(corvel::kUInt8, 2, 1);
  header.voidValue = -15.0;  // whose low bits are 241
  MemoryReader reader(test::LatticeOf<std::uint8_t>(header, {241, 1}));
  EXPECT_EQ(Report(reader).components[0].voids, 0U);
  EXPECT_EQ(Report(reader).components[0].highest, 241.0);
}

TEST(LatticeReport, SumsUpAUniformLatticeInTheWordsOfTheLibrary) {
  LatticeHeader header = test::UniformHeader(corvel::kUInt8, 3, 2);
  header.origin = {10.0, 20.0, 5.0};
  header.spacing = {5.0, 2.0, 1.5};
  header.format = "a format";
  MemoryReader reader(test::LatticeOf<std::uint8_t>(header, {0, 1, 2, 3, 4, 5}));
  const LatticeReport report = Report(reader);
  EXPECT_EQ(report.infoText,
            L"Name:\tHarz\r\n"
            L"Format:\ta format\r\n"
            L"Size:\t2 rows x 3 columns x 1 planes\r\n"
            L"Spacing:\tX=5,   Y=2,   Z=1.5\r\n"
            L"xMin:\t10\txMax:\t20\r\n"
            L"yMin:\t20\tyMax:\t22\r\n"
            L"SW Corner:\t10, 20\r\n"
            L"NW Corner:\t10, 22\r\n"
            L"NE Corner:\t20, 22\r\n"
            L"SE Corner:\t20, 20\r\n");
  ASSERT_TRUE(report.axes);
  EXPECT_EQ((*report.axes)[0].last, 20.0);
  EXPECT_EQ((*report.axes)[1].last, 22.0);
  EXPECT_EQ((*report.axes)[2].last, 5.0);
  EXPECT_EQ((*report.axes)[2].step, 1.5);
  EXPECT_FALSE(report.extent);
}

TEST(LatticeReport, SumsUpARectilinearLatticeOnlyIfItIsEquallySpaced) {
  const auto header =
      test::RectilinearHeader(corvel::kUInt8, {0.0, 1.0, 2.05, 3.0}, {7.0, 9.0}, {0.0});
  MemoryReader reader{test::MemoryLattice(header)};
  const LatticeReport strict = Report(reader, 0.01);
  EXPECT_EQ(strict.infoText, L"");
  ASSERT_TRUE(strict.axes);
  EXPECT_FALSE((*strict.axes)[0].equal);
  EXPECT_NEAR((*strict.axes)[0].deviationInPercent, 5.0, 1e-9);
  EXPECT_TRUE((*strict.axes)[1].equal);
  for (const auto& axis : strict.header.axes) EXPECT_TRUE(axis.empty());

  const LatticeReport lenient = Report(reader, 5.5);
  EXPECT_TRUE((*lenient.axes)[0].equal);
  EXPECT_NE(lenient.infoText.find(L"Spacing:\tX=1,   Y=2,   Z=1\r\n"), std::wstring::npos);
}

TEST(LatticeReport, TellsTheExtentOfACurvilinearLattice) {
  LatticeHeader header = test::UniformHeader(corvel::kUInt8, 2, 2);
  header.type = LatticeResequencer::Curvilinear;
  header.coordType = corvel::kFloat;
  test::MemoryLattice lattice(header);
  lattice.SetCoordinate<float>(0, 0, 0, 0, -4.0F);
  lattice.SetCoordinate<float>(1, 1, 0, 1, 8.5F);
  lattice.SetCoordinate<float>(1, 0, 0, 2, 100.0F);
  MemoryReader reader(lattice);
  const LatticeReport report = Report(reader);
  ASSERT_TRUE(report.extent);
  EXPECT_THAT((*report.extent)[0], ElementsAre(-4.0, 0.0));
  EXPECT_THAT((*report.extent)[1], ElementsAre(0.0, 8.5));
  EXPECT_THAT((*report.extent)[2], ElementsAre(0.0, 100.0));
  EXPECT_FALSE(report.axes);
  EXPECT_EQ(report.infoText, L"");
}

TEST(LatticeReport, KeepsTheRemarksAndLeavesOutNamesThatAreTooMany) {
  LatticeHeader header = test::UniformHeader(corvel::kUInt8, 1, 1);
  header.remarks = {"It also holds poems."};
  header.componentNames = {"a", "b"};
  MemoryReader reader{test::MemoryLattice(header)};
  const LatticeReport report = Report(reader);
  EXPECT_EQ(report.header.remarks, header.remarks);
  ASSERT_EQ(report.components.size(), 1U);
  EXPECT_EQ(report.components[0].name, "a");
}

TEST(LatticeReport, StopsWhenItIsCancelled) {
  for (const unsigned call : {1U, 3U, 6U}) {
    MemoryReader reader{test::MemoryLattice(test::UniformHeader(corvel::kUInt8, 2, 3, 2))};
    test::StopAt progress(call);
    EXPECT_FALSE(ReportLattice(reader, L"f", 0.01, &progress));
    EXPECT_EQ(progress.Calls(), call);
  }
  MemoryReader reader{test::MemoryLattice(test::UniformHeader(corvel::kUInt8, 2, 3, 2))};
  test::StopAt never(test::StopAt::kNever);
  EXPECT_TRUE(ReportLattice(reader, L"f", 0.01, &never));
  EXPECT_EQ(never.Last(), 1.0);
}

TEST(LatticeReport, PassesOnWhatTheReaderRaises) {
  MemoryReader reader{test::MemoryLattice(test::UniformHeader(corvel::kUInt8, 2, 3))};
  reader.FailAfter(2);
  EXPECT_EQ(test::FilterErrorOf([&] { ReportLattice(reader, L"f", 0.01, nullptr); }),
            "the file ends here");
}

}  // namespace
}  // namespace trovan::filters
