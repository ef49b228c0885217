// `trovan lattice` on small files: its help, info and preview.
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "LatticeCommandFixture.h"
#include "support/PngImage.h"

namespace trovan::test {
namespace {

using testing::HasSubstr;
using testing::Not;

class LatticeCommandTest : public LatticeCommandFixture {};

TEST_F(LatticeCommandTest, ExplainsItself) {
  const struct {
    std::vector<std::string> arguments;
    std::vector<const char*> told;
  } cases[] = {
      {{"--help"}, {"info", "convert", "preview"}},
      {{"info", "--help"}, {"--format", "--planes", "--array", "--tolerance", ".asc", ".hgt"}},
      {{"convert", "--help"},
       {"--planes", "--array", "--interleave", "--rows", "--byte-order", "--ascii", "--type",
        "--scale", "--valid", "--replace", "--replace-invalid", "--keep-invalid", "--tolerance",
        "TMPDIR", ".vtk"}},
      {{"preview", "--help"},
       {"--planes", "--array", "--plane", "--component", "--style", "--size", "--range", ".png"}},
  };
  for (const auto& c : cases) {
    const Outcome outcome = Run(c.arguments);
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_THAT(outcome.output, HasSubstr("Usage: trovan lattice"));
    EXPECT_THAT(outcome.output, HasSubstr("130 interrupted"));
    for (const char* word : c.told) EXPECT_THAT(outcome.output, HasSubstr(word));
  }
}

TEST_F(LatticeCommandTest, RefusesArgumentsThatMakeNoSense) {
  const std::string grid = SaveGrid();
  const std::string vtk = Path("out.vtk");
  const std::string png = Path("out.png");
  const std::vector<std::vector<std::string>> commands = {
      {},
      {"nonsense"},
      {"info"},
      {"info", grid, "--nonsense"},
      {"info", grid, "--format", "xml"},
      {"info", grid, "--planes", "0"},
      {"info", grid, "--planes", "-1"},
      {"info", grid, "--planes", "many"},
      {"info", grid, "--tolerance", "-1"},
      {"info", grid, "--tolerance", "nan"},
      {"convert", grid},
      {"convert", grid, vtk, "more"},
      {"convert", grid, vtk, "--interleave", "bbq"},
      {"convert", grid, vtk, "--rows", "up"},
      {"convert", grid, vtk, "--byte-order", "middle"},
      {"convert", grid, vtk, "--type", "uint64"},
      {"convert", grid, vtk, "--scale", "0", "1"},
      {"convert", grid, vtk, "--type", "uint8", "--scale", "0"},
      {"convert", grid, vtk, "--valid", "0", "1"},
      {"convert", grid, vtk, "--valid", "0", "--replace", "1"},
      {"convert", grid, vtk, "--replace", "1"},
      {"convert", grid, vtk, "--valid", "0", "1", "--replace", "nan"},
      {"convert", grid, vtk, "--void", "inf"},
      {"convert", grid, vtk, "--replace-invalid", "none"},
      {"convert", grid, vtk, "--replace-invalid", "nan"},
      {"convert", grid, vtk, "--replace-invalid", "0", "--keep-invalid"},
      {"convert", grid, vtk, "--tolerance", "-0.1"},
      {"preview", grid},
      {"preview", grid, png, "--plane", "-1"},
      {"preview", grid, png, "--component", "first"},
      {"preview", grid, png, "--style", "sepia"},
      {"preview", grid, png, "--size", "0"},
      {"preview", grid, png, "--size", "16385"},
      {"preview", grid, png, "--range", "1"},
  };
  for (const auto& arguments : commands) {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.code, 2) << testing::PrintToString(arguments);
    EXPECT_EQ(outcome.output, "") << testing::PrintToString(arguments);
    EXPECT_NE(outcome.errors, "") << testing::PrintToString(arguments);
  }
  EXPECT_THAT(Files(), testing::ElementsAre("grid.asc"));
}

// --- info ----------------------------------------------------------------------------------------

TEST_F(LatticeCommandTest, DescribesALattice) {
  const std::string grid = SaveGrid();
  const Outcome outcome = Run({"info", grid});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.errors, "");
  EXPECT_EQ(outcome.output,
            grid + "\n" +
                "  Format         ESRI ASCII grid\n"
                "  Lattice        uniform\n"
                "  Nodes          3 columns x 2 rows x 1 planes, 1 component of type double\n"
                "  Rows           top row first\n"
                "  X              10 to 12, step 1, equally spaced (deviation 0 %)\n"
                "  Y              20 to 21, step 1, equally spaced (deviation 0 %)\n"
                "  Z              0\n"
                "  Range          1 to 6.5\n"
                "  Void values    1 of -1\n"
                "  Invalid values 0\n"
                "  Summary\n"
                "    Name: " +
                grid +
                "\n"
                "    Format: ESRI ASCII grid\n"
                "    Size: 2 rows x 3 columns x 1 planes\n"
                "    Spacing: X=1,   Y=1,   Z=1\n"
                "    xMin: 10 xMax: 12\n"
                "    yMin: 20 yMax: 21\n"
                "    SW Corner: 10, 20\n"
                "    NW Corner: 10, 21\n"
                "    NE Corner: 12, 21\n"
                "    SE Corner: 12, 20\n");
}

