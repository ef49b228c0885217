// Lattices that other programs wrote go through other formats and come back with the same nodes.
#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ConversionFixture.h"
#include "RealLattices.h"
#include "filters/lattice/Formats.h"

namespace trovan::filters {
namespace {

using test::MemoryLattice;
using testing::HasSubstr;
using testing::IsEmpty;

// With a reader, by the names that may be opened: of an ENVI raster both.
const std::set<std::string> kReadable = {
    "asc/gdal/case_sensitive.ASC",
    "asc/gdal/nodata_float.asc",
    "asc/gdal/pixel_per_line.asc",
    "asc/landlab/4_x_3.asc",
    "asc/landlab/4_x_3_no_nodata_value.asc",
    "asc/landlab/SRTMGL3_40.09_-105.56.asc",
    "asc/landlab/Square_TestBasin.asc",
    "asc/landlab/hugo_site_filled.asc",
    "asc/landlab/west_bijou_gully.asc",
    "envi/gdal/envi_rgbsmall_bil.hdr",
    "envi/gdal/envi_rgbsmall_bil.img",
    "envi/gdal/envi_rgbsmall_bip.hdr",
    "envi/gdal/envi_rgbsmall_bip.img",
    "envi/gdal/envi_rgbsmall_bsq.hdr",
    "envi/gdal/envi_rgbsmall_bsq.img",
    "envi/plantcv/darkReference",
    "envi/plantcv/darkReference.hdr",
    "hgt/N57E011.hgt",
    "vtk/SampleStructGrid.vtk",
    "vtk/StructuredPoints.vtk",
};

// Without a reader, and what is said instead.
const std::map<std::string, std::string> kRefused = {
    {"dted/n43.dt0", "does not tell the format"},  // DTED
    {"ehdr/ehdr10.bil", "ehdr10.hdr"},             // ESRI's raw raster: its header is not ENVI's
    {"ehdr/ehdr10.hdr", "ehdr10.hdr"},
    {"ehdr/ehdr11.flt", "is no ENVI header"},
    {"ehdr/ehdr11.hdr", "ehdr11"},  // nor is there a raw file of an ENVI name
    {"vtk/HeadMRVolume.mhd", "does not tell the format"},  // MetaImage
    {"vtk/HeadMRVolume.raw", "HeadMRVolume.hdr"},          // no ENVI header beside it
    {"vtk/multicomb_0.vts", "does not tell the format"},   // VTK's XML format
    {"expected.json", "does not tell the format"},         // what is known of the others
};

constexpr RowOrder kRowOrders[] = {RowOrder::kTopDown, RowOrder::kBottomUp};

class RealLatticesRoundTripTest : public test::RealLatticesOn<ConversionFixture> {
 protected:
  static std::filesystem::path Folder() { return DataFolder() / "lattice"; }
  static std::wstring Path(const std::string& name) {
    return RealLatticesOn::Path("lattice/" + name);
  }
  static MemoryLattice Read(const std::wstring& path, unsigned planes = 1) {
    LatticeReadOptions options;
    options.planes = planes;
    return ReadAll(*OpenLattice(path, options));
  }

  // Converts, and reads what came out.
  MemoryLattice Converted(const std::wstring& from, const std::wstring& to,
                          const LatticeWriteOptions& writeOptions, unsigned planes = 1) const {
    LatticeReadOptions readOptions;
    readOptions.planes = planes;
    const auto reader = OpenLattice(from, readOptions);
    const bool keepsPlanes = corvel::CPath(to).GetExtension() == L".img";
    const unsigned planesAfter = keepsPlanes ? reader->Header().planes : 1;
    const auto writer = MakeLatticeWriter(to, writeOptions);
    EXPECT_EQ(ConvertLattice(*reader, *writer, from, KeepingInvalid(), nullptr),
              ConversionOutcome::kDone);
    EXPECT_THAT(TempFiles(), IsEmpty());
    return Read(to, planesAfter);
  }

  // The name under which a file comes back: its own format, or an ENVI raster.
  std::wstring NameBack(const std::string& name) const {
    const std::filesystem::path path(name);
    const bool isEnvi = name.rfind("envi/", 0) == 0;
    return Output(isEnvi ? L"back.bsq" : path.filename().wstring());
  }

