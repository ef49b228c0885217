#include "filters/lattice/EnviReader.h"

#include <cmath>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <corvel/Exception.h>

#include "EnviFixture.h"

namespace trovan::filters {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class EnviReaderTest : public RasterTest {
 protected:
  // Puts scan.hdr with these lines after its first one.
  void PutHeader(const std::string& lines) const { Put("scan.hdr", "ENVI\n" + lines); }

  // A header of bytes, 2 columns x 2 rows.
  void PutByteHeader(unsigned bands, const std::string& interleave, const std::string& more) const {
    PutHeader("samples = 2\nlines = 2\nbands = " + std::to_string(bands) +
              "\ndata type = 1\ninterleave = " + interleave + '\n' + more);
  }

  test::MemoryLattice Read(unsigned planes = 1) const {
    EnviReader reader(File(L"scan.hdr"), planes);
    test::MemoryLattice nodes(reader.Header());
    reader.ReadRows(nodes);
    EXPECT_EQ(nodes.RowsTaken(), std::size_t{reader.Header().rows} * planes);
    return nodes;
  }
  std::string Text(const test::MemoryLattice& nodes) const {
    return {nodes.Nodes().begin(), nodes.Nodes().end()};
  }
  std::string OpenError(unsigned planes = 1) const {
    return ErrorOf([&] { EnviReader(File(L"scan.hdr"), planes); });
  }
};

// Band 0 is "ab" over "cd", band 1 "AB" over "CD", and so on.
const struct {
  const char* interleave;
  const char* two;   // two bands
  const char* four;  // four bands
} kOrders[] = {
    {"bsq", "abcdABCD", "abcdABCD12345678"},
    {"bil", "abABcdCD", "abAB1256cdCD3478"},
    {"bip", "aAbBcCdD", "aA15bB26cC37dD48"},
};

TEST_F(EnviReaderTest, GivesTheBandsOfANodeTogetherAndTheBottomRowFirst) {
  for (const auto& order : kOrders) {
    SCOPED_TRACE(order.interleave);
    PutByteHeader(2, order.interleave, "");
    Put("scan.img", order.two);
    EXPECT_EQ(Text(Read()), "cCdDaAbB");
  }
}

TEST_F(EnviReaderTest, MakesPlanesOfBands) {
  for (const auto& order : kOrders) {
    SCOPED_TRACE(order.interleave);
    PutByteHeader(4, order.interleave, "");
    Put("scan.img", order.four);
    EXPECT_EQ(Text(Read(1)), "cC37dD48aA15bB26");
    EXPECT_EQ(Text(Read(2)),
              "cCdDaAbB"
              "37481526");
    EXPECT_EQ(Text(Read(4)),
              "cdab"
              "CDAB"
              "3412"
              "7856");
    EXPECT_THAT(OpenError(3), HasSubstr("scan.hdr has 4 bands, which cannot be divided into 3"));
    EXPECT_THAT(OpenError(0), HasSubstr("cannot be divided into 0 planes"));
  }
}

TEST_F(EnviReaderTest, SkipsTheHeaderOffset) {
  for (const auto& order : kOrders) {
    PutByteHeader(2, order.interleave, "header offset = 3\n");
    Put("scan.img", std::string("???") + order.two);
    EXPECT_EQ(Text(Read()), "cCdDaAbB") << order.interleave;
  }
}

TEST_F(EnviReaderTest, GivesValuesInTheByteOrderOfTheMachine) {
  const std::string start = "samples = 2\nlines = 1\nbands = 1\ndata type = 13\n";
  Put("scan", std::string("\1\2\3\4\0\0\0\5", 8));
  PutHeader(start + "byte order = 1\n");
  EXPECT_EQ(Read().Value<std::uint32_t>(0, 0), 0x01020304U);
  EXPECT_EQ(Read().Value<std::uint32_t>(1, 0), 5U);
  PutHeader(start + "byte order = 0\n");
  EXPECT_EQ(Read().Value<std::uint32_t>(0, 0), 0x04030201U);
  EXPECT_EQ(Read().Value<std::uint32_t>(1, 0), 0x05000000U);
}

TEST_F(EnviReaderTest, OpensTheRasterByItsRawFileToo) {
  PutByteHeader(2, "bip", "");
  Put("scan.bip", kOrders[2].two);
  EnviReader reader(File(L"scan.bip"), 1);
  test::MemoryLattice nodes(reader.Header());
  reader.ReadRows(nodes);
  EXPECT_EQ(Text(nodes), "cCdDaAbB");
}

TEST_F(EnviReaderTest, TellsTypeTitleNamesAndVoidValue) {
  PutHeader(
      "samples = 1\nlines = 2\nbands = 2\ndata type = 4\ninterleave = bil\nbyte order = 1\n"
      "description = {Waves}\nband names = {height, period}\ndata ignore value = -1\n");
  Put("scan.img", std::string(16, '\0'));
  const EnviReader reader(File(L"scan.hdr"), 1);
  const LatticeHeader& header = reader.Header();
  EXPECT_EQ(header.type, LatticeResequencer::Uniform);
  EXPECT_EQ(header.columns, 1U);
  EXPECT_EQ(header.rows, 2U);
  EXPECT_EQ(header.planes, 1U);
  EXPECT_EQ(header.components, 2U);
  EXPECT_EQ(header.dataType, corvel::kFloat);
  EXPECT_EQ(header.rowOrder, RowOrder::kTopDown);
  EXPECT_EQ(header.voidValue, -1.0);
  EXPECT_EQ(header.title, "Waves");
  EXPECT_THAT(header.componentNames, ElementsAre("height", "period"));
  EXPECT_EQ(header.format, "ENVI raster, band interleaved by line, big-endian");
  EXPECT_THAT(header.remarks, IsEmpty());
}

TEST_F(EnviReaderTest, NamesTheFormOfBytesWithoutAByteOrder) {
  PutByteHeader(1, "bsq", "byte order = 1\n");
  Put("scan.img", "abcd");
  EXPECT_EQ(EnviReader(File(L"scan.hdr"), 1).Header().format, "ENVI raster, band sequential");
}

TEST_F(EnviReaderTest, PlacesTheLatticeByTheMapInfo) {
  const struct {
    const char* mapInfo;
    double originX, originY, spacingX, spacingY;
    RowOrder rowOrder;
  } cases[] = {
      {"Arbitrary, 1, 1, 100, 200, 10, 20", 105.0, 170.0, 10.0, 20.0, RowOrder::kTopDown},
      {"Arbitrary, 1.5, 1.5, 100, 200, 10, 20", 100.0, 180.0, 10.0, 20.0, RowOrder::kTopDown},
      {"Arbitrary, 1.5, 2.5, 100, 200, 10, 20", 100.0, 200.0, 10.0, 20.0, RowOrder::kTopDown},
      {"Arbitrary, 1, 1, 100, 200, 10, -20", 105.0, 210.0, 10.0, 20.0, RowOrder::kBottomUp},
      {"Arbitrary, 1.5, 1.5, 100, 200, -10, 20", 100.0, 180.0, -10.0, 20.0, RowOrder::kTopDown},
  };
  Put("scan.img", "abcd");
  for (const auto& c : cases) {
    SCOPED_TRACE(c.mapInfo);
    PutByteHeader(1, "bsq", std::string("map info = {") + c.mapInfo + "}\n");
    const EnviReader reader(File(L"scan.hdr"), 1);
    EXPECT_EQ(reader.Header().origin, corvel::Vec3d(c.originX, c.originY, 0.0));
    EXPECT_EQ(reader.Header().spacing, corvel::Vec3d(c.spacingX, c.spacingY, 1.0));
    EXPECT_EQ(reader.Header().rowOrder, c.rowOrder);
    EXPECT_EQ(Text(Read()), c.rowOrder == RowOrder::kTopDown ? "cdab" : "abcd");
  }
}

TEST_F(EnviReaderTest, RefusesAPlaceBeyondAllNumbers) {
  Put("scan.img", "abcd");
  PutByteHeader(1, "bsq", "map info = {Arbitrary, 1e308, 1, 0, 0, 1e308, 1}\n");
  EXPECT_THAT(OpenError(), HasSubstr("scan.hdr: by its map info the raster lies beyond"));
}

TEST_F(EnviReaderTest, RemarksWhatTheLatticeDoesNotHold) {
  PutByteHeader(2, "bsq",
                "map info = {UTM, 1, 1, 0, 0, 1, 1, 33, North, Rotation = 30.5}\n"
                "band names = {one}\nwavelength = {1, 2}\nsensor type = Unknown\n");
  Put("scan.img", "abcdABCDmore");
  EXPECT_THAT(EnviReader(File(L"scan.hdr"), 1).Header().remarks,
              ElementsAre("The map info has a projection: UTM, 33, North, Rotation = 30.5.",
                          "By the map info the raster is rotated by 30.5 degrees; the lattice is "
                          "not.",
                          "The header has names for 1 bands, the raster has 2.",
                          "The header also has: wavelength, sensor type.",
                          "The raw file has 4 bytes after its last value."));
}

TEST_F(EnviReaderTest, KeepsBandNamesOfPlanesAsARemark) {
  PutByteHeader(2, "bsq", "band names = {one, two}\n");
  Put("scan.img", "abcdABCD");
  const EnviReader reader(File(L"scan.hdr"), 2);
  EXPECT_THAT(reader.Header().componentNames, IsEmpty());
  EXPECT_THAT(reader.Header().remarks, ElementsAre("The header has names for 2 bands."));
}

TEST_F(EnviReaderTest, RefusesARawFileThatIsCutAnywhere) {
  for (const auto& order : kOrders) {
    PutByteHeader(4, order.interleave, "header offset = 3\n");
    const std::string whole = std::string("???") + order.four;
    for (std::size_t size = 0; size < whole.size(); ++size) {
      Put("scan.img", whole.substr(0, size));
      EXPECT_THAT(OpenError(),
                  AllOf(HasSubstr("scan.img has " + std::to_string(size) + " bytes"),
                        HasSubstr("scan.hdr it should have 19: 2 x 2 x 4 values of 1 bytes from "
                                  "byte 3 on")));
    }
  }
}

// Were memory taken for what such headers claim, the test would not end well.
TEST_F(EnviReaderTest, RefusesClaimsThatNoFileCanKeep) {
  Put("scan.img", "abcd");
  const std::string most = "4294967295";
  const struct {
    std::string text;
    const char* expected;
  } cases[] = {
      {"samples = " + most + "\nlines = 1\nbands = 1\ndata type = 1\n", "4294967295"},
      {"samples = " + most + "\nlines = " + most + "\nbands = 1\ndata type = 5\nbyte order = 0\n",
       "more than any file can"},
      {"samples = " + most + "\nlines = " + most + "\nbands = " + most +
           "\ndata type = 5\nbyte order = 0\ninterleave = bip\n",
       "more than any file can"},
      {"samples = 2147483648\nlines = 2147483648\nbands = 4\ndata type = 1\ninterleave = bil\n",
       "more than any file can"},
      {"samples = 1\nlines = 1\nbands = 1\ndata type = 1\nheader offset = 18446744073709551615\n",
       "more than any file can"},
      {"samples = 1\nlines = 1\nbands = 1\ndata type = 1\nheader offset = 18446744073709551614\n",
       "18446744073709551615"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    PutHeader(c.text);
    EXPECT_THAT(OpenError(), AllOf(HasSubstr("scan.img has 4 bytes"),
                                   HasSubstr(std::string("it should have ") + c.expected)));
  }
}

TEST_F(EnviReaderTest, TellsWhereAFileEndsThatShrankSinceItWasOpened) {
  for (const auto& order : kOrders) {
    PutByteHeader(2, order.interleave, "");
    Put("scan.img", order.two);
    EnviReader reader(File(L"scan.hdr"), 1);
    Put("scan.img", "abc");
    test::MemoryLattice nodes(reader.Header());
    EXPECT_THAT(ErrorOf([&] { reader.ReadRows(nodes); }),
                HasSubstr("scan.img ends at byte 3, before its values do"));
  }
}

TEST_F(EnviReaderTest, RaisesWhatTheSinkRaises) {
  PutByteHeader(2, "bil", "");
  Put("scan.img", kOrders[1].two);
  EnviReader reader(File(L"scan.hdr"), 1);
  LatticeHeader smaller = reader.Header();
  smaller.rows = 1;  // raises for the other row
  test::MemoryLattice nodes(smaller);
  EXPECT_THROW(reader.ReadRows(nodes), std::logic_error);
}

TEST_F(EnviReaderTest, RefusesAHeaderThatIsNone) {
  Put("scan.img", "abcd");
  Put("scan.hdr", "NROWS 2\nNCOLS 2\n");
  EXPECT_THAT(OpenError(), HasSubstr("scan.hdr is no ENVI header"));
}

// More than the 4 MiB of one block, in rows that do not divide it.
TEST_F(EnviReaderTest, ReadsRastersOfManyBlocks) {
  constexpr unsigned kColumns = 999;
  constexpr unsigned kRows = 401;
  constexpr unsigned kBands = 6;
  const auto value = [](unsigned x, unsigned y, unsigned band) {
    return static_cast<std::uint32_t>(x + 1000 * y + 1'000'000 * band);
  };
  std::vector<std::uint32_t> values(std::size_t{kColumns} * kRows * kBands);
  for (const char* interleave : {"bsq", "bil", "bip"}) {
    const std::string order = interleave;
    for (unsigned band = 0; band < kBands; ++band) {
      for (unsigned y = 0; y < kRows; ++y) {
        const std::size_t r = kRows - 1 - y;
        for (unsigned x = 0; x < kColumns; ++x) {
          const std::size_t bsq = (band * std::size_t{kRows} + r) * kColumns + x;
          const std::size_t bil = (r * kBands + band) * kColumns + x;
          const std::size_t bip = (r * kColumns + x) * kBands + band;
          values[order == "bsq" ? bsq : order == "bil" ? bil : bip] = value(x, y, band);
        }
      }
    }
    PutHeader("samples = 999\nlines = 401\nbands = 6\ndata type = 13\ninterleave = " + order +
              "\nbyte order = " + (std::endian::native == std::endian::big ? "1" : "0"));
    Put("scan.img", {reinterpret_cast<const char*>(values.data()), values.size() * 4});
    for (const unsigned planes : {1U, 2U, 6U}) {
      SCOPED_TRACE(testing::Message() << order << " in " << planes << " planes");
      const test::MemoryLattice nodes = Read(planes);
      const unsigned components = kBands / planes;
      std::size_t wrong = 0;
      for (unsigned band = 0; band < kBands; ++band) {
        for (unsigned y = 0; y < kRows; ++y) {
          for (unsigned x = 0; x < kColumns; ++x) {
            const auto found =
                nodes.Value<std::uint32_t>(x, y, band / components, band % components);
            wrong += found != value(x, y, band);
          }
        }
      }
      EXPECT_EQ(wrong, 0U);
    }
  }
}

}  // namespace
}  // namespace trovan::filters
