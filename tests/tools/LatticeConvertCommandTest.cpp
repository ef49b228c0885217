// `trovan lattice convert` on small files.
#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "LatticeCommandFixture.h"

namespace trovan::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

class LatticeConvertCommandTest : public LatticeCommandFixture {
 protected:
  // Converts the file with the options. It has to go well and say nothing.
  void Convert(const std::string& from, const std::string& to,
               const std::vector<std::string>& options = {}) const {
    std::vector<std::string> arguments = {"convert", from, Path(to)};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, "");
    EXPECT_THAT(TempFiles(), IsEmpty());
  }

  // The nodes of the small grid after it was converted with the options.
  std::string GridAfter(const std::vector<std::string>& options) const {
    Convert(SaveGrid(), "out.img", options);
    return NodesOf(Path("out.img"));
  }

  // A raster of two bands.
  std::string SaveBands() const {
    Save("bands.hdr", EnviHeader(2, 2, 1, 2));
    return Save("bands.img", "abcdABCD");
  }
};

TEST_F(LatticeConvertCommandTest, WritesEveryFormat) {
  for (const char* name : {"a.asc", "a.vtk", "b.hdr", "c.bil", "d.dat"}) {
    Convert(SaveGrid(), name);
    EXPECT_EQ(NodesOf(Path(name)), "1 2 3\n4 -1 6.5\n") << name;
  }
  Save("tile.hdr", EnviHeader(2, 2, 2));
  Convert(Save("tile.img", std::string("\1\0\2\0\3\0\4\0", 8)), "out.hgt");
  EXPECT_EQ(Bytes("out.hgt"), std::string("\0\1\0\2\0\3\0\4", 8));
}

TEST_F(LatticeConvertCommandTest, OrdersTheValuesOfARaster) {
  const std::string bands = SaveBands();
  const struct {
    std::vector<std::string> options;
    const char* raw;
  } cases[] = {{{}, "abcdABCD"},
               {{"--interleave", "bsq"}, "abcdABCD"},
               {{"--interleave", "bil"}, "abABcdCD"},
               {{"--interleave", "bip"}, "aAbBcCdD"},
               {{"--rows", "top-down"}, "abcdABCD"},
               {{"--rows", "bottom-up"}, "cdabCDAB"}};
  for (const auto& c : cases) {
    Convert(bands, "out.img", c.options);
    EXPECT_EQ(Bytes("out.img"), c.raw) << testing::PrintToString(c.options);
  }
}

TEST_F(LatticeConvertCommandTest, ObeysTheByteOrder) {
  Save("two.hdr", EnviHeader(1, 1, 2));
  const std::string raster = Save("two.img", "AB");
  Convert(raster, "out.img", {"--byte-order", "big"});
  EXPECT_EQ(Bytes("out.img"), "BA");
  Convert(raster, "out.img", {"--byte-order", "little"});
  EXPECT_EQ(Bytes("out.img"), "AB");
}

TEST_F(LatticeConvertCommandTest, WritesVtkAsTextOrBinary) {
  Convert(SaveGrid(), "out.vtk", {"--ascii"});
  EXPECT_THAT(Bytes("out.vtk"), AllOf(HasSubstr("\nASCII\n"), HasSubstr("4 -1 6.5")));
  Convert(SaveGrid(), "out.vtk");
  EXPECT_THAT(Bytes("out.vtk"), HasSubstr("\nBINARY\n"));
}

TEST_F(LatticeConvertCommandTest, DividesBandsIntoPlanes) {
  Convert(SaveBands(), "out.vtk", {"--planes", "2", "--ascii"});
  EXPECT_THAT(Bytes("out.vtk"), HasSubstr("DIMENSIONS 2 2 2"));
}

TEST_F(LatticeConvertCommandTest, TakesTheArrayThatIsNamed) {
  const std::string vtk =
      Save("two.vtk",
           "# vtk DataFile Version 3.0\n\nASCII\nDATASET STRUCTURED_POINTS\nDIMENSIONS 1 1 1\n"
           "ORIGIN 0 0 0\nSPACING 1 1 1\nPOINT_DATA 1\nSCALARS one short\nLOOKUP_TABLE default\n1\n"
           "SCALARS two short\nLOOKUP_TABLE default\n2\n");
  const Outcome outcome = Run({"convert", vtk, Path("out.img"), "--array", "two"});
  EXPECT_EQ(outcome.code, 0) << outcome.errors;
  EXPECT_EQ(Bytes("out.img"), std::string("\2\0", 2));
}