TEST_F(LatticeCommandTest, DescribesALatticeInJson) {
  const std::string grid = SaveGrid();
  const Outcome outcome = Run({"info", grid, "--format", "json"});
  EXPECT_EQ(outcome.code, 0);
  const auto json = nlohmann::json::parse(outcome.output);
  EXPECT_EQ(json["file"], grid);
  EXPECT_EQ(json["format"], "ESRI ASCII grid");
  EXPECT_EQ(json["lattice"], "uniform");
  EXPECT_EQ(json["columns"], 3);
  EXPECT_EQ(json["rows"], 2);
  EXPECT_EQ(json["planes"], 1);
  EXPECT_EQ(json["type"], "double");
  EXPECT_EQ(json["row_order"], "top row first");
  EXPECT_EQ(json["void_value"], -1.0);
  ASSERT_EQ(json["components"].size(), 1U);
  EXPECT_EQ(json["components"][0]["lowest"], 1.0);
  EXPECT_EQ(json["components"][0]["highest"], 6.5);
  EXPECT_EQ(json["components"][0]["valid"], 5);
  EXPECT_EQ(json["components"][0]["void"], 1);
  EXPECT_EQ(json["components"][0]["invalid"], 0);
  EXPECT_EQ(json["axes"]["X"]["first"], 10.0);
  EXPECT_EQ(json["axes"]["Y"]["count"], 2);
  EXPECT_EQ(json["axes"]["Y"]["equally_spaced"], true);
  EXPECT_THAT(json["summary"].get<std::string>(), HasSubstr("SW Corner:\t10, 20\r\n"));
  EXPECT_TRUE(json["remarks"].empty());
}

