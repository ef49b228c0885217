#include "filters/lattice/VtkWriter.h"

#include <cstdint>
#include <limits>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "AnyLattice.h"
#include "LatticeErrors.h"
#include "MemoryLattice.h"
#include "filters/lattice/VtkReader.h"
#include "support/TempFolder.h"

namespace trovan::filters {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr LatticeResequencer::LatticeType kLatticeTypes[] = {
    LatticeResequencer::Uniform, LatticeResequencer::Rectilinear, LatticeResequencer::Curvilinear};

LatticeHeader SmallHeader() {
  LatticeHeader header;
  header.columns = 2;
  header.rows = 2;
  header.dataType = corvel::kInt16;
  header.origin = {1.0, 2.0, 3.0};
  header.spacing = {0.5, 4.0, 1.0};
  header.title = "two by two";
  header.componentNames = {"height"};
  return header;
}

test::MemoryLattice SmallLattice(const LatticeHeader& header = SmallHeader()) {
  test::MemoryLattice lattice(header);
  lattice.Set<std::int16_t>(0, 0, 0, 0, 1);
  lattice.Set<std::int16_t>(1, 0, 0, 0, 2);
  lattice.Set<std::int16_t>(0, 1, 0, 0, 3);
  lattice.Set<std::int16_t>(1, 1, 0, 0, 258);
  return lattice;
}

LatticeWriteOptions AsText() {
  LatticeWriteOptions options;
  options.asText = true;
  return options;
}

class VtkWriterTest : public testing::Test {
 protected:
  std::wstring Path() const { return folder_.File(L"out.vtk"); }
  std::string Text() const { return test::ReadBytes(folder_.Path() / "out.vtk"); }

  void Write(const LatticeHeader& header, LatticeRowSource& source,
             const LatticeWriteOptions& options = {}) const {
    VtkWriter writer(Path(), options);
    writer.Check(header);
    writer.Write(header, source);
  }
  std::string TextOf(const LatticeHeader& header) const {
    test::MemoryLattice zeros(header);
    Write(header, zeros, AsText());
    return Text();
  }

