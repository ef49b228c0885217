// Conversions that do not come to their end.
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ConversionFixture.h"
#include "filters/lattice/EnviWriter.h"
#include "filters/lattice/VtkWriter.h"
#include "support/FileSizeLimit.h"

namespace trovan::filters {
namespace {

using test::MemoryLattice;
using test::MemoryReader;
using testing::IsEmpty;

class LatticeConversionEndTest : public ConversionFixture {
 protected:
  // 300 rows: more than pass between two reports of progress.
  static LatticeHeader Header(LatticeResequencer::LatticeType type) {
    LatticeHeader header = test::UniformHeader(corvel::kFloat, 5, 100, 3);
    header.type = type;
    return header;
  }
  static MemoryReader Reader(LatticeResequencer::LatticeType type = LatticeResequencer::Uniform) {
    return MemoryReader(MemoryLattice(Header(type)));
  }
};

// Takes some rows and then raises.
class FailingWriter : public LatticeWriter {
 public:
  explicit FailingWriter(unsigned rows) : rows_(rows) {}
  void Check(const LatticeHeader& /*header*/) const override {}
  void Write(const LatticeHeader& header, LatticeRowSource& source) override {
    std::vector<unsigned char> row(RowSize(header));
    for (unsigned y = 0; y < rows_; ++y) source.GiveRow(y, 0, row.data());
    throw std::runtime_error("the printer is on fire");
  }

 private:
  unsigned rows_;
};

TEST_F(LatticeConversionEndTest, LeavesNothingBehindWhereverItIsCancelled) {
  for (const auto type : {LatticeResequencer::Uniform, LatticeResequencer::Curvilinear}) {
    test::StopAt never(test::StopAt::kNever);
    auto whole = Reader(type);
    VtkWriter first(Output(L"out.vtk"), {});
    EXPECT_EQ(ConvertLattice(whole, first, L"in", {}, &never), ConversionOutcome::kDone);
    EXPECT_EQ(never.Last(), 1.0);
    EXPECT_GT(never.Calls(), 15U);
    std::filesystem::remove(OutputFolder() / "out.vtk");

    for (unsigned call = 1; call < never.Calls(); ++call) {
      test::StopAt progress(call);
      auto reader = Reader(type);
      VtkWriter writer(Output(L"out.vtk"), {});
      EXPECT_EQ(ConvertLattice(reader, writer, L"in", {}, &progress),
                ConversionOutcome::kCancelled);
      EXPECT_EQ(progress.Calls(), call);
      ExpectNothingIsLeft();
    }
  }
}

TEST_F(LatticeConversionEndTest, IsDoneWhenTheOutputIsWholeBeforeItIsCancelled) {
  test::StopAt never(test::StopAt::kNever);
  auto first = Reader();
  VtkWriter writer(Output(L"out.vtk"), {});
  ConvertLattice(first, writer, L"in", {}, &never);
  test::StopAt atTheEnd(never.Calls());
  auto second = Reader();
  EXPECT_EQ(ConvertLattice(second, writer, L"in", {}, &atTheEnd), ConversionOutcome::kDone);
  EXPECT_THAT(OutputFiles(), testing::ElementsAre("out.vtk"));
  EXPECT_THAT(TempFiles(), IsEmpty());
}

TEST_F(LatticeConversionEndTest, LeavesAnExistingOutputAsItWas) {
  test::WriteBytes(OutputFolder() / "out.img", "old values");
  test::WriteBytes(OutputFolder() / "out.hdr", "old header");
  test::StopAt never(test::StopAt::kNever);
  EnviWriter writer(Output(L"out.img"), {});
  for (unsigned call = 1; call < 18; ++call) {
    test::StopAt progress(call);
    auto reader = Reader();
    EXPECT_EQ(ConvertLattice(reader, writer, L"in", {}, &progress), ConversionOutcome::kCancelled);
    EXPECT_EQ(test::ReadBytes(OutputFolder() / "out.img"), "old values");
    EXPECT_EQ(test::ReadBytes(OutputFolder() / "out.hdr"), "old header");
    EXPECT_THAT(OutputFiles(), testing::ElementsAre("out.hdr", "out.img"));
    EXPECT_THAT(TempFiles(), IsEmpty());
  }
}

TEST_F(LatticeConversionEndTest, LeavesNothingBehindWhenItIsDeclined) {
  MemoryLattice lattice(Header(LatticeResequencer::Uniform));
  lattice.Set<float>(2, 50, 1, 0, NAN);
  MemoryReader reader(lattice);
  VtkWriter writer(Output(L"out.vtk"), {});
  ConversionOptions options;
  options.nodes.confirm = [this](const std::wstring&) {
    EXPECT_EQ(TempFiles().size(), 1U);  // the work is under way
    return false;
  };
  EXPECT_EQ(ConvertLattice(reader, writer, L"in", options, nullptr), ConversionOutcome::kDeclined);
  ExpectNothingIsLeft();
}

TEST_F(LatticeConversionEndTest, LeavesNothingBehindWhenTheReaderFails) {
  for (const unsigned rows : {0U, 1U, 150U, 299U}) {
    for (const auto type : {LatticeResequencer::Uniform, LatticeResequencer::Curvilinear}) {
      auto reader = Reader(type);
      reader.FailAfter(rows);
      VtkWriter writer(Output(L"out.vtk"), {});
      EXPECT_EQ(test::FilterErrorOf([&] { ConvertLattice(reader, writer, L"in", {}, nullptr); }),
                "the file ends here");
      ExpectNothingIsLeft();
    }
  }
}

TEST_F(LatticeConversionEndTest, LeavesNothingBehindWhenTheWriterFails) {
  for (const unsigned rows : {0U, 100U}) {
    auto reader = Reader();
    FailingWriter writer(rows);
    EXPECT_THROW(ConvertLattice(reader, writer, L"in", {}, nullptr), std::runtime_error);
    ExpectNothingIsLeft();
  }
  auto reader = Reader();
  VtkWriter nowhere(Output(L"no folder/out.vtk"), {});
  EXPECT_THROW(ConvertLattice(reader, nowhere, L"in", {}, nullptr), FilterError);
  ExpectNothingIsLeft();
}

TEST_F(LatticeConversionEndTest, LeavesNothingBehindWhenTheDiskIsFullBeforeAnythingIsRead) {
  LatticeHeader curvilinear = test::UniformHeader(corvel::kUInt8, 1000, 1000);
  curvilinear.type = LatticeResequencer::Curvilinear;
  for (const LatticeHeader& header :
       {test::UniformHeader(corvel::kUInt8, 1000, 1000), curvilinear}) {
    test::HeaderOnly reader(header);
    VtkWriter writer(Output(L"out.vtk"), {});
    const test::FileSizeLimit full(500'000);
    EXPECT_THROW(ConvertLattice(reader, writer, L"in", {}, nullptr), corvel::Exception);
    ExpectNothingIsLeft();
  }
}

// As text a node takes twice the room that it takes in the temporary file.
TEST_F(LatticeConversionEndTest, LeavesNothingBehindWhenTheDiskIsFullForTheOutput) {
  MemoryReader reader{MemoryLattice(test::UniformHeader(corvel::kUInt8, 1000, 1000))};
  LatticeWriteOptions text;
  text.asText = true;
  VtkWriter writer(Output(L"out.vtk"), text);
  const test::FileSizeLimit full(1'500'000);
  EXPECT_THROW(ConvertLattice(reader, writer, L"in", {}, nullptr), FilterError);
  ExpectNothingIsLeft();
}

}  // namespace
}  // namespace trovan::filters
