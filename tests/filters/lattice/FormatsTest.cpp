#include "filters/lattice/Formats.h"

#include <cmath>
#include <filesystem>
#include <string>
#include <typeindex>
#include <typeinfo>

#include <sys/stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <corvel/Exception.h>

#include "LatticeErrors.h"
#include "LatticeFakes.h"
#include "filters/lattice/AsciiGridReader.h"
#include "filters/lattice/AsciiGridWriter.h"
#include "filters/lattice/EnviReader.h"
#include "filters/lattice/EnviWriter.h"
#include "filters/lattice/HgtReader.h"
#include "filters/lattice/HgtWriter.h"
#include "filters/lattice/VtkReader.h"
#include "filters/lattice/VtkWriter.h"
#include "support/TempFolder.h"

namespace trovan::filters {
namespace {

using test::FilterErrorOf;
using testing::AllOf;
using testing::HasSubstr;

class FormatsTest : public testing::Test {
 protected:
  // Makes a lattice of that name by its extension. (A square of 16-bit nodes suits every format.)
  void Save(const std::wstring& name) const {
    const auto writer = MakeLatticeWriter(folder_.File(name), {});
    const auto header = test::UniformHeader(corvel::kInt16, 2, 2);
    test::MemoryLattice lattice(header);
    writer->Check(header);
    writer->Write(header, lattice);
  }

  std::type_index ReaderOf(const std::wstring& name, const LatticeReadOptions& options = {}) const {
    const auto reader = OpenLattice(folder_.File(name), options);
    const LatticeReader& opened = *reader;
    return typeid(opened);
  }
  std::type_index WriterOf(const std::wstring& name) const {
    const auto writer = MakeLatticeWriter(folder_.File(name), {});
    const LatticeWriter& made = *writer;
    return typeid(made);
  }
  std::string OpenError(const std::wstring& name, const LatticeReadOptions& options = {}) const {
    return FilterErrorOf([&] { OpenLattice(folder_.File(name), options); });
  }

  test::TempFolder folder_;
};

TEST_F(FormatsTest, TakeARawFileOfAnyNameWithAHeaderBesideIt) {
  Save(L"heights.img");
  std::filesystem::rename(folder_.Path() / "heights.img", folder_.Path() / "heights.v2");
  std::filesystem::rename(folder_.Path() / "heights.hdr", folder_.Path() / "heights.v2.hdr");
  EXPECT_EQ(ReaderOf(L"heights.v2"), typeid(EnviReader));
  EXPECT_THAT(OpenError(L"heights.v3"), HasSubstr("does not tell the format"));
}

// Opening a pipe would wait for somebody to write into it.
TEST_F(FormatsTest, AreNoPipesAndDevices) {
  ASSERT_EQ(::mkfifo((folder_.Path() / "pipe.asc").c_str(), 0600), 0);
  EXPECT_THAT(OpenError(L"pipe.asc"), HasSubstr("a device or a pipe"));
  EXPECT_THAT(FilterErrorOf([] { OpenLattice(L"/dev/null", {}); }),
              HasSubstr("a device or a pipe"));
}

TEST_F(FormatsTest, AreToldByTheExtension) {
  const struct {
    const wchar_t* name;
    std::type_index reader;
    std::type_index writer;
  } cases[] = {
      {L"a.asc", typeid(AsciiGridReader), typeid(AsciiGridWriter)},
      {L"A.ASC", typeid(AsciiGridReader), typeid(AsciiGridWriter)},
      {L"b.hgt", typeid(HgtReader), typeid(HgtWriter)},
      {L"c.vtk", typeid(VtkReader), typeid(VtkWriter)},
      {L"c.x.Vtk", typeid(VtkReader), typeid(VtkWriter)},
      {L"d.hdr", typeid(EnviReader), typeid(EnviWriter)},
      {L"e.img", typeid(EnviReader), typeid(EnviWriter)},
      {L"f.dat", typeid(EnviReader), typeid(EnviWriter)},
      {L"g.raw", typeid(EnviReader), typeid(EnviWriter)},
      {L"h.bsq", typeid(EnviReader), typeid(EnviWriter)},
      {L"i.bil", typeid(EnviReader), typeid(EnviWriter)},
      {L"j.BIP", typeid(EnviReader), typeid(EnviWriter)},
      {L"k.bin", typeid(EnviReader), typeid(EnviWriter)},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(WriterOf(c.name), c.writer) << c.name;
    Save(c.name);
    EXPECT_EQ(ReaderOf(c.name), c.reader) << c.name;
  }
}

TEST_F(FormatsTest, OfARawFileWithoutAnExtensionIsEnvi) {
  Save(L"scan.img");
  std::filesystem::rename(folder_.Path() / "scan.img", folder_.Path() / "scan");
  EXPECT_EQ(ReaderOf(L"scan"), std::type_index(typeid(EnviReader)));
}

TEST_F(FormatsTest, ThatAreNotKnownAreRefusedWithThoseThatAre) {
  for (const wchar_t* name :
       {L"a.tif", L"a.dt0", L"a.flt", L"a.mhd", L"a.vts", L"asc.", L"a.ascx"}) {
    EXPECT_THAT(OpenError(name), AllOf(HasSubstr("does not tell the format"), HasSubstr(".asc"),
                                       HasSubstr(".hgt"), HasSubstr(".vtk"), HasSubstr(".hdr")))
        << name;
    EXPECT_THAT(FilterErrorOf([&] { MakeLatticeWriter(folder_.File(name), {}); }),
                HasSubstr("does not tell the format"))
        << name;
  }
  EXPECT_THAT(FilterErrorOf([&] { MakeLatticeWriter(folder_.File(L"scan"), {}); }),
              HasSubstr("does not tell the format"));
  EXPECT_TRUE(std::filesystem::is_empty(folder_.Path()));
}

TEST_F(FormatsTest, OtherThanEnviHaveNoBandsToDivide) {
  LatticeReadOptions options;
  options.planes = 2;
  for (const wchar_t* name : {L"a.asc", L"b.hgt", L"c.vtk"}) {
    Save(name);
    EXPECT_THAT(OpenError(name, options), HasSubstr("only the bands of an ENVI raster")) << name;
  }
  Save(L"d.img");
  EXPECT_THAT(OpenError(L"d.img", options), HasSubstr("cannot be divided into 2 planes"));
}

TEST_F(FormatsTest, OtherThanVtkHaveNoArraysToChoose) {
  LatticeReadOptions options;
  options.array = "values";
  for (const wchar_t* name : {L"a.asc", L"b.hgt", L"d.img"}) {
    Save(name);
    EXPECT_THAT(OpenError(name, options), HasSubstr("only a VTK file holds arrays")) << name;
  }
  Save(L"c.vtk");
  EXPECT_EQ(ReaderOf(L"c.vtk", options), std::type_index(typeid(VtkReader)));
  options.array = "others";
  EXPECT_THAT(OpenError(L"c.vtk", options), HasSubstr("no array \"others\""));
}

TEST_F(FormatsTest, OfFilesThatAreMissingDoNotMatter) {
  for (const wchar_t* name : {L"a.asc", L"b.hgt", L"c.vtk", L"d.hdr", L"d.img"}) {
    EXPECT_THROW(OpenLattice(folder_.File(name), {}), corvel::Exception) << name;
  }
}

}  // namespace
}  // namespace trovan::filters