  test::TempFolder folder_;
};

TEST_F(VtkWriterTest, WritesText) {
  auto lattice = SmallLattice();
  Write(lattice.Header(), lattice, AsText());
  EXPECT_EQ(Text(),
            "# vtk DataFile Version 3.0\ntwo by two\nASCII\nDATASET STRUCTURED_POINTS\n"
            "DIMENSIONS 2 2 1\nORIGIN 1 2 3\nSPACING 0.5 4 1\nPOINT_DATA 4\n"
            "SCALARS height short 1\nLOOKUP_TABLE default\n1 2\n3 258\n");
}

TEST_F(VtkWriterTest, WritesBigEndianBytesUnlessTextIsWanted) {
  auto lattice = SmallLattice();
  Write(lattice.Header(), lattice);
  EXPECT_EQ(Text(), std::string("# vtk DataFile Version 3.0\ntwo by two\nBINARY\n"
                                "DATASET STRUCTURED_POINTS\nDIMENSIONS 2 2 1\nORIGIN 1 2 3\n"
                                "SPACING 0.5 4 1\nPOINT_DATA 4\nSCALARS height short 1\n"
                                "LOOKUP_TABLE default\n") +
                        std::string("\0\1\0\2\0\3\1\2\n", 9));
}

TEST_F(VtkWriterTest, LetsYDescendWhereTheTopRowComesFirst) {
  auto lattice = SmallLattice();
  LatticeWriteOptions options = AsText();
  options.rowOrder = RowOrder::kTopDown;
  Write(lattice.Header(), lattice, options);
  EXPECT_THAT(Text(), HasSubstr("\nORIGIN 1 6 3\nSPACING 0.5 -4 1\n"));
  EXPECT_THAT(Text(), HasSubstr("default\n3 258\n1 2\n"));
}

TEST_F(VtkWriterTest, WritesAxes) {
  LatticeHeader header = SmallHeader();
  header.type = LatticeResequencer::Rectilinear;
  header.coordType = corvel::kUInt8;
  header.axes = {{{7, 5}, {1, 9}, {4}}};
  auto lattice = SmallLattice(header);
  LatticeWriteOptions options = AsText();
  Write(header, lattice, options);
  EXPECT_THAT(Text(), HasSubstr("DATASET RECTILINEAR_GRID\nDIMENSIONS 2 2 1\n"
                                "X_COORDINATES 2 unsigned_char\n7 5\nY_COORDINATES 2 "
                                "unsigned_char\n1 9\nZ_COORDINATES 1 unsigned_char\n4\n"
                                "POINT_DATA 4\n"));
  options.rowOrder = RowOrder::kTopDown;
  Write(header, lattice, options);
  EXPECT_THAT(Text(), HasSubstr("Y_COORDINATES 2 unsigned_char\n9 1\n"));
  EXPECT_THAT(Text(), HasSubstr("default\n3 258\n1 2\n"));
}

TEST_F(VtkWriterTest, WritesTheCoordinatesOfAllNodesFirst) {
  LatticeHeader header = SmallHeader();
  header.type = LatticeResequencer::Curvilinear;
  header.columns = 1;
  header.coordType = corvel::kInt64;
  test::MemoryLattice lattice(header);
  lattice.SetCoordinate<std::int64_t>(0, 0, 0, 1, -1);
  lattice.SetCoordinate<std::int64_t>(0, 1, 0, 2, 9007199254740993);
  lattice.Set<std::int16_t>(0, 1, 0, 0, 5);
  LatticeWriteOptions options = AsText();
  Write(header, lattice, options);
  EXPECT_THAT(Text(), HasSubstr("DATASET STRUCTURED_GRID\nDIMENSIONS 1 2 1\nPOINTS 2 vtktypeint64\n"
                                "0 -1 0\n0 0 9007199254740993\nPOINT_DATA 2\n"));
  EXPECT_THAT(Text(), HasSubstr("default\n0\n5\n"));
  options.rowOrder = RowOrder::kTopDown;
  Write(header, lattice, options);
  EXPECT_THAT(Text(), HasSubstr("vtktypeint64\n0 0 9007199254740993\n0 -1 0\n"));
  EXPECT_THAT(Text(), HasSubstr("default\n5\n0\n"));
}

TEST_F(VtkWriterTest, WritesManyComponentsAsAField) {
  LatticeHeader header = SmallHeader();
  header.componentNames.clear();
  header.components = 4;
  EXPECT_THAT(TextOf(header), HasSubstr("\nSCALARS values short 4\nLOOKUP_TABLE default\n"));
  header.components = 5;
  EXPECT_THAT(TextOf(header), HasSubstr("\nPOINT_DATA 4\nFIELD FieldData 1\nvalues 5 4 short\n0 "));
}

TEST_F(VtkWriterTest, MakesOneWordOfTheNames) {
  const struct {
    std::vector<std::string> names;
    const char* expected;
  } cases[] = {
      {{"water depth\n(m)"}, "\nSCALARS water_depth_(m) short 1\n"},
      {{"50%25"}, "\nSCALARS 50_25 short 1\n"},
      {{""}, "\nSCALARS values short 1\n"},
      {{}, "\nSCALARS values short 1\n"},
      {{"v[0]", "v[1]"}, "\nSCALARS v short 2\n"},
      {{"v[0]", "w[1]"}, "\nSCALARS values short 2\n"},
      {{"red", "green"}, "\nSCALARS values short 2\n"},
      {{"metadata[0]", "metadata[1]"}, "\nSCALARS metadata_ short 2\n"},
  };
  for (const auto& c : cases) {
    LatticeHeader header = SmallHeader();
    header.componentNames = c.names;
    header.components = c.names.size() > 1 ? 2 : 1;
    EXPECT_THAT(TextOf(header), HasSubstr(c.expected));
  }
}

TEST_F(VtkWriterTest, KeepsTheTitleToOneShortLine) {
  LatticeHeader header = SmallHeader();
  header.title = "one\r\ntwo\tthree";
  EXPECT_THAT(TextOf(header), HasSubstr("\none  two three\nASCII\n"));
  header.title = std::string(254, 'a') + "\xC3\xA9";  // the character would end at byte 256
  EXPECT_THAT(TextOf(header), HasSubstr('\n' + std::string(254, 'a') + "\nASCII\n"));
  header.title = std::string(253, 'a') + "\xC3\xA9";
  EXPECT_THAT(TextOf(header), HasSubstr('\n' + header.title + "\nASCII\n"));
}

// --- And back ------------------------------------------------------------------------------------

std::string TextOf(const corvel::Vec3d& v) {
  return std::to_string(v.x) + ' ' + std::to_string(v.y) + ' ' + std::to_string(v.z);
}

void ExpectSame(const test::MemoryLattice& read, const test::MemoryLattice& written) {
  const LatticeHeader& a = read.Header();
  const LatticeHeader& b = written.Header();
  EXPECT_EQ(a.type, b.type);
  EXPECT_EQ(a.dataType, b.dataType);
  EXPECT_EQ(a.components, b.components);
  EXPECT_EQ(read.Nodes(), written.Nodes());
  EXPECT_EQ(read.Coordinates(), written.Coordinates());
  if (b.type == LatticeResequencer::Uniform) {
    EXPECT_EQ(TextOf(a.origin), TextOf(b.origin));
    EXPECT_EQ(TextOf(a.spacing), TextOf(b.spacing));
  } else {
    EXPECT_EQ(a.coordType, b.coordType);
    EXPECT_EQ(a.axes, b.axes);
  }
}

// A structured grid's rows need not lie along y, so nothing in the file tells their order.
test::MemoryLattice RowsTurned(const test::MemoryLattice& lattice) {
  const LatticeHeader& header = lattice.Header();
  test::MemoryLattice turned(header);
  test::MemoryLattice source = lattice;
  std::vector<unsigned char> row(std::max(RowSize(header), CoordinateRowSize(header)));
  for (unsigned z = 0; z < header.planes; ++z) {
    for (unsigned y = 0; y < header.rows; ++y) {
      source.GiveRow(header.rows - 1 - y, z, row.data());
      turned.TakeRow(y, z, row.data());
      source.GiveCoordinateRow(header.rows - 1 - y, z, row.data());
      turned.TakeCoordinateRow(y, z, row.data());
    }
  }
  return turned;
}

TEST_F(VtkWriterTest, LosesNothingOfAnyTypeInAnyForm) {
  std::mt19937 random(20240611);
  for (const corvel::PrimType type : test::kElementTypes) {
    for (const auto kind : kLatticeTypes) {
      for (int form = 0; form < 4; ++form) {
        const corvel::PrimType coordType = test::kElementTypes[test::Below(random, 9)];
        LatticeWriteOptions options;
        options.asText = form % 2 != 0;
        options.rowOrder = form < 2 ? RowOrder::kBottomUp : RowOrder::kTopDown;
        SCOPED_TRACE(testing::Message() << "type " << type << ", lattice " << kind << ", form "
                                        << form << ", coordinates " << coordType);
        auto lattice = test::AnyLattice(random, test::AnyHeader(random, kind, type, coordType));
        Write(lattice.Header(), lattice, options);

        VtkReader reader(Path(), "");
        test::MemoryLattice back(reader.Header());
        reader.ReadRows(back);
        const bool isTurned = kind == LatticeResequencer::Curvilinear && form >= 2;
        ExpectSame(back, isTurned ? RowsTurned(lattice) : lattice);
        if (kind == LatticeResequencer::Uniform) {
          EXPECT_EQ(reader.Header().rowOrder, *options.rowOrder);
        }
      }
    }
  }
}

TEST_F(VtkWriterTest, KeepsTheBitsOfNoNumberInBytes) {
  LatticeHeader header = SmallHeader();
  header.dataType = corvel::kDouble;
  test::MemoryLattice lattice(header);
  lattice.Set<std::uint64_t>(0, 0, 0, 0, 0xFFF8000000000123);
  Write(header, lattice);
  VtkReader reader(Path(), "height");
  test::MemoryLattice back(reader.Header());
  reader.ReadRows(back);
  EXPECT_EQ(back.Nodes(), lattice.Nodes());
}

TEST_F(VtkWriterTest, GivesTitleAndNameBack) {
  for (const unsigned components : {1U, 3U, 6U}) {
    LatticeHeader header = SmallHeader();
    header.components = components;
    if (components > 1) header.componentNames.clear();
    for (unsigned i = 0; components > 1 && i < components; ++i) {
      header.componentNames.push_back("height[" + std::to_string(i) + ']');
    }
    test::MemoryLattice zeros(header);
    Write(header, zeros);
    const LatticeHeader back = VtkReader(Path(), "height").Header();
    EXPECT_EQ(back.title, header.title);
    EXPECT_EQ(back.componentNames, header.componentNames);
  }
}

// --- What it refuses -----------------------------------------------------------------------------

TEST_F(VtkWriterTest, TellsWhichChoicesTheFormatDoesNotHave) {
  const auto error = [this](const LatticeWriteOptions& options) {
    return test::FilterErrorOf([&] { VtkWriter(Path(), options).Check(SmallHeader()); });
  };
  LatticeWriteOptions options;
  options.byteOrder = ByteOrder::kBigEndian;
  EXPECT_EQ(error(options), "nothing was raised");
  options.byteOrder = ByteOrder::kLittleEndian;
  EXPECT_THAT(error(options), HasSubstr("a VTK file is big-endian; leave the byte order out"));
  options.byteOrder.reset();
  options.interleave = Interleave::kBandByPixel;
  EXPECT_THAT(error(options), HasSubstr("a VTK file keeps the components of a node together"));
}

TEST_F(VtkWriterTest, WantsAPositionThatIsANumber) {
  LatticeHeader header = SmallHeader();
  header.origin.z = std::numeric_limits<double>::quiet_NaN();
  EXPECT_THAT(test::FilterErrorOf([&] { VtkWriter(Path(), {}).Check(header); }),
              HasSubstr("needs a finite position and finite steps"));
  header.origin = {0.0, 1.7e308, 0.0};
  header.spacing.y = 1.7e308;
  EXPECT_THAT(test::FilterErrorOf([&] { VtkWriter(Path(), {}).Check(header); }),
              HasSubstr("needs a finite position of its top row"));
}

TEST_F(VtkWriterTest, TellsNoRowOrderWithoutYThatAscends) {
  LatticeWriteOptions options;
  options.rowOrder = RowOrder::kTopDown;
  const auto error = [&](const LatticeHeader& header) {
    return test::FilterErrorOf([&] { VtkWriter(Path(), options).Check(header); });
  };
  LatticeHeader header = SmallHeader();
  header.spacing.y = 0.0;
  EXPECT_THAT(error(header), HasSubstr("y does not ascend in this lattice"));
  header.rows = 1;
  EXPECT_EQ(error(header), "nothing was raised");
  header = SmallHeader();
  header.type = LatticeResequencer::Rectilinear;
  header.coordType = corvel::kUInt8;
  header.axes = {{{7, 5}, {9, 9}, {4}}};
  EXPECT_THAT(error(header), HasSubstr("y does not ascend in this lattice"));
}

TEST_F(VtkWriterTest, ReplacesAFileOnlyWithAWholeOne) {
  for (const auto kind : kLatticeTypes) {
    LatticeHeader header = SmallHeader();
    header.type = kind;
    header.axes = {test::CountingElements(corvel::kDouble, 2),
                   test::CountingElements(corvel::kDouble, 2),
                   test::CountingElements(corvel::kDouble, 1)};
    const unsigned rows = kind == LatticeResequencer::Curvilinear ? 4 : 2;
    test::WriteBytes(folder_.Path() / "out.vtk", "old");
    for (unsigned before = 0; before < rows; ++before) {
      test::FailingSource failing(header, before);
      EXPECT_THROW(Write(header, failing), std::runtime_error);
      EXPECT_EQ(Text(), "old");
      EXPECT_THAT(test::FilesIn(folder_.Path()), ElementsAre("out.vtk"));
    }
    test::FailingSource whole(header, rows);
    Write(header, whole);
    EXPECT_THAT(Text(), HasSubstr("POINT_DATA 4"));
    EXPECT_THAT(test::FilesIn(folder_.Path()), ElementsAre("out.vtk"));
  }
}

}  // namespace
}  // namespace trovan::filters