TEST_F(LatticeCommandTest, DescribesRectilinearAndCurvilinearLattices) {
  const std::string rectilinear = Save(
      "r.vtk",
      "# vtk DataFile Version 3.0\nsteps\nASCII\nDATASET RECTILINEAR_GRID\n"
      "DIMENSIONS 3 1 1\nX_COORDINATES 3 float\n0 1 3\nY_COORDINATES 1 float\n0\n"
      "Z_COORDINATES 1 float\n0\nPOINT_DATA 3\nSCALARS h short\nLOOKUP_TABLE default\n1 2 3\n");
  const std::string text = Run({"info", rectilinear}).output;
  EXPECT_THAT(text, HasSubstr("Title          steps\n"));
  EXPECT_THAT(text, HasSubstr("Lattice        rectilinear\n"));
  EXPECT_THAT(text, HasSubstr("Coordinates    of type float\n"));
  EXPECT_THAT(text, HasSubstr("step 1.5, not equally spaced within 0.01 % (deviation 33.33"));
  EXPECT_THAT(text, HasSubstr("Range          1 to 3 (h)\n"));
  EXPECT_THAT(text, Not(HasSubstr("Summary")));
  EXPECT_THAT(Run({"info", rectilinear, "--tolerance", "50"}).output, HasSubstr("Summary"));

  const std::string curvilinear =
      Save("c.vtk",
           "# vtk DataFile Version 3.0\n\nASCII\nDATASET STRUCTURED_GRID\n"
           "DIMENSIONS 2 1 1\nPOINTS 2 float\n0 1 2 -3 4 5\n"
           "POINT_DATA 2\nSCALARS h short\nLOOKUP_TABLE default\n1 2\n");
  EXPECT_THAT(Run({"info", curvilinear}).output, HasSubstr("X              -3 to 0\n"));
  const auto json = nlohmann::json::parse(Run({"info", curvilinear, "--format", "json"}).output);
  EXPECT_EQ(json["lattice"], "curvilinear");
  EXPECT_EQ(json["extent"]["Z"], nlohmann::json({2.0, 5.0}));
}

TEST_F(LatticeCommandTest, ShowsTheRangesOfTwelveComponentsAndCountsTheOthers) {
  for (const unsigned bands : {12U, 13U, 40U}) {
    Save("many.hdr", EnviHeader(1, 1, 1, bands));
    std::string values;
    for (unsigned band = 0; band < bands; ++band) values += static_cast<char>(band);
    const std::string many = Save("many.img", values);
    const std::string text = Run({"info", many}).output;
    EXPECT_THAT(text, HasSubstr("  Range 11       11 to 11\n"));
    EXPECT_THAT(text, Not(HasSubstr("Range 12")));
    const std::string more = "and " + std::to_string(bands - 12) + " components more\n";
    EXPECT_EQ(text.find(more) != std::string::npos, bands > 12) << text;
    const auto json = nlohmann::json::parse(Run({"info", many, "--format", "json"}).output);
    ASSERT_EQ(json["components"].size(), bands);
    EXPECT_EQ(json["components"][bands - 1]["highest"], bands - 1);
  }
}

TEST_F(LatticeCommandTest, DividesBandsIntoPlanes) {
  Save("b.hdr", EnviHeader(1, 1, 1, 6));
  const std::string raster = Save("b.img", "abcdef");
  EXPECT_THAT(Run({"info", raster, "--planes", "2"}).output,
              HasSubstr("1 rows x 2 planes, 3 components of type uint8"));
  const Outcome outcome = Run({"info", raster, "--planes", "4"});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_THAT(outcome.errors, HasSubstr("cannot be divided into 4 planes"));
}

TEST_F(LatticeCommandTest, KeepsControlCharactersOffTheTerminal) {
  const std::string escape = "\x1B[2J";
  const std::string header =
      EnviHeader(1, 1, 1) + "description = {" + escape + "}\nsensor" + escape + " = X\n";
  Save("e" + escape + ".hdr", header);
  const std::string raster = Save("e" + escape + ".img", "a");
  const Outcome info = Run({"info", raster});
  EXPECT_EQ(info.code, 0);
  EXPECT_THAT(info.output, HasSubstr("The header also has: sensor?[2j"));
  EXPECT_THAT(info.output, HasSubstr("Name: " + Path("e?[2J.img")));
  EXPECT_EQ(info.output.find('\x1B'), std::string::npos);
  const Outcome convert = Run({"convert", raster, Path("out.vtk")});
  EXPECT_EQ(convert.code, 0);
  EXPECT_THAT(convert.errors, HasSubstr("trovan: " + Path("e?[2J.img") + ": The header also has"));
  EXPECT_EQ(convert.errors.find('\x1B'), std::string::npos);
  const Outcome failed = Run({"info", Save("x.asc", "ncols" + escape)});
  EXPECT_EQ(failed.code, 1);
  EXPECT_EQ(failed.errors.find('\x1B'), std::string::npos) << failed.errors;
}

