// Conversions that do not come to their end: broken files, full outputs, Ctrl-C.
#include <csignal>
#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "LatticeCommandFixture.h"
#include "support/FileSizeLimit.h"

namespace trovan::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class LatticeCommandEndTest : public LatticeCommandFixture {
 protected:
  // Whether there is a temporary file that holds data.
  bool HasDataFile() const {
    for (const std::string& name : TempFiles()) {
      if (name.rfind("QVD", 0) == 0) return true;
    }
    return false;
  }
};

// Long numbers, so that only the count of those that were read tells that half of them are missing.
TEST_F(LatticeCommandEndTest, LeavesTheOldOutputWhenTheInputIsCutOff) {
  std::string grid = "ncols 100\nnrows 100\nxllcorner 0\nyllcorner 0\ncellsize 1\n";
  for (int i = 0; i < 5000; ++i) grid += "1000.25\n";
  const std::string cut = Save("cut.asc", grid);
  const std::string output = Save("out.vtk", "an older file");
  const Outcome outcome = Run({"convert", cut, output});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(outcome.output, "");
  EXPECT_THAT(outcome.errors, HasSubstr("found only 5000"));
  EXPECT_EQ(Bytes("out.vtk"), "an older file");
  EXPECT_THAT(Files(), ElementsAre("cut.asc", "out.vtk"));
  EXPECT_THAT(TempFiles(), IsEmpty());

  EXPECT_EQ(Run({"preview", cut, Path("out.png")}).code, 1);
  EXPECT_EQ(Run({"info", cut}).code, 1);
  EXPECT_EQ(Run({"info", cut}).output, "");
  EXPECT_THAT(Files(), ElementsAre("cut.asc", "out.vtk"));
}

TEST_F(LatticeCommandEndTest, LeavesTheOldOutputWhenARasterIsCutOff) {
  Save("cut.hdr", EnviHeader(100, 100, 1));
  const std::string cut = Save("cut.img", std::string(5000, 'a'));
  const std::string output = Save("out.vtk", "an older file");
  const Outcome outcome = Run({"convert", cut, output});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_THAT(outcome.errors, HasSubstr("has 5000 bytes"));
  EXPECT_EQ(Bytes("out.vtk"), "an older file");
  EXPECT_THAT(Files(), ElementsAre("cut.hdr", "cut.img", "out.vtk"));
  EXPECT_THAT(TempFiles(), IsEmpty());
}

// The signal comes as soon as the temporary file does; filling it and the rows take far longer.
TEST_F(LatticeCommandEndTest, LeavesNothingBehindOnCtrlCAndWhenItsTerminalCloses) {
  const std::string large = SaveLarge("large", 10'000, 20'000);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    SCOPED_TRACE(signal);
    Process process({"lattice", "convert", large, Path("out.vtk")});
    while (!HasDataFile()) ASSERT_FALSE(process.HasEnded());
    process.Signal(signal);
    const Outcome outcome = process.Wait();
    EXPECT_EQ(outcome.signal, 0);
    EXPECT_EQ(outcome.code, 130) << outcome.errors;
    EXPECT_EQ(outcome.output, "");
    EXPECT_THAT(Files(), ElementsAre("large.hdr", "large.img"));
    EXPECT_THAT(TempFiles(), IsEmpty());
  }
}

TEST_F(LatticeCommandEndTest, LeavesNothingBehindWhenFilesMayNotBecomeSoLarge) {
  const std::string large = SaveLarge("large", 1'000, 1'000);
  const FileSizeLimit limit(500'000);
  const Outcome outcome = Run({"convert", large, Path("out.vtk")});
  EXPECT_EQ(outcome.signal, 0);
  EXPECT_EQ(outcome.code, 1);
  EXPECT_THAT(outcome.errors, HasSubstr("File too large"));
  EXPECT_THAT(Files(), ElementsAre("large.hdr", "large.img"));
  EXPECT_THAT(TempFiles(), IsEmpty());
}

TEST_F(LatticeCommandEndTest, FailsWhenItsReportCannotBeWritten) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "this system has no /dev/full";
  const Outcome outcome = RunTrovan({"lattice", "info", SaveGrid()}, "/dev/full");
  EXPECT_EQ(outcome.code, 1);
  EXPECT_THAT(outcome.errors, HasSubstr("cannot write the output: No space left on device"));
}

TEST_F(LatticeCommandEndTest, SaysThatThereIsNoFolderForTemporaryFiles) {
  const std::string grid = SaveGrid();
  const ScopedVariable nowhere("TMPDIR", "/nowhere/at/all");
  const Outcome outcome = Run({"convert", grid, Path("out.vtk")});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_THAT(outcome.errors, HasSubstr("GetTempPath failed"));
  EXPECT_THAT(Files(), ElementsAre("grid.asc"));
}

}  // namespace
}  // namespace trovan::test
