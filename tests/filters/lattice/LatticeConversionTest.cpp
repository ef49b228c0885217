#include "filters/lattice/LatticeConversion.h"

#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "AnyLattice.h"
#include "ConversionFixture.h"
#include "filters/lattice/EnviReader.h"
#include "filters/lattice/EnviWriter.h"
#include "filters/lattice/VtkReader.h"
#include "filters/lattice/VtkWriter.h"

namespace trovan::filters {
namespace {

using test::FilterErrorOf;
using test::MemoryLattice;
using test::MemoryReader;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

class LatticeConversionTest : public ConversionFixture {
 protected:
  // Through a VTK file, which holds every lattice.
  MemoryLattice ConvertedToVtk(MemoryReader& reader, const ConversionOptions& options) const {
    VtkWriter writer(Output(L"out.vtk"), {});
    EXPECT_EQ(ConvertLattice(reader, writer, L"in", options, nullptr), ConversionOutcome::kDone);
    VtkReader again(Output(L"out.vtk"), "");
    return ReadAll(again);
  }
};

TEST_F(LatticeConversionTest, KeepsEveryNodeAndCoordinateOfEveryKindOfLattice) {
  std::mt19937 random(20260311);
  for (const auto type : {LatticeResequencer::Uniform, LatticeResequencer::Rectilinear,
                          LatticeResequencer::Curvilinear}) {
    for (const corvel::PrimType dataType : test::kElementTypes) {
      const auto header = test::AnyHeader(random, type, dataType, corvel::kFloat);
      const MemoryLattice lattice = test::AnyLattice(random, header);
      MemoryReader reader(lattice);
      const MemoryLattice again = ConvertedToVtk(reader, KeepingInvalid());
      EXPECT_EQ(again.Header().type, type);
      EXPECT_EQ(again.Header().dataType, dataType);
      EXPECT_EQ(again.Nodes(), lattice.Nodes());
      EXPECT_EQ(again.Coordinates(), lattice.Coordinates());
      if (type == LatticeResequencer::Rectilinear) {
        EXPECT_EQ(again.Header().axes, header.axes);
      }
      EXPECT_THAT(TempFiles(), IsEmpty());
    }
  }
}

TEST_F(LatticeConversionTest, DoesTheStepsToEveryRow) {
  MemoryReader reader(
      test::LatticeOf<float>(test::UniformHeader(corvel::kFloat, 2, 2), {1.5F, -7, 40, NAN}));
  ConversionOptions options;
  options.nodes.invalid = InvalidNodes::kReplace;
  options.nodes.invalidReplacement = 3.0;
  options.nodes.validRange = {0.0, 30.0, 9.0};
  options.nodes.type = corvel::kInt16;
  const MemoryLattice again = ConvertedToVtk(reader, options);
  EXPECT_EQ(again.Header().dataType, corvel::kInt16);
  EXPECT_EQ(again.Nodes(), test::Packed<std::int16_t>({1, 9, 9, 3}));
}

TEST_F(LatticeConversionTest, GivesTheNameOfTheFileToTheQuestion) {
  MemoryReader reader(
      test::LatticeOf<float>(test::UniformHeader(corvel::kFloat, 1, 2), {NAN, INFINITY}));
  std::vector<std::wstring> questions;
  ConversionOptions options;
  options.nodes.confirm = [&](const std::wstring& question) {
    questions.push_back(question);
    return true;
  };
  EXPECT_EQ(ConvertedToVtk(reader, options).Nodes(), test::Packed<float>({0, 0}));
  ASSERT_EQ(questions.size(), 1U);
  EXPECT_EQ(questions[0].rfind(L"in:  One or more", 0), 0U);
}

TEST_F(LatticeConversionTest, MakesEquallySpacedLatticesUniformWhereTheFormatNeedsIt) {
  const auto header =
      test::RectilinearHeader(corvel::kUInt8, {10.0, 12.0, 14.0}, {5.0, 5.5}, {0.0});
  const std::vector<std::uint8_t> nodes = {1, 2, 3, 4, 5, 6};
  MemoryReader reader(test::LatticeOf(header, nodes));
  EnviWriter writer(Output(L"out.img"), {});
  EXPECT_EQ(ConvertLattice(reader, writer, L"in", {}, nullptr), ConversionOutcome::kDone);
  EnviReader again(Output(L"out.img"), 1);
  EXPECT_EQ(again.Header().origin.x, 10.0);
  EXPECT_EQ(again.Header().origin.y, 5.0);
  EXPECT_EQ(again.Header().spacing.x, 2.0);
  EXPECT_EQ(again.Header().spacing.y, 0.5);
  EXPECT_EQ(ReadAll(again).Nodes(), test::Packed(nodes));
}

TEST_F(LatticeConversionTest, RefusesAxesThatAreNotEquallySpacedBeforeAnythingIsRead) {
  const auto header =
      test::RectilinearHeader(corvel::kUInt8, {0.0, 1.0}, {0.0, 1.0, 2.05, 3.0}, {0.0});
  test::HeaderOnly reader(header);
  const EnviWriter constWriter(Output(L"out.img"), {});
  EnviWriter writer = constWriter;
  EXPECT_THAT(FilterErrorOf([&] { ConvertLattice(reader, writer, L"in", {}, nullptr); }),
              AllOf(HasSubstr("rows (Y)"), HasSubstr(" 5 % off"), HasSubstr("0.01 % are allowed")));
  ExpectNothingIsLeft();

  MemoryReader again{MemoryLattice(header)};
  ConversionOptions options;
  options.spacingTolerance = 6.0;
  EXPECT_EQ(ConvertLattice(again, writer, L"in", options, nullptr), ConversionOutcome::kDone);
}

TEST_F(LatticeConversionTest, RefusesWhatTheFormatCannotHoldBeforeAnythingIsRead) {
  LatticeHeader curvilinear = test::UniformHeader(corvel::kFloat, 2, 2);
  curvilinear.type = LatticeResequencer::Curvilinear;
  test::HeaderOnly reader(curvilinear);
  EnviWriter writer(Output(L"out.img"), {});
  EXPECT_THAT(FilterErrorOf([&] { ConvertLattice(reader, writer, L"in", {}, nullptr); }),
              HasSubstr("curvilinear"));
  // Equal steps do not help where it is the type of the nodes that does not fit.
  test::HeaderOnly bytes(test::RectilinearHeader(corvel::kInt8, {0.0, 1.0}, {0.0, 1.0}, {0.0}));
  EXPECT_THAT(FilterErrorOf([&] { ConvertLattice(bytes, writer, L"in", {}, nullptr); }),
              HasSubstr("signed 8-bit"));
  ExpectNothingIsLeft();
}

TEST_F(LatticeConversionTest, RefusesStepsThatCannotBeDoneBeforeAnythingIsRead) {
  test::HeaderOnly reader(test::UniformHeader(corvel::kUInt8, 2, 2));
  VtkWriter writer(Output(L"out.vtk"), {});
  ConversionOptions options;
  options.nodes.validRange = {0.0, 1.0, 0.0};
  EXPECT_THAT(FilterErrorOf([&] { ConvertLattice(reader, writer, L"in", options, nullptr); }),
              HasSubstr("uint8"));
  ExpectNothingIsLeft();
}

// There is no folder for temporary files in these two: whoever tried to make one would tell that.
TEST_F(LatticeConversionTest, RefusesPlanesThatAreTooLargeBeforeThereAreTemporaryFiles) {
  const test::ScopedVariable nowhere("TMPDIR", "/nowhere/at/all");
  LatticeHeader curvilinear = test::UniformHeader(corvel::kUInt8, 1U << 14, 1U << 14);
  curvilinear.type = LatticeResequencer::Curvilinear;  // three doubles a node
  const LatticeHeader headers[] = {
      test::UniformHeader(corvel::kUInt8, 1U << 16, 1U << 16),
      test::UniformHeader(corvel::kDouble, 1U << 15, 1U << 14),
      test::UniformHeader(corvel::kUInt8, 1U << 31, 1, 1, 2),
      test::UniformHeader(corvel::kUInt8, 0xFFFFFFFF, 0xFFFFFFFF, 1, 0xFFFF),
      curvilinear,
  };
  for (const LatticeHeader& header : headers) {
    test::HeaderOnly reader(header);
    VtkWriter writer(Output(L"out.vtk"), {});
    EXPECT_THAT(FilterErrorOf([&] { ConvertLattice(reader, writer, L"in", {}, nullptr); }),
                HasSubstr("4 GiB"));
  }
  ExpectNothingIsLeft();
}

TEST_F(LatticeConversionTest, ToldNoFolderForTemporaryFilesFails) {
  const test::ScopedVariable nowhere("TMPDIR", "/nowhere/at/all");
  test::HeaderOnly reader(test::UniformHeader(corvel::kUInt8, 2, 2));
  VtkWriter writer(Output(L"out.vtk"), {});
  EXPECT_THAT(test::FilterErrorOf([&] { ConvertLattice(reader, writer, L"in", {}, nullptr); }),
              testing::HasSubstr("TMPDIR has to name one that exists"));
  ExpectNothingIsLeft();
}

TEST_F(LatticeConversionTest, RefusesWhatTheDiskHasNoRoomFor) {
  // 2^62 bytes.
  test::HeaderOnly reader(test::UniformHeader(corvel::kUInt8, 1U << 15, 1U << 16, 1U << 31));
  VtkWriter writer(Output(L"out.vtk"), {});
  EXPECT_THAT(
      FilterErrorOf([&] { ConvertLattice(reader, writer, L"in", {}, nullptr); }),
      AllOf(HasSubstr(TempPath()), HasSubstr("left of the 4611686018427 MB"), HasSubstr("TMPDIR")));
  ExpectNothingIsLeft();
}

}  // namespace
}  // namespace trovan::filters