TEST_F(LatticeCommandTest, SaysWhatIsWrongWithTheInput) {
  const struct {
    std::string file;
    const char* reason;
  } cases[] = {{Path("none.asc"), "No such file or directory"},
               {Save("a.tif", "II*"), "does not tell the format"},
               {Save("empty.asc", ""), "empty.asc"},
               {Save("odd.hgt", "abc"), "is no height tile"}};
  for (const auto& c : cases) {
    for (const std::string command : {"info", "convert", "preview"}) {
      std::vector<std::string> arguments = {command, c.file};
      if (command == "convert") arguments.push_back(Path("out.vtk"));
      if (command == "preview") arguments.push_back(Path("out.png"));
      const Outcome outcome = Run(arguments);
      EXPECT_EQ(outcome.code, 1) << c.file;
      EXPECT_EQ(outcome.output, "") << c.file;
      EXPECT_THAT(outcome.errors, HasSubstr(c.reason));
    }
  }
}

// --- preview -------------------------------------------------------------------------------------

TEST_F(LatticeCommandTest, DrawsAPicture) {
  const std::string grid = SaveGrid();
  const Outcome outcome = Run({"preview", grid, Path("p.png"), "--style", "grey", "--size", "3"});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.output, "");
  EXPECT_EQ(outcome.errors, "");
  const PngImage image = ReadPng(Folder() / "p.png");
  EXPECT_EQ(image.width, 3U);
  EXPECT_EQ(image.height, 2U);
  EXPECT_EQ(image.pixels[0], 0);                // the lowest value, at the top left
  EXPECT_EQ(image.pixels[3], 255);              // is opaque,
  EXPECT_EQ(image.pixels[(3 + 1) * 4 + 3], 0);  // the void one is not
  EXPECT_EQ(image.pixels[(3 + 2) * 4], 255);    // the highest, at the lower right
}

TEST_F(LatticeCommandTest, DrawsAsTheOptionsOfPreviewSay) {
  const std::string grid = SaveGrid();
  const auto draw = [&](std::vector<std::string> options) {
    std::vector<std::string> arguments = {"preview", grid, Path("p.png")};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.code, 0) << outcome.errors;
    return ReadPng(Folder() / "p.png");
  };
  EXPECT_EQ(draw({}).width, 384U);
  EXPECT_EQ(draw({"--size", "2"}).width, 2U);
  EXPECT_NE(draw({"--style", "colour"}).pixels, draw({"--style", "relief"}).pixels);
  const PngImage ranged = draw({"--style", "grey", "--size", "3", "--range", "-5", "5"});
  EXPECT_EQ(ranged.pixels[0], 153);            // 1 is six tenths of the way
  EXPECT_EQ(ranged.pixels[(3 + 2) * 4], 255);  // 6.5 is beyond
}

TEST_F(LatticeCommandTest, SaysWhatCannotBeDrawn) {
  const std::string grid = SaveGrid();
  const struct {
    std::vector<std::string> options;
    const char* reason;
  } cases[] = {{{"--plane", "1"}, "there is no plane 1"},
               {{"--component", "7"}, "there is no component 7"},
               {{"--range", "2", "1"}, "the lower one first"}};
  for (const auto& c : cases) {
    std::vector<std::string> arguments = {"preview", grid, Path("p.png")};
    arguments.insert(arguments.end(), c.options.begin(), c.options.end());
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.code, 1);
    EXPECT_THAT(outcome.errors, HasSubstr(c.reason));
  }
  EXPECT_EQ(Run({"preview", grid, Path("none/p.png")}).code, 1);
  EXPECT_THAT(Run({"preview", grid, grid}).errors, HasSubstr("has to end in .png"));
  EXPECT_THAT(Files(), testing::ElementsAre("grid.asc"));
}

}  // namespace
}  // namespace trovan::test
