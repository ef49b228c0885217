#include "filters/lattice/AsciiGridWriter.h"

#include <cstdint>
#include <limits>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "AnyLattice.h"
#include "LatticeErrors.h"
#include "MemoryLattice.h"
#include "filters/lattice/AsciiGridReader.h"
#include "filters/lattice/NodeTypes.h"
#include "support/TempFolder.h"

namespace trovan::filters {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

LatticeHeader SmallHeader() {
  LatticeHeader header;
  header.columns = 2;
  header.rows = 2;
  header.dataType = corvel::kInt16;
  header.origin = {105.0, 205.0, 0.0};
  header.spacing = {10.0, 10.0, 1.0};
  return header;
}

class AsciiGridWriterTest : public testing::Test {
 protected:
  std::wstring Path() const { return folder_.File(L"out.asc"); }
  std::string Text() const { return test::ReadBytes(folder_.Path() / "out.asc"); }

  void Write(const LatticeHeader& header, LatticeRowSource& source) const {
    AsciiGridWriter writer(Path(), {});
    writer.Check(header);
    writer.Write(header, source);
  }
  std::string HeaderText(const LatticeHeader& header) const {
    test::MemoryLattice zeros(header);
    Write(header, zeros);
    return Text();
  }

  test::TempFolder folder_;
};

TEST_F(AsciiGridWriterTest, WritesTheTopRowFirst) {
  test::MemoryLattice lattice(SmallHeader());
  lattice.Set<std::int16_t>(0, 0, 0, 0, 1);
  lattice.Set<std::int16_t>(1, 0, 0, 0, -2);
  lattice.Set<std::int16_t>(0, 1, 0, 0, 3);
  lattice.Set<std::int16_t>(1, 1, 0, 0, 32767);
  Write(lattice.Header(), lattice);
  EXPECT_EQ(Text(), "ncols 2\nnrows 2\nxllcorner 100\nyllcorner 200\ncellsize 10\n3 32767\n1 -2\n");
}

TEST_F(AsciiGridWriterTest, StatesTheVoidValue) {
  LatticeHeader header = SmallHeader();
  header.voidValue = -32768.0;
  EXPECT_THAT(HeaderText(header), HasSubstr("\ncellsize 10\nNODATA_value -32768\n0 0\n"));
}

// As a double it would be -3.4028234663852886e+38, which is not what the nodes' text is read as.
TEST_F(AsciiGridWriterTest, StatesTheVoidValueOfFloatsAsTheNodesAreWritten) {
  LatticeHeader header = SmallHeader();
  header.dataType = corvel::kFloat;
  header.voidValue = std::numeric_limits<float>::lowest();
  EXPECT_THAT(HeaderText(header), HasSubstr("\nNODATA_value -3.4028235e+38\n"));
  header.voidValue = -1e300;  // beyond all floats
  EXPECT_THAT(HeaderText(header), HasSubstr("\nNODATA_value -1e+300\n"));
}

TEST_F(AsciiGridWriterTest, StatesBothStepsWhenTheyDiffer) {
  LatticeHeader header = SmallHeader();
  header.spacing.y = 20.0;
  EXPECT_THAT(HeaderText(header), HasSubstr("\nxllcorner 100\nyllcorner 195\ndx 10\ndy 20\n"));
}

TEST_F(AsciiGridWriterTest, StatesTheCentreWhereTheCornerWouldNotGiveItBack) {
  LatticeHeader header = SmallHeader();
  header.origin = {0.1, 1e17 + 16, 0.0};
  header.spacing = {1.0, 17.0, 1.0};
  const std::string text = HeaderText(header);
  EXPECT_THAT(text, HasSubstr("\nxllcenter 0.1\nyllcenter 100000000000000016\n"));
}

TEST_F(AsciiGridWriterTest, GivesThePositionBackBitForBit) {
  std::mt19937 random(20240611);
  const auto fraction = [&random] { return test::AnyUnsigned(random) / 4294967296.0; };
  for (int round = 0; round < 200; ++round) {
    LatticeHeader header = SmallHeader();
    header.origin = {360 * fraction() - 180, 1e6 * fraction(), 0.0};
    header.spacing = {fraction() + 1e-9, fraction() + 1e-9, 1.0};
    test::MemoryLattice zeros(header);
    Write(header, zeros);
    const LatticeHeader back = AsciiGridReader(Path()).Header();
    EXPECT_EQ(back.origin.x, header.origin.x);
    EXPECT_EQ(back.origin.y, header.origin.y);
    EXPECT_EQ(back.spacing.x, header.spacing.x);
    EXPECT_EQ(back.spacing.y, header.spacing.y);
  }
}

TEST_F(AsciiGridWriterTest, LosesNothingOfAnyType) {
  std::mt19937 random(20240611);
  for (const corvel::PrimType type : test::kElementTypes) {
    for (int round = 0; round < 10; ++round) {
      SCOPED_TRACE(testing::Message() << "type " << type << ", round " << round);
      LatticeHeader header =
          test::AnyHeader(random, LatticeResequencer::Uniform, type, corvel::kDouble);
      header.planes = 1;
      header.components = 1;
      auto lattice = test::AnyLattice(random, header);
      Write(header, lattice);
      AsciiGridReader reader(Path());
      test::MemoryLattice back(reader.Header());
      reader.ReadRows(back);
      for (unsigned y = 0; y < header.rows; ++y) {
        for (unsigned x = 0; x < header.columns; ++x) {
          VisitElementType(type, [&](auto element) {
            using Element = decltype(element);
            const auto value = lattice.Value<Element>(x, y);
            if constexpr (std::is_same_v<Element, float>) {
              EXPECT_EQ(static_cast<float>(back.Value<double>(x, y)), value);
            } else {  // an integer of 64 bits is rounded by the reader only
              EXPECT_EQ(back.Value<double>(x, y), static_cast<double>(value));
            }
          });
        }
      }
    }
  }
}

TEST_F(AsciiGridWriterTest, TellsWhatTheFormatCannotHold) {
  const struct {
    const char* expected;
    void (*change)(LatticeHeader&);
  } cases[] = {
      {"holds equally spaced nodes only",
       [](LatticeHeader& h) { h.type = LatticeResequencer::Rectilinear; }},
      {"holds equally spaced nodes only",
       [](LatticeHeader& h) { h.type = LatticeResequencer::Curvilinear; }},
      {"holds one plane, this lattice has 3", [](LatticeHeader& h) { h.planes = 3; }},
      {"holds one component, this lattice has 2", [](LatticeHeader& h) { h.components = 2; }},
      {"has columns that go east", [](LatticeHeader& h) { h.spacing.x = -1; }},
      {"has columns that go east", [](LatticeHeader& h) { h.spacing.y = 0; }},
      {"needs a finite position", [](LatticeHeader& h) { h.origin.x = HUGE_VAL; }},
      {"needs a finite position", [](LatticeHeader& h) { h.spacing.y = HUGE_VAL; }},
  };
  for (const auto& c : cases) {
    LatticeHeader header = SmallHeader();
    c.change(header);
    const std::string error =
        test::FilterErrorOf([&] { AsciiGridWriter(Path(), {}).Check(header); });
    EXPECT_THAT(error, StartsWith(std::string("an ESRI ASCII grid ") + c.expected));
  }
}

TEST_F(AsciiGridWriterTest, TellsWhichChoicesTheFormatDoesNotHave) {
  const auto error = [this](const LatticeWriteOptions& options) {
    return test::FilterErrorOf([&] { AsciiGridWriter(Path(), options).Check(SmallHeader()); });
  };
  LatticeWriteOptions options;
  options.rowOrder = RowOrder::kBottomUp;
  EXPECT_THAT(error(options), HasSubstr("has its rows from the top down"));
  options.rowOrder = RowOrder::kTopDown;
  options.asText = true;
  EXPECT_EQ(error(options), "nothing was raised");
  options.interleave = Interleave::kBandByLine;
  EXPECT_THAT(error(options), HasSubstr("has one value a node and no interleave"));
  options.interleave.reset();
  options.byteOrder = ByteOrder::kLittleEndian;
  EXPECT_THAT(error(options), HasSubstr("is text and has no byte order"));
}

TEST_F(AsciiGridWriterTest, ReplacesAFileOnlyWithAWholeOne) {
  const LatticeHeader header = SmallHeader();
  test::WriteBytes(folder_.Path() / "out.asc", "old");
  test::FailingSource failing(header, 1);
  EXPECT_THROW(Write(header, failing), std::runtime_error);
  EXPECT_EQ(Text(), "old");
  EXPECT_THAT(test::FilesIn(folder_.Path()), ElementsAre("out.asc"));

  test::FailingSource whole(header, 2);
  Write(header, whole);
  EXPECT_THAT(Text(), StartsWith("ncols 2\n"));
  EXPECT_THAT(test::FilesIn(folder_.Path()), ElementsAre("out.asc"));
}

}  // namespace
}  // namespace trovan::filters
