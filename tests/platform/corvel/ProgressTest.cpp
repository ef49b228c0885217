#include <corvel/Progress.h>

#include <memory>
#include <vector>

#include <gtest/gtest.h>

namespace corvel {
namespace {

// Notes what it is told, and stops the work at a fraction.
class StopAt : public IProgress {
 public:
  explicit StopAt(double fraction, bool* destroyed = nullptr)
      : stop_(fraction), destroyed_(destroyed) {}
  ~StopAt() override {
    if (destroyed_ != nullptr) *destroyed_ = true;
  }

  bool Update(double fraction) override {
    told_.push_back(fraction);
    return fraction < stop_;
  }

  const std::vector<double>& Told() const { return told_; }

 private:
  double stop_;
  bool* destroyed_;
  std::vector<double> told_;
};

TEST(UpdateProgress, GoesOnWhenNobodyWaits) {
  EXPECT_TRUE(UpdateProgress(nullptr, 0.0));
  EXPECT_TRUE(UpdateProgress(nullptr, 1.0));
}

TEST(UpdateProgress, PassesTheFractionAndTheAnswerOn) {
  StopAt progress(0.5);
  EXPECT_TRUE(UpdateProgress(&progress, 0.0));
  EXPECT_TRUE(UpdateProgress(&progress, 0.25));
  EXPECT_FALSE(UpdateProgress(&progress, 0.5));
  EXPECT_EQ(progress.Told(), (std::vector<double>{0.0, 0.25, 0.5}));
}

TEST(IProgress, IsDestroyedThroughItsBase) {
  bool destroyed = false;
  std::unique_ptr<IProgress> progress = std::make_unique<StopAt>(1.0, &destroyed);
  progress.reset();
  EXPECT_TRUE(destroyed);
}

}  // namespace
}  // namespace corvel
