// The zeros that new files are filled with: in which order, and in how many pieces.
#include <fstream>
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

using SequenceZeros = ResequencerTest;

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
  const struct {
    unsigned bytes;
    long long calls;
  } cases[] = {
      {1, 1}, {65'535, 1}, {65'536, 1}, {65'537, 2}, {10'485'760, 160}, {10'485'761, 161},
  };
  for (const auto& c : cases) {
    const long long before = WriteCalls();
    Start({.xdim = c.bytes});
    EXPECT_EQ(WriteCalls() - before, c.calls) << c.bytes << " bytes";
    lattice_.Finish();
  }
}

TEST_F(SequenceZeros, NeedNoCallWhenThereAreNone) {
  const long long before = WriteCalls();
  Start({.xdim = 65'536, .dataSize = 65'536});  // the size wraps to 0
  EXPECT_EQ(WriteCalls(), before);
}

}  // namespace
}  // namespace trovan::test
