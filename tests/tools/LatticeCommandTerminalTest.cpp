// `trovan lattice` with a person at a terminal.
#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "LatticeCommandFixture.h"
#include "Terminal.h"

namespace trovan::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

class LatticeCommandTerminalTest : public LatticeCommandFixture {
 protected:
  // Two rows, both with an invalid node.
  std::string SaveInvalid() const {
    const std::string raster = SaveFloats("f", {1, kNaN, kNaN, 4});
    Save("f.hdr", EnviHeader(2, 2, 4));
    return raster;
  }

  static std::string Question(const std::string& file) {
    return file +
           ":  One or more data nodes contain invalid floating-point data.  Do you want to "
           "replace these nodes with              0 and continue importing? [y/N] ";
  }

  static std::size_t Count(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
    return count;
  }

  void ExpectNothingWritten() const {
    EXPECT_THAT(Files(), ElementsAre("f.hdr", "f.img"));
    EXPECT_THAT(TempFiles(), IsEmpty());
  }
};

TEST_F(LatticeCommandTerminalTest, AsksOnceWhetherToReplaceInvalidNodesAndGoesOn) {
  const std::string raster = SaveInvalid();
  for (const char* yes : {"y\n", "Y\n", "yes\n", "YES\n"}) {
    Terminal terminal({"lattice", "convert", raster, Path("out.asc")});
    ASSERT_TRUE(terminal.WaitFor(Question(raster))) << terminal.Screen();
    EXPECT_THAT(Files(), Not(testing::Contains("out.asc")));
    terminal.Type(yes);
    EXPECT_EQ(terminal.Wait(), 0) << terminal.Screen();
    EXPECT_EQ(Count(terminal.Screen(), "One or more data nodes"), 1U);
    EXPECT_EQ(NodesOf(Path("out.asc")), "1 0\n0 4\n");
    EXPECT_THAT(TempFiles(), IsEmpty());
    std::filesystem::remove(Folder() / "out.asc");
  }
}

TEST_F(LatticeCommandTerminalTest, StopsUnlessTheAnswerIsYes) {
  const std::string raster = SaveInvalid();
  const char* const endOfInput = "\x04";
  for (const char* no : {"n\n", "no\n", "\n", "yesterday and the day before\n", endOfInput}) {
    Terminal terminal({"lattice", "convert", raster, Path("out.asc")});
    ASSERT_TRUE(terminal.WaitFor(Question(raster))) << terminal.Screen();
    terminal.Type(no);
    EXPECT_EQ(terminal.Wait(), 1) << terminal.Screen();
    EXPECT_THAT(terminal.Screen(), HasSubstr("nothing was written\r\n"));
    EXPECT_EQ(Count(terminal.Screen(), "One or more data nodes"), 1U);
    ExpectNothingWritten();
  }
}

TEST_F(LatticeCommandTerminalTest, IsInterruptedAtTheQuestion) {
  const std::string raster = SaveInvalid();
  Terminal terminal({"lattice", "convert", raster, Path("out.asc")});
  ASSERT_TRUE(terminal.WaitFor(Question(raster))) << terminal.Screen();
  terminal.Type("\x03");
  EXPECT_EQ(terminal.Wait(), 130) << terminal.Screen();
  EXPECT_THAT(terminal.Screen(), Not(HasSubstr("nothing was written")));
  ExpectNothingWritten();
}

TEST_F(LatticeCommandTerminalTest, DoesNotAskWhenItIsToldWhatToDo) {
  const std::string raster = SaveInvalid();
  const std::vector<std::vector<std::string>> ways = {{"--replace-invalid", "5"},
                                                      {"--keep-invalid"}};
  for (const auto& way : ways) {
    std::vector<std::string> arguments = {"lattice", "convert", raster, Path("out.img")};
    arguments.insert(arguments.end(), way.begin(), way.end());
    Terminal terminal(arguments);
    EXPECT_EQ(terminal.Wait(), 0);
    EXPECT_EQ(terminal.Screen(), "");
  }
}

// The raster is so large that the bar comes long before the end; it is a hole of the file.
TEST_F(LatticeCommandTerminalTest, ShowsItsProgressThoughItsOutputIsATerminalToo) {
  const std::string raster = SaveLarge("large", 100'000, 400'000);
  const std::vector<std::vector<std::string>> commands = {
      {"lattice", "info", raster}, {"lattice", "preview", raster, Path("out.png")}};
  for (const auto& command : commands) {
    Terminal terminal(command);
    ASSERT_TRUE(terminal.WaitFor("\r" + raster + " [")) << terminal.Screen();
    ASSERT_TRUE(terminal.WaitFor(" %")) << terminal.Screen();
    terminal.Type("\x03");
    EXPECT_EQ(terminal.Wait(), 130);
    const std::string cleared = "\r\033[K";
    ASSERT_GE(terminal.Screen().size(), cleared.size());
    EXPECT_EQ(terminal.Screen().substr(terminal.Screen().size() - cleared.size()), cleared);
  }
  EXPECT_THAT(Files(), ElementsAre("large.hdr", "large.img"));
}

}  // namespace
}  // namespace trovan::test
