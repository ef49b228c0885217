// Conversions between a folder for the output and one for temporary files, which has to be empty
// when they end, however they end.
#pragma once

#include <set>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <corvel/Exception.h>

#include "LatticeErrors.h"
#include "LatticeFakes.h"
#include "filters/lattice/LatticeConversion.h"
#include "support/Environment.h"
#include "support/TempFolder.h"

namespace trovan::filters {

class ConversionFixture : public testing::Test {
 protected:
  std::wstring Output(const std::wstring& name) const { return folder_.File(name); }
  std::filesystem::path OutputFolder() const { return folder_.Path(); }
  std::set<std::string> OutputFiles() const { return test::FilesIn(folder_.Path()); }
  std::set<std::string> TempFiles() const { return test::FilesIn(temporary_.Path()); }
  std::string TempPath() const { return temporary_.Path().string(); }

  void ExpectNothingIsLeft() const {
    EXPECT_THAT(OutputFiles(), testing::IsEmpty());
    EXPECT_THAT(TempFiles(), testing::IsEmpty());
  }

  static ConversionOptions KeepingInvalid() {
    ConversionOptions options;
    options.nodes.invalid = InvalidNodes::kKeep;
    return options;
  }

  static test::MemoryLattice ReadAll(LatticeReader& reader) {
    test::MemoryLattice lattice(reader.Header());
    reader.ReadRows(lattice);
    return lattice;
  }

 private:
  test::TempFolder folder_;
  test::TempFolder temporary_;
  test::ScopedVariable variable_{"TMPDIR", temporary_.Path().c_str()};
};

}  // namespace trovan::filters
