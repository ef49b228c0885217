#include "filters/lattice/EnviWriter.h"

#include <cmath>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <utility>

#include "EnviFixture.h"
#include "filters/lattice/EnviReader.h"
#include "support/FileSizeLimit.h"

namespace trovan::filters {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr corvel::PrimType kStoredTypes[] = {corvel::kUInt8, corvel::kInt16,  corvel::kUInt16,
                                             corvel::kInt32, corvel::kUInt32, corvel::kInt64,
                                             corvel::kFloat, corvel::kDouble};
constexpr Interleave kInterleaves[] = {Interleave::kBandSequential, Interleave::kBandByLine,
                                       Interleave::kBandByPixel};
constexpr ByteOrder kByteOrders[] = {ByteOrder::kLittleEndian, ByteOrder::kBigEndian};
constexpr RowOrder kRowOrders[] = {RowOrder::kTopDown, RowOrder::kBottomUp};

class EnviWriterTest : public RasterTest {
 protected:
  void Write(test::MemoryLattice& nodes, const LatticeWriteOptions& options = {},
             const std::wstring& name = L"out.img") const {
    EnviWriter writer(File(name), options);
    writer.Check(nodes.Header());
    writer.Write(nodes.Header(), nodes);
  }
  LatticeHeader WrittenHeader(unsigned planes = 1) const {
    return EnviReader(File(L"out.hdr"), planes).Header();
  }
  static std::string CheckError(const LatticeHeader& header,
                                const LatticeWriteOptions& options = {}) {
    return ErrorOf([&] { EnviWriter(L"out.img", options).Check(header); });
  }
};

TEST_F(EnviWriterTest, WritesWhatReadsBackInEveryTypeAndOrder) {
  std::mt19937 random(20240611);
  for (const corvel::PrimType type : kStoredTypes) {
    for (const Interleave interleave : kInterleaves) {
      for (const ByteOrder byteOrder : kByteOrders) {
        for (const RowOrder rowOrder : kRowOrders) {
          for (int round = 0; round < 4; ++round) {
            LatticeHeader header =
                SmallLattice(type, 1 + test::Below(random, 7), 1 + test::Below(random, 7),
                             1 + test::Below(random, 3), 1 + test::Below(random, 4));
            header.origin = {test::Below(random, 1000) / 7.0, test::Below(random, 1000) / -3.0, 0};
            header.spacing = {1.0 / (1 + test::Below(random, 99)), 0.1, 1.0};
            SCOPED_TRACE(testing::Message()
                         << "type " << type << ", " << InterleaveName(interleave) << ", round "
                         << round << ": " << header.columns << " x " << header.rows << " x "
                         << header.planes << " x " << header.components);
            test::MemoryLattice nodes(header);
            FillAtRandom(nodes, random);
            Write(nodes, {interleave, rowOrder, byteOrder, false});

            EnviReader reader(File(L"out.img"), header.planes);
            EXPECT_EQ(reader.Header().dataType, type);
            EXPECT_EQ(reader.Header().columns, header.columns);
            EXPECT_EQ(reader.Header().rows, header.rows);
            EXPECT_EQ(reader.Header().components, header.components);
            EXPECT_EQ(reader.Header().rowOrder, rowOrder);
            EXPECT_EQ(reader.Header().origin, header.origin);
            EXPECT_EQ(reader.Header().spacing, header.spacing);
            EXPECT_THAT(reader.Header().remarks, IsEmpty());
            test::MemoryLattice read(reader.Header());
            reader.ReadRows(read);
            EXPECT_EQ(read.Nodes(), nodes.Nodes());
          }
        }
      }
    }
  }
  EXPECT_THAT(Names(), ElementsAre("out.hdr", "out.img"));
}

TEST_F(EnviWriterTest, WritesRastersOfManyBlocks) {
  std::mt19937 random(7);
  for (const Interleave interleave : kInterleaves) {
    for (const unsigned planes : {1U, 2U, 6U}) {
      SCOPED_TRACE(testing::Message() << InterleaveName(interleave) << " in " << planes);
      test::MemoryLattice nodes(SmallLattice(corvel::kFloat, 999, 401, planes, 6 / planes));
      FillAtRandom(nodes, random);
      Write(nodes, {interleave, std::nullopt, ByteOrder::kBigEndian, false});
      EnviReader reader(File(L"out.img"), planes);
      test::MemoryLattice read(reader.Header());
      reader.ReadRows(read);
      EXPECT_TRUE(read.Nodes() == nodes.Nodes());
    }
  }
}

TEST_F(EnviWriterTest, PutsEachValueInItsPlace) {
  test::MemoryLattice nodes(SmallLattice(corvel::kUInt8, 2, 2, 1, 2));
  FillInOrder<unsigned char>(nodes);  // band 0: 0 1 in the bottom row, 2 3 above; band 1: 4 5, 6 7
  const struct {
    Interleave interleave;
    RowOrder rowOrder;
    std::string bytes;
  } cases[] = {
      {Interleave::kBandSequential, RowOrder::kTopDown, {2, 3, 0, 1, 6, 7, 4, 5}},
      {Interleave::kBandByLine, RowOrder::kTopDown, {2, 3, 6, 7, 0, 1, 4, 5}},
      {Interleave::kBandByPixel, RowOrder::kTopDown, {2, 6, 3, 7, 0, 4, 1, 5}},
      {Interleave::kBandSequential, RowOrder::kBottomUp, {0, 1, 2, 3, 4, 5, 6, 7}},
      {Interleave::kBandByLine, RowOrder::kBottomUp, {0, 1, 4, 5, 2, 3, 6, 7}},
      {Interleave::kBandByPixel, RowOrder::kBottomUp, {0, 4, 1, 5, 2, 6, 3, 7}},
  };
  for (const auto& c : cases) {
    Write(nodes, {c.interleave, c.rowOrder, std::nullopt, false});
    EXPECT_EQ(Bytes("out.img"), c.bytes) << InterleaveName(c.interleave);
  }
}

TEST_F(EnviWriterTest, PutsTheBytesOfAValueInTheOrderThatWasAskedFor) {
  test::MemoryLattice nodes(SmallLattice(corvel::kUInt16, 1, 1));
  nodes.Set<std::uint16_t>(0, 0, 0, 0, 0x0102);
  Write(nodes, {std::nullopt, std::nullopt, ByteOrder::kBigEndian, false});
  EXPECT_EQ(Bytes("out.img"), "\1\2");
  EXPECT_THAT(Bytes("out.hdr"), HasSubstr("byte order = 1\n"));
  Write(nodes, {std::nullopt, std::nullopt, ByteOrder::kLittleEndian, false});
  EXPECT_EQ(Bytes("out.img"), "\2\1");
  EXPECT_THAT(Bytes("out.hdr"), HasSubstr("byte order = 0\n"));
}

TEST_F(EnviWriterTest, WritesBandSequentialRowsTopDownByDefault) {
  test::MemoryLattice nodes(SmallLattice(corvel::kUInt8, 1, 2, 1, 2));
  FillInOrder<unsigned char>(nodes);
  Write(nodes);
  EXPECT_EQ(Bytes("out.img"), std::string({1, 0, 3, 2}));
  EXPECT_THAT(Bytes("out.hdr"), AllOf(HasSubstr("interleave = bsq\n"), Not(HasSubstr("map info"))));
}

TEST_F(EnviWriterTest, AlwaysMarksRowsThatRunUpward) {
  test::MemoryLattice nodes(SmallLattice(corvel::kUInt8, 1, 2));
  Write(nodes, {std::nullopt, RowOrder::kBottomUp, std::nullopt, false});
  EXPECT_THAT(Bytes("out.hdr"),
              HasSubstr("map info = {Arbitrary, 1, 1, -0.5, -0.5, 1, -1, 0, North}"));
}

TEST_F(EnviWriterTest, WritesTitleNamesAndVoidValue) {
  LatticeHeader header = SmallLattice(corvel::kUInt8, 1, 1, 1, 2);
  header.title = "Two {bands}\nof waves";
  header.componentNames = {"height, m", "period"};
  header.voidValue = 0.1;
  test::MemoryLattice nodes(header);
  Write(nodes);
  EXPECT_EQ(WrittenHeader().title, "Two (bands) of waves");
  EXPECT_THAT(WrittenHeader().componentNames, ElementsAre("height; m", "period"));
  EXPECT_EQ(WrittenHeader().voidValue, 0.1);
}

TEST_F(EnviWriterTest, LeavesOutComponentNamesWhereThereArePlanes) {
  LatticeHeader header = SmallLattice(corvel::kUInt8, 1, 1, 2, 2);
  header.componentNames = {"a", "b"};
  test::MemoryLattice nodes(header);
  Write(nodes);
  EXPECT_THAT(Bytes("out.hdr"), Not(HasSubstr("band names")));
}

TEST_F(EnviWriterTest, KeepsTheOriginBitForBit) {
  std::mt19937 random(3);
  for (int round = 0; round < 200; ++round) {
    LatticeHeader header = SmallLattice(corvel::kUInt8, 1, 1 + test::Below(random, 50));
    header.origin = {test::AnyUnsigned(random) / 3.0, test::AnyUnsigned(random) / -7e5, 0.0};
    header.spacing = {1e-7 * test::AnyUnsigned(random) + 1e-9, 1.0 / 1200.0, 1.0};
    test::MemoryLattice nodes(header);
    Write(nodes, {std::nullopt, kRowOrders[round % 2], std::nullopt, false});
    EXPECT_EQ(WrittenHeader().origin, header.origin) << round;
    EXPECT_EQ(WrittenHeader().spacing, header.spacing) << round;
  }
}

TEST_F(EnviWriterTest, UsesTheCustomaryCornerWhereItIsExact) {
  LatticeHeader header = SmallLattice(corvel::kUInt8, 2, 3);
  header.origin = {105.0, 150.0, 0.0};
  header.spacing = {10.0, 20.0, 1.0};
  test::MemoryLattice nodes(header);
  Write(nodes);
  EXPECT_THAT(Bytes("out.hdr"), HasSubstr("{Arbitrary, 1, 1, 100, 200, 10, 20, 0, North}"));
}

// The rows are then counted from the other end, but each value keeps its place.
TEST_F(EnviWriterTest, KeepsThePlaceOfRowsWhoseStepIsNegative) {
  LatticeHeader header = SmallLattice(corvel::kUInt8, 1, 3);
  header.origin = {0.0, 30.0, 0.0};
  header.spacing = {1.0, -10.0, 1.0};
  test::MemoryLattice nodes(header);
  FillInOrder<unsigned char>(nodes);
  for (const RowOrder rowOrder : kRowOrders) {
    Write(nodes, {std::nullopt, rowOrder, std::nullopt, false});
    EnviReader reader(File(L"out.hdr"), 1);
    EXPECT_EQ(reader.Header().origin, corvel::Vec3d(0.0, 10.0, 0.0));
    EXPECT_EQ(reader.Header().spacing, corvel::Vec3d(1.0, 10.0, 1.0));
    test::MemoryLattice read(reader.Header());
    reader.ReadRows(read);
    EXPECT_THAT(read.Nodes(), ElementsAre(2, 1, 0));
  }
}

TEST_F(EnviWriterTest, WritesTheNamesThatBelongToTheGivenOne) {
  test::MemoryLattice nodes(SmallLattice(corvel::kUInt8, 1, 1));
  Write(nodes, {}, L"a.hdr");
  Write(nodes, {}, L"b.bil");
  Write(nodes, {}, L"c");
  EXPECT_THAT(Names(), ElementsAre("a.hdr", "a.img", "b.bil", "b.hdr", "c", "c.hdr"));
}

TEST_F(EnviWriterTest, ReplacesFilesThatExist) {
  Put("out.img", "old");
  Put("out.hdr", "old");
  test::MemoryLattice nodes(SmallLattice(corvel::kUInt8, 1, 1));
  Write(nodes);
  EXPECT_EQ(Bytes("out.img"), std::string(1, '\0'));
  EXPECT_THAT(Bytes("out.hdr"), HasSubstr("ENVI\n"));
  EXPECT_THAT(Names(), ElementsAre("out.hdr", "out.img"));
}

TEST_F(EnviWriterTest, ChecksThatNoOtherRasterIsMixedUpWithIt) {
  Put("s.img", "values of s.img");
  Put("s.hdr", "header of s.img");
  const LatticeHeader header = SmallLattice(corvel::kUInt8, 1, 1);
  EXPECT_THAT(ErrorOf([&] { EnviWriter(File(L"s.bip"), {}).Check(header); }),
              AllOf(HasSubstr("s.img is in the way"), HasSubstr("s.hdr"), HasSubstr("s.bip"),
                    HasSubstr("choose another name")));
  EXPECT_EQ(ErrorOf([&] { EnviWriter(File(L"s.img"), {}).Check(header); }), "");
  EXPECT_EQ(ErrorOf([&] { EnviWriter(File(L"s.hdr"), {}).Check(header); }), "");
  EXPECT_EQ(Bytes("s.hdr"), "header of s.img");
  EXPECT_THAT(Names(), ElementsAre("s.hdr", "s.img"));
}

TEST_F(EnviWriterTest, RefusesWhatARasterCannotHold) {
  LatticeHeader header = SmallLattice(corvel::kUInt8, 2, 2);
  EXPECT_EQ(CheckError(header), "");
  header.type = LatticeResequencer::Curvilinear;
  EXPECT_THAT(CheckError(header), AllOf(HasSubstr("curvilinear"), HasSubstr(".vtk")));
  header.type = LatticeResequencer::Rectilinear;
  EXPECT_THAT(CheckError(header), AllOf(HasSubstr("only equally spaced axes"), HasSubstr(".vtk")));

  header = SmallLattice(corvel::kInt8, 2, 2);
  EXPECT_THAT(CheckError(header), AllOf(HasSubstr("--type int16"), HasSubstr("--type uint8")));
  EXPECT_THAT(CheckError(SmallLattice(corvel::kUInt8, 0, 2)), HasSubstr("without nodes"));
  EXPECT_THAT(CheckError(SmallLattice(corvel::kUInt8, 1, 1, 65536, 65536)), HasSubstr("too large"));
  EXPECT_THAT(CheckError(SmallLattice(corvel::kDouble, 1U << 31, 1U << 31)),
              HasSubstr("too large"));

  LatticeWriteOptions text;
  text.asText = true;
  EXPECT_THAT(CheckError(SmallLattice(corvel::kUInt8, 2, 2), text), HasSubstr("as text"));
}

TEST_F(EnviWriterTest, RefusesPlacesThatItCouldNotReadBack) {
  const double infinity = std::numeric_limits<double>::infinity();
  for (const double wrong : {0.0, infinity, -infinity, std::nan("")}) {
    LatticeHeader header = SmallLattice(corvel::kUInt8, 2, 2);
    header.spacing.x = wrong;
    EXPECT_THAT(CheckError(header), HasSubstr("steps"));
    header.spacing = {1.0, wrong, 1.0};
    EXPECT_THAT(CheckError(header), HasSubstr("steps"));
    header.spacing = {1.0, 1.0, wrong};  // is not written
    EXPECT_EQ(CheckError(header), "");
    if (wrong == 0.0) continue;
    header.origin.y = wrong;
    EXPECT_THAT(CheckError(header), HasSubstr("origin"));
  }
}

// --- What fails leaves nothing -------------------------------------------------------------------

TEST_F(EnviWriterTest, LeavesNothingWhenTheSourceRaises) {
  const LatticeHeader header = SmallLattice(corvel::kUInt8, 3, 5, 2, 2);
  for (const Interleave interleave : kInterleaves) {
    FailingSource source(RowSize(header), 7);
    EnviWriter writer(File(L"out.img"), {interleave, std::nullopt, std::nullopt, false});
    EXPECT_THROW(writer.Write(header, source), std::runtime_error);
    EXPECT_THAT(Names(), IsEmpty());
  }
}

TEST_F(EnviWriterTest, LeavesOldFilesAsTheyWereWhenTheSourceRaises) {
  Put("out.img", "old values");
  Put("out.hdr", "old header");
  const LatticeHeader header = SmallLattice(corvel::kUInt8, 3, 5);
  FailingSource source(RowSize(header), 2);
  EnviWriter writer(File(L"out.img"), {});
  EXPECT_THROW(writer.Write(header, source), std::runtime_error);
  EXPECT_EQ(Bytes("out.img"), "old values");
  EXPECT_EQ(Bytes("out.hdr"), "old header");
  EXPECT_THAT(Names(), ElementsAre("out.hdr", "out.img"));
}

TEST_F(EnviWriterTest, LeavesNothingOnAFullDisk) {
  test::MemoryLattice nodes(SmallLattice(corvel::kUInt8, 300, 300));
  const struct {
    const char* what;
    rlim_t bytes;
  } cases[] = {{"nothing fits", 0}, {"the header fits, the values do not", 50'000}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const test::FileSizeLimit limit(c.bytes);
    EXPECT_THROW(Write(nodes), FilterError);
    EXPECT_THAT(Names(), IsEmpty());
  }
}

TEST_F(EnviWriterTest, LeavesNothingWhenTheHeaderDoesNotFit) {
  test::MemoryLattice nodes(SmallLattice(corvel::kUInt8, 2, 2));
  const test::FileSizeLimit limit(20);
  EXPECT_THROW(Write(nodes), FilterError);
  EXPECT_THAT(Names(), IsEmpty());
}

TEST_F(EnviWriterTest, LeavesTheOlderRawFileWhenTheHeaderCannotHaveItsName) {
  std::filesystem::create_directory(Folder() / "out.hdr");
  Put("out.img", "precious");
  test::MemoryLattice nodes(SmallLattice(corvel::kUInt8, 2, 2));
  for (const wchar_t* name : {L"out.img", L"out.hdr"}) {
    EnviWriter writer(File(name), {});
    for (const bool isChecked : {true, false}) {
      const std::string error = ErrorOf([&] {
        if (isChecked) writer.Check(nodes.Header());
        writer.Write(nodes.Header(), nodes);
      });
      EXPECT_THAT(error, AllOf(HasSubstr("cannot write"), HasSubstr("out.hdr\": it is a folder")));
      EXPECT_EQ(Bytes("out.img"), "precious");
      EXPECT_THAT(Names(), ElementsAre("out.hdr", "out.img"));
    }
  }
}

// Does something to the folder when the last row is asked for.
class MeddlingSource : public LatticeRowSource {
 public:
  MeddlingSource(test::MemoryLattice& nodes, std::function<void()> meddle)
      : nodes_(nodes), meddle_(std::move(meddle)) {}

  void GiveRow(unsigned y, unsigned z, void* nodes) override {
    nodes_.GiveRow(y, z, nodes);
    if (y == 0) meddle_();
  }
  void GiveCoordinateRow(unsigned, unsigned, void*) override {}

 private:
  test::MemoryLattice& nodes_;
  std::function<void()> meddle_;
};

TEST_F(EnviWriterTest, LeavesOlderFilesWhenTheirNamesAreTakenWhileItWrites) {
  Put("out.img", "precious");
  test::MemoryLattice nodes(SmallLattice(corvel::kUInt8, 2, 2));
  EnviWriter writer(File(L"out.img"), {});
  MeddlingSource folder(nodes, [&] { std::filesystem::create_directory(Folder() / "out.hdr"); });
  EXPECT_THAT(ErrorOf([&] { writer.Write(nodes.Header(), folder); }), HasSubstr("it is a folder"));
  EXPECT_THAT(Names(), ElementsAre("out.hdr", "out.img"));
  std::filesystem::remove(Folder() / "out.hdr");

  MeddlingSource header(nodes, [&] { Put("out.img.hdr", "another header"); });
  EXPECT_THAT(ErrorOf([&] { writer.Write(nodes.Header(), header); }),
              HasSubstr("out.img.hdr is in the way"));
  EXPECT_THAT(Names(), ElementsAre("out.img", "out.img.hdr"));
  EXPECT_EQ(Bytes("out.img"), "precious");
}

TEST_F(EnviWriterTest, RaisesWhereNoFileMayBeMade) {
  test::MemoryLattice nodes(SmallLattice(corvel::kUInt8, 2, 2));
  EXPECT_THROW(Write(nodes, {}, L"no folder/out.img"), FilterError);
  EXPECT_THROW(EnviWriter(L"/proc/out.img", {}).Write(nodes.Header(), nodes), FilterError);
  EXPECT_THAT(Names(), IsEmpty());
}

}  // namespace
}  // namespace trovan::filters
