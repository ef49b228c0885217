// The zeros that new files are filled with: in which order, and in how many pieces.
#include <algorithm>
#include <fstream>
#include <limits>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ResequencerFixture.h"
#include "support/FileSizeLimit.h"

namespace trovan::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;

constexpr auto kCurvilinear = LatticeResequencer::Curvilinear;

// How many write calls this program has made so far.
long long WriteCalls() {
  std::ifstream counters("/proc/self/io");
  std::string name;
  long long count = 0;
  while (counters >> name >> count) {
    if (name == "syscw:") return count;
  }
  throw std::runtime_error("the system does not count write calls");
}

class SequenceZeros : public ResequencerTest {
 protected:
  // How many write calls a start takes: the fewest of several, since a sanitizer may add its own.
  long long CallsToStart(const Sizes& sizes) {
    long long fewest = std::numeric_limits<long long>::max();
    for (int round = 0; round < 3; ++round) {
      const long long before = WriteCalls();
      Start(sizes);
      fewest = std::min(fewest, WriteCalls() - before);
      lattice_.Finish();
    }
    return fewest;
  }
};

TEST_F(SequenceZeros, GoToTheCoordinateFileFirst) {
  const Sizes sizes = {.type = kCurvilinear, .xdim = 1'000, .coordSize = 1, .coordFile = true};
  {
    const FileSizeLimit limit(700);
    EXPECT_THAT(FileErrorOf([&] { Start(sizes); }),
                AllOf(HasSubstr("Cannot write"), HasSubstr("QVC")));
  }
  EXPECT_EQ(CoordFile(), std::string(700, '\0'));
  EXPECT_EQ(DataFile(), "");
}

TEST_F(SequenceZeros, GoToTheSystemInBlocksOf64Kilobytes) {
  if (!std::ifstream("/proc/self/io")) GTEST_SKIP() << "this system does not count write calls";
  const struct {
    unsigned nodes;
    unsigned dataSize;
    long long calls;
  } cases[] = {
      {65'536, 65'536, 0},  // the size wraps to 0
      {1, 1, 1},           {65'535, 1, 1},       {65'536, 1, 1},
      {65'537, 1, 2},      {10'485'760, 1, 160}, {10'485'761, 1, 161},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(CallsToStart({.xdim = c.nodes, .dataSize = c.dataSize}), c.calls)
        << c.nodes << " nodes of " << c.dataSize << " bytes";
  }
}

}  // namespace
}  // namespace trovan::test
