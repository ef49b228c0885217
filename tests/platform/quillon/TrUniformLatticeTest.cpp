#include <quillon/TrUniformLattice.h>

#include <limits>
#include <memory>
#include <string>
#include <type_traits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Fault.h"

namespace quillon {
namespace {

TrUniformLattice Sample() {
  TrUniformLattice lattice(3, 2, 4);
  lattice.SetOrigin(10.0, 20.0);
  lattice.SetSpacing(5.0, -2.0, 0.5);
  lattice.Params().Set(L"author", L"Ida");
  return lattice;
}

void ExpectSample(const TrUniformLattice& lattice) {
  EXPECT_EQ(lattice.ColumnCount(), 3U);
  EXPECT_EQ(lattice.RowCount(), 2U);
  EXPECT_EQ(lattice.PlaneCount(), 4U);
  EXPECT_EQ(lattice.XMin(), 10.0);
  EXPECT_EQ(lattice.YMin(), 20.0);
  EXPECT_EQ(lattice.XSpacing(), 5.0);
  EXPECT_EQ(lattice.YSpacing(), -2.0);
  EXPECT_EQ(lattice.ZSpacing(), 0.5);
  EXPECT_EQ(lattice.Params().Get(L"author"), L"Ida");
}

TEST(TrUniformLattice, StartsAsASingleNode) {
  const TrUniformLattice lattice;
  EXPECT_EQ(lattice.ColumnCount(), 1U);
  EXPECT_EQ(lattice.RowCount(), 1U);
  EXPECT_EQ(lattice.PlaneCount(), 1U);
  EXPECT_EQ(lattice.XMin(), 0.0);
  EXPECT_EQ(lattice.YMin(), 0.0);
  EXPECT_EQ(lattice.XSpacing(), 1.0);
  EXPECT_EQ(lattice.YSpacing(), 1.0);
  EXPECT_EQ(lattice.ZSpacing(), 1.0);
  EXPECT_TRUE(lattice.Params().IsEmpty());
  EXPECT_EQ(Fault(lattice), "");
}

TEST(TrUniformLattice, KeepsWhatIsSet) {
  ExpectSample(Sample());
  TrUniformLattice lattice;
  lattice.SetCounts(7, 8, 9);
  EXPECT_EQ(lattice.ColumnCount(), 7U);
  EXPECT_EQ(lattice.RowCount(), 8U);
  EXPECT_EQ(lattice.PlaneCount(), 9U);
}

TEST(TrUniformLattice, IsAValue) {
  static_assert(std::is_copy_constructible_v<TrUniformLattice>);
  static_assert(!std::is_copy_assignable_v<TrBase>);
  TrUniformLattice copy;
  copy = Sample();
  ExpectSample(copy);
  TrUniformLattice other = copy;
  other.Params().Set(L"author", L"Max");
  other.SetCounts(1, 1, 1);
  ExpectSample(copy);
}

TEST(TrUniformLattice, ClonesItselfWithItsParameters) {
  std::unique_ptr<TrBase> clone;
  {
    const TrUniformLattice original = Sample();
    clone = original.Clone();
    EXPECT_NE(clone.get(), &original);
  }
  ASSERT_EQ(clone->GetTypeId(), TrUniformLattice::GetClassTypeId());
  ExpectSample(dynamic_cast<TrUniformLattice&>(*clone));
}

TEST(TrUniformLattice, HasARecordOfItsOwnClass) {
  const TrUniformLattice lattice;
  EXPECT_EQ(lattice.GetTypeId(), TrUniformLattice::GetClassTypeId());
  EXPECT_NE(TrUniformLattice::GetClassTypeId(), TrBase::GetClassTypeId());
  EXPECT_TRUE(lattice.GetTypeId()->IsKindOf(TrBase::GetClassTypeId()));
  EXPECT_STREQ(TrBase::GetClassTypeId()->Name(), "TrBase");
  EXPECT_STREQ(lattice.GetTypeId()->Name(), "TrUniformLattice");
}

TEST(TrUniformLattice, DescribesItself) {
  EXPECT_EQ(Sample().Description(), L"Uniform lattice, 3 x 2 x 4 nodes");
}

TEST(TrUniformLattice, IsInvalidWithoutNodes) {
  for (const auto& lattice :
       {TrUniformLattice(0, 1, 1), TrUniformLattice(1, 0, 1), TrUniformLattice(1, 1, 0)}) {
    EXPECT_THAT(Fault(lattice), testing::HasSubstr("without nodes (TrUniformLattice, line "));
  }
}

TEST(TrUniformLattice, IsInvalidUnlessOriginAndSpacingsAreFinite) {
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (int place = 0; place < 5; ++place) {
    for (const double bad : {kNaN, kInfinity, -kInfinity}) {
      const auto value = [place, bad](int at) { return at == place ? bad : 1.0; };
      TrUniformLattice lattice;
      lattice.SetOrigin(value(0), value(1));
      lattice.SetSpacing(value(2), value(3), value(4));
      EXPECT_THAT(Fault(lattice), testing::HasSubstr("finite")) << place << ": " << bad;
    }
  }
}

}  // namespace
}  // namespace quillon
