// The axes of rectilinear lattices, which stay in memory from one rectilinear start to the next.
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ResequencerFixture.h"

namespace trovan::test {
namespace {

using testing::ElementsAre;

constexpr auto kUniform = LatticeResequencer::Uniform;
constexpr auto kRectilinear = LatticeResequencer::Rectilinear;
constexpr auto kCurvilinear = LatticeResequencer::Curvilinear;

class SequenceAxes : public ResequencerTest {
 protected:
  // X, Y and Z, as many bytes as each really has: the guard bytes behind them are cut off.
  std::vector<std::string> Axes() const {
    const std::string guard(64, '#');
    std::vector<std::string> axes(3, guard);
    lattice_.ReadRectilinearXs(axes[0].data());
    lattice_.ReadRectilinearYs(axes[1].data());
    lattice_.ReadRectilinearZs(axes[2].data());
    for (std::string& axis : axes) axis.resize(axis.find_last_not_of('#') + 1);
    return axes;
  }

  // Axes "aAbBcC", "dDeE" and "fFgGhHiI".
  void StartWithAxes() {
    Start({.type = kRectilinear, .xdim = 3, .ydim = 2, .zdim = 4, .coordSize = 2});
    lattice_.WriteRectilinearXs("aAbBcC");
    lattice_.WriteRectilinearYs("dDeE");
    lattice_.WriteRectilinearZs("fFgGhHiI");
  }
};

std::string Zeros(std::size_t count) { return std::string(count, '\0'); }

TEST_F(SequenceAxes, AreZeroUntilTheyAreWritten) {
  Start({.type = kRectilinear, .xdim = 3, .ydim = 2, .zdim = 1, .coordSize = 2});
  EXPECT_THAT(Axes(), ElementsAre(Zeros(6), Zeros(4), Zeros(2)));
}

TEST_F(SequenceAxes, GoInAndOutAsAWhole) {
  StartWithAxes();
  EXPECT_THAT(Axes(), ElementsAre("aAbBcC", "dDeE", "fFgGhHiI"));
}

TEST_F(SequenceAxes, KeepTheirLeadingBytesInTheNextRectilinearStart) {
  StartWithAxes();
  Start({.type = kRectilinear, .xdim = 2, .ydim = 3, .zdim = 1, .coordSize = 2});
  EXPECT_THAT(Axes(), ElementsAre("aAbB", "dDeE" + Zeros(2), "fF"));
  Start({.type = kRectilinear, .xdim = 3, .ydim = 1, .zdim = 2, .coordSize = 2});
  EXPECT_THAT(Axes(), ElementsAre("aAbB" + Zeros(2), "dD", "fF" + Zeros(2)));
}

TEST_F(SequenceAxes, AreNoBusinessOfOtherStarts) {
  StartWithAxes();
  Start({.type = kUniform, .xdim = 9, .ydim = 8, .zdim = 7, .coordSize = 3});
  EXPECT_THAT(Axes(), ElementsAre("aAbBcC", "dDeE", "fFgGhHiI"));
  Start({.type = kCurvilinear, .xdim = 1, .ydim = 1, .zdim = 1, .coordSize = 1});
  EXPECT_THAT(Axes(), ElementsAre("aAbBcC", "dDeE", "fFgGhHiI"));
}

TEST_F(SequenceAxes, StayWhenTheLatticeIsFinished) {
  StartWithAxes();
  lattice_.Finish();
  EXPECT_THAT(Axes(), ElementsAre("aAbBcC", "dDeE", "fFgGhHiI"));
  Start({.type = kUniform, .xdim = 9, .ydim = 8, .zdim = 7, .coordSize = 3});
  EXPECT_THAT(Axes(), ElementsAre("aAbBcC", "dDeE", "fFgGhHiI"));
}

TEST_F(SequenceAxes, HaveTheNewSizesThoughThereIsNoTemporaryFolder) {
  StartWithAxes();
  const ScopedVariable nowhere("TMPDIR", (folder_.Path() / "missing").c_str());
  const Sizes sizes = {.type = kRectilinear, .xdim = 1, .ydim = 2, .zdim = 3, .coordSize = 4};
  EXPECT_EQ(RaisedBy([&] { Start(sizes); }), "GetTempPath failed!");
  EXPECT_THAT(Axes(), ElementsAre("aAbB", "dDeE" + Zeros(4), "fFgGhHiI" + Zeros(4)));
}

}  // namespace
}  // namespace trovan::test
