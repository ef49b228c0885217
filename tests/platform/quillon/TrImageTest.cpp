#include <quillon/TrImage.h>

#include <limits>
#include <memory>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <brindle/MemoryBitmap.h>

#include "Fault.h"

namespace quillon {
namespace {

using brindle::MemoryBitmap;
using corvel::Box2d;
using corvel::Mat4d;
using testing::HasSubstr;

constexpr double kBad[] = {std::numeric_limits<double>::quiet_NaN(),
                           std::numeric_limits<double>::infinity(),
                           -std::numeric_limits<double>::infinity()};

// Tells when it is deleted.
class MortalBitmap : public MemoryBitmap {
 public:
  explicit MortalBitmap(bool& isAlive)
      : MemoryBitmap(2, 1, corvel::kColorFormat8), isAlive_(isAlive) {
    isAlive_ = true;
  }
  ~MortalBitmap() override { isAlive_ = false; }

 private:
  bool& isAlive_;
};

TEST(TrImage, DeletesABitmapThatItOwns) {
  bool isAlive = false;
  {
    const TrImage image(new MortalBitmap(isAlive), true);
    EXPECT_TRUE(image.OwnsBitmap());
    EXPECT_TRUE(isAlive);
  }
  EXPECT_FALSE(isAlive);
}

TEST(TrImage, LeavesABorrowedBitmapAlone) {
  bool isAlive = false;
  MortalBitmap bitmap(isAlive);
  { EXPECT_FALSE(TrImage(&bitmap, false).OwnsBitmap()); }
  EXPECT_TRUE(isAlive);
}

TEST(TrImage, SharesABorrowedBitmapWithItsClones) {
  MemoryBitmap bitmap(2, 1, corvel::kColorFormat8);
  TrImage image(&bitmap, false);
  const auto clone = image.Clone();
  EXPECT_EQ(dynamic_cast<TrImage&>(*clone).Bitmap(), &bitmap);
}

TEST(TrImage, CopiesAnOwnedBitmapForItsClones) {
  auto image = std::make_unique<TrImage>(new MemoryBitmap(2, 1, corvel::kColorFormat8), true);
  const unsigned char pixels[] = {3, 4};
  image->Bitmap()->StoreRegion(pixels, 2, 0, 0, 2, 1);
  const auto clone = image->Clone();
  const auto& copy = dynamic_cast<const TrImage&>(*clone);
  EXPECT_NE(copy.Bitmap(), image->Bitmap());
  EXPECT_TRUE(copy.OwnsBitmap());
  image.reset();
  unsigned char second = 0;
  copy.Bitmap()->FetchRegion(&second, 1, {1, 0, 2, 1});
  EXPECT_EQ(second, 4);
}

TEST(TrImage, KeepsWhatItIsGiven) {
  MemoryBitmap bitmap(2, 1, corvel::kColorFormat8);
  TrImage image(&bitmap, false);
  EXPECT_EQ(image.Flag(), 0);
  EXPECT_EQ(image.Placement(), Box2d());
  EXPECT_EQ(image.Transform(), Mat4d());
  Mat4d turned;
  turned.RotateZ(1.0, corvel::Order::kAppend);
  image.SetFlag(255);
  image.SetPlacement(Box2d(0, 3, 4, 1));
  image.SetTransform(turned);
  image.Params().Set(L"layer", L"photos");
  const auto clone = image.Clone();
  const auto& copy = dynamic_cast<const TrImage&>(*clone);
  EXPECT_EQ(copy.Flag(), 255);
  EXPECT_EQ(copy.Placement(), Box2d(0, 3, 4, 1)) << "as it was given";
  EXPECT_EQ(copy.Transform(), turned);
  EXPECT_EQ(copy.Params().Get(L"layer"), L"photos");
}

TEST(TrImage, IsMovedAndAssignedWithItsBitmap) {
  bool isAlive = false;
  TrImage image(new MortalBitmap(isAlive), true);
  const brindle::GBitmap* bitmap = image.Bitmap();
  TrImage moved(std::move(image));
  EXPECT_EQ(moved.Bitmap(), bitmap);
  TrImage assigned;
  assigned = std::move(moved);
  EXPECT_EQ(assigned.Bitmap(), bitmap);
  EXPECT_TRUE(isAlive);
  assigned = TrImage();
  EXPECT_FALSE(isAlive);
  EXPECT_EQ(assigned.Bitmap(), nullptr);
}

TEST(TrImage, IsInvalidWithoutAFinitePlacement) {
  for (const double bad : kBad) {
    TrImage image;
    image.SetPlacement(Box2d(0, 0, bad, 1));
    EXPECT_THAT(Fault(image), HasSubstr("placement"));
  }
}

TEST(TrImage, IsInvalidWithoutAFiniteTransform) {
  for (const double bad : kBad) {
    TrImage image;
    Mat4d transform;
    transform(3, 2) = bad;
    image.SetTransform(transform);
    EXPECT_THAT(Fault(image), HasSubstr("transform"));
  }
}

TEST(TrImage, IsValidWithoutPixels) {
  EXPECT_EQ(Fault(TrImage(new MemoryBitmap(0, 0, corvel::kColorFormat8), true)), "");
  EXPECT_EQ(Fault(TrImage(nullptr, true)), "");
}

TEST(TrImage, DescribesItsSize) {
  EXPECT_EQ(TrImage(new MemoryBitmap(2, 1, corvel::kColorFormat8), true).Description(),
            L"Image, 2 x 1 pixels");
  EXPECT_EQ(TrImage().Description(), L"Image, 0 x 0 pixels");
}

}  // namespace
}  // namespace quillon