  void ExpectThroughEnvi(const std::string& name, const MemoryLattice& direct) const;
  void ExpectThroughVtk(const std::string& name, const MemoryLattice& direct) const;
};

void ExpectSameNodes(const MemoryLattice& lattice, const MemoryLattice& direct) {
  EXPECT_EQ(lattice.Header().dataType, direct.Header().dataType);
  EXPECT_EQ(lattice.Header().columns, direct.Header().columns);
  EXPECT_EQ(lattice.Header().rows, direct.Header().rows);
  EXPECT_EQ(lattice.Header().planes, direct.Header().planes);
  EXPECT_EQ(lattice.Header().components, direct.Header().components);
  EXPECT_TRUE(lattice.Nodes() == direct.Nodes());
  EXPECT_TRUE(lattice.Coordinates() == direct.Coordinates());
}

// The bottom row where the top one was.
MemoryLattice UpsideDown(MemoryLattice lattice) {
  const LatticeHeader& header = lattice.Header();
  MemoryLattice turned(header);
  std::vector<unsigned char> nodes(RowSize(header));
  std::vector<unsigned char> coordinates(CoordinateRowSize(header));
  for (unsigned z = 0; z < header.planes; ++z) {
    for (unsigned y = 0; y < header.rows; ++y) {
      lattice.GiveRow(y, z, nodes.data());
      turned.TakeRow(header.rows - 1 - y, z, nodes.data());
      lattice.GiveCoordinateRow(y, z, coordinates.data());
      turned.TakeCoordinateRow(header.rows - 1 - y, z, coordinates.data());
    }
  }
  return turned;
}

void RealLatticesRoundTripTest::ExpectThroughEnvi(const std::string& name,
                                                  const MemoryLattice& direct) const {
  for (const Interleave interleave :
       {Interleave::kBandSequential, Interleave::kBandByLine, Interleave::kBandByPixel}) {
    for (const RowOrder rows : kRowOrders) {
      SCOPED_TRACE(std::to_string(static_cast<int>(interleave)) + " " +
                   std::to_string(static_cast<int>(rows)));
      LatticeWriteOptions options;
      options.interleave = interleave;
      options.rowOrder = rows;
      const std::wstring between = Output(L"between.img");
      ExpectSameNodes(Converted(Path(name), between, options), direct);
      ExpectSameNodes(Converted(between, NameBack(name), {}, direct.Header().planes), direct);
    }
  }
}

// Rows of a curvilinear lattice have no top but by the order in which they come, so a file from the
// top down is a lattice that stands on its head, together with its coordinates.
void RealLatticesRoundTripTest::ExpectThroughVtk(const std::string& name,
                                                 const MemoryLattice& direct) const {
  for (const RowOrder rows : kRowOrders) {
    SCOPED_TRACE(static_cast<int>(rows));
    LatticeWriteOptions options;
    options.rowOrder = rows;
    const bool turns = rows == RowOrder::kTopDown;
    const std::wstring between = Output(L"between.vtk");
    ExpectSameNodes(Converted(Path(name), between, options), turns ? UpsideDown(direct) : direct);
    ExpectSameNodes(Converted(between, NameBack(name), options), direct);
  }
}

TEST_F(RealLatticesRoundTripTest, KeepTheirNodesBitForBit) {
  for (const std::string& name : kReadable) {
    SCOPED_TRACE(name);
    const MemoryLattice direct = Read(Path(name));
    ASSERT_FALSE(direct.Nodes().empty());
    if (direct.Header().type == LatticeResequencer::Curvilinear) {
      ExpectThroughVtk(name, direct);
    } else {
      ExpectThroughEnvi(name, direct);
    }
  }
}

TEST_F(RealLatticesRoundTripTest, OfOtherFormatsAreRefused) {
  for (const auto& refused : kRefused) {
    const std::wstring path = Path(refused.first);
    EXPECT_THAT(test::FilterErrorOf([&] { OpenLattice(path, {}); }), HasSubstr(refused.second))
        << refused.first;
  }
}

TEST_F(RealLatticesRoundTripTest, AreAllListedHere) {
  std::set<std::string> listed = kReadable;
  for (const auto& refused : kRefused) listed.insert(refused.first);
  std::set<std::string> present;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(Folder())) {
    if (entry.is_directory()) continue;
    present.insert(entry.path().lexically_relative(Folder()).generic_string());
  }
  EXPECT_EQ(present, listed);
}

}  // namespace
}  // namespace trovan::filters