TEST_F(LatticeConvertCommandTest, ConvertsTheValues) {
  EXPECT_EQ(GridAfter({"--type", "int16"}), "1 2 3\n4 -1 6\n");
  EXPECT_EQ(GridAfter({"--type", "uint8", "--void", "255"}), "1 2 3\n4 255 6\n");
  EXPECT_EQ(GridAfter({"--type", "uint8", "--scale", "-1", "9", "--void", "7"}),
            "51 76 102\n127 7 191\n");
  EXPECT_EQ(GridAfter({"--valid", "2", "4", "--replace", "-9"}), "-9 2 3\n4 -9 -9\n");
  EXPECT_EQ(GridAfter({"--valid", "-1", "6", "--replace", "0", "--type", "int32"}),
            "1 2 3\n4 -1 0\n");
}

TEST_F(LatticeConvertCommandTest, AsksForAMarkWhenTheTypeCannotHoldThatOfVoidNodes) {
  const std::string grid = SaveGrid();
  const Outcome outcome = Run({"convert", grid, Path("out.img"), "--type", "uint8"});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_THAT(outcome.errors, HasSubstr("--void VALUE"));
  EXPECT_THAT(Files(), ElementsAre("grid.asc"));
}

TEST_F(LatticeConvertCommandTest, MakesRectilinearLatticesUniformWithinTheTolerance) {
  const std::string vtk =
      Save("r.vtk",
           "# vtk DataFile Version 3.0\n\nASCII\nDATASET RECTILINEAR_GRID\nDIMENSIONS 4 1 1\n"
           "X_COORDINATES 4 double\n0 1 2.05 3\nY_COORDINATES 1 double\n0\nZ_COORDINATES 1 "
           "double\n0\nPOINT_DATA 4\nSCALARS h short\nLOOKUP_TABLE default\n1 2 3 4\n");
  const Outcome refused = Run({"convert", vtk, Path("out.img")});
  EXPECT_EQ(refused.code, 1);
  EXPECT_THAT(refused.errors, AllOf(HasSubstr("columns (X)"), HasSubstr(" 5 % off")));
  EXPECT_THAT(Files(), ElementsAre("r.vtk"));
  Convert(vtk, "out.img", {"--tolerance", "6"});
  EXPECT_EQ(NodesOf(Path("out.img")), "1 2 3 4\n");
}

TEST_F(LatticeConvertCommandTest, RefusesWhatTheFormatCannotHold) {
  const std::string bands = SaveBands();
  const Outcome outcome = Run({"convert", bands, Path("out.asc")});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(outcome.output, "");
  EXPECT_THAT(outcome.errors, HasSubstr("holds one component"));
  EXPECT_EQ(Run({"convert", bands, Path("out.tif")}).code, 1);
  EXPECT_THAT(Files(), ElementsAre("bands.hdr", "bands.img"));
}

TEST_F(LatticeConvertCommandTest, TellsOnStandardErrorWhatGetsLost) {
  Save("r.hdr", EnviHeader(1, 1, 1) + "sensor type = Unknown\n");
  const std::string raster = Save("r.img", "a");
  const Outcome convert = Run({"convert", raster, Path("out.vtk")});
  EXPECT_EQ(convert.code, 0);
  EXPECT_EQ(convert.output, "");
  EXPECT_EQ(convert.errors, "trovan: " + raster + ": The header also has: sensor type.\n");
  EXPECT_EQ(Run({"preview", raster, Path("out.png")}).errors, convert.errors);
  EXPECT_EQ(Run({"info", raster}).errors, "");  // there it is part of the output
}

// --- invalid nodes, without a terminal -----------------------------------------------------------

TEST_F(LatticeConvertCommandTest, RefusesInvalidNodesWhenNobodyCanBeAsked) {
  for (const float invalid : {kNaN, -std::numeric_limits<float>::infinity()}) {
    const Outcome outcome = Run({"convert", SaveFloats("f", {1, invalid}), Path("out.vtk")});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_THAT(outcome.errors, AllOf(HasSubstr("--replace-invalid"), HasSubstr("--keep-invalid")));
    EXPECT_THAT(Files(), ElementsAre("f.hdr", "f.img"));
    EXPECT_THAT(TempFiles(), IsEmpty());
  }
}

TEST_F(LatticeConvertCommandTest, ReplacesInvalidNodesWhenToldBy) {
  Convert(SaveFloats("f", {1, kNaN, 3}), "out.img", {"--replace-invalid", "-7.5"});
  EXPECT_EQ(NodesOf(Path("out.img")), "1 -7.5 3\n");
}

TEST_F(LatticeConvertCommandTest, KeepsInvalidNodesWhenTold) {
  const std::string raster = SaveFloats("f", {1, kNaN, 3});
  Convert(raster, "out.img", {"--keep-invalid"});
  EXPECT_EQ(Bytes("out.img"), Bytes("f.img"));
}

}  // namespace
}  // namespace trovan::test
