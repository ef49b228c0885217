#include "filters/lattice/LatticeConversion.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <system_error>

#include <corvel/Path.h>
#include <corvel/Text.h>

#include "filters/lattice/Axes.h"
#include "filters/support/FilterError.h"

namespace trovan::filters {
namespace {

struct Cancelled {};

bool IsCurvilinear(const LatticeHeader& header) {
  return header.type == LatticeResequencer::Curvilinear;
}

// Counts rows: those that come make the first half of the work, those that go the second.
class RowCount {
 public:
  RowCount(const LatticeHeader& header, corvel::IProgress* progress)
      : progress_(progress),
        total_(static_cast<double>(header.rows) * header.planes * (IsCurvilinear(header) ? 4 : 2)) {
  }

  // Raises Cancelled when the user does not want to go on.
  void Next() {
    constexpr unsigned kRowsBetween = 32;
    if (progress_ == nullptr || ++done_ % kRowsBetween != 0) return;
    if (!progress_->Update(static_cast<double>(done_) / total_)) throw Cancelled();
  }
  // The output has its name by now: it is too late to stop.
  void Last() const { corvel::UpdateProgress(progress_, 1.0); }

 private:
  corvel::IProgress* progress_;
  double total_;
  std::uint64_t done_ = 0;
};

// Finishes a resequencer, which would otherwise leave its files behind.
class Resequencer {
 public:
  Resequencer() = default;
  ~Resequencer() {
    try {
      lattice_.Finish();
    } catch (...) {
      FinishAgain();
    }
  }
  Resequencer(const Resequencer&) = delete;
  Resequencer& operator=(const Resequencer&) = delete;

  LatticeResequencer& operator*() { return lattice_; }
  LatticeResequencer* operator->() { return &lattice_; }

 private:
  // Each call closes at least one of the two files, so the third finds both closed and deletes
  // them. What could not be written is of no use any more.
  void FinishAgain() noexcept {
    for (int attempt = 0; attempt < 2; ++attempt) {
      try {
        lattice_.Finish();
        return;
      } catch (...) {
        continue;
      }
    }
  }

  LatticeResequencer lattice_;
};

class RowsIn : public LatticeRowSink {
 public:
  RowsIn(LatticeResequencer& lattice, NodeSteps& steps, RowCount& rows)
      : lattice_(lattice), steps_(steps), rows_(rows) {}

  void TakeRow(unsigned y, unsigned z, void* nodes) override {
    rows_.Next();
    lattice_.WriteRowOfMultiComponentData(y, z, steps_.Apply(nodes));
  }
  void TakeCoordinateRow(unsigned y, unsigned z, void* coordinates) override {
    rows_.Next();
    lattice_.WriteRowOfXYZ(y, z, coordinates);
  }

 private:
  LatticeResequencer& lattice_;
  NodeSteps& steps_;
  RowCount& rows_;
};

class RowsOut : public LatticeRowSource {
 public:
  RowsOut(LatticeResequencer& lattice, RowCount& rows) : lattice_(lattice), rows_(rows) {}

  void GiveRow(unsigned y, unsigned z, void* nodes) override {
    rows_.Next();
    lattice_.ReadRowOfMultiComponentData(y, z, nodes);
  }
  void GiveCoordinateRow(unsigned y, unsigned z, void* coordinates) override {
    rows_.Next();
    lattice_.ReadRowOfXYZ(y, z, coordinates);
  }

 private:
  LatticeResequencer& lattice_;
  RowCount& rows_;
};

// The header in a form that the writer takes: as it is, or a rectilinear one as uniform.
LatticeHeader Writable(const LatticeHeader& header, const LatticeWriter& writer,
                       double spacingTolerance) {
  try {
    writer.Check(header);
    return header;
  } catch (const FilterError&) {
    if (header.type != LatticeResequencer::Rectilinear) throw;
  }
  LatticeHeader uniform = AsUniform(header, spacingTolerance);
  writer.Check(uniform);
  return uniform;
}

// Bytes of the temporary files. Raises when the resequencer's 32-bit sizes would wrap.
std::uint64_t TemporarySize(const LatticeHeader& header) {
  constexpr std::uint64_t kTwoTo32 = 1ULL << 32;
  std::uint64_t total = 0;
  const auto add = [&](std::size_t rowSize) {
    if (rowSize >= kTwoTo32 || rowSize * header.rows >= kTwoTo32) {
      throw FilterError(
          "a plane of this lattice takes 4 GiB or more, which is more than the "
          "temporary files can hold; divide it into smaller planes");
    }
    total += rowSize * header.rows * header.planes;
  };
  add(RowSize(header));
  if (IsCurvilinear(header)) add(CoordinateRowSize(header));
  return total;
}

std::string InMegabytes(std::uint64_t bytes) { return std::to_string(bytes / 1'000'000) + " MB"; }

void RequireRoom(std::uint64_t bytes) {
  const std::wstring folder = corvel::CPath::GetTempPath(true);
  if (folder.empty()) {
    throw FilterError(
        "there is no folder for temporary files (GetTempPath failed); TMPDIR has to "
        "name one that exists");
  }
  std::error_code unknown;
  const auto space = std::filesystem::space(corvel::PathToSystem(folder), unknown);
  if (unknown || space.available >= bytes) return;
  throw FilterError("the folder for temporary files, " + corvel::Utf8FromWide(folder) + ", has " +
                    InMegabytes(space.available) + " left of the " + InMegabytes(bytes) +
                    " that are needed; TMPDIR can name another one");
}

void Start(LatticeResequencer& lattice, const LatticeHeader& header) {
  const bool hasCoordinates = header.type != LatticeResequencer::Uniform;
  const int coordSize = hasCoordinates ? corvel::CPrimType(header.coordType).Size() : 0;
  lattice.Start(header.type, header.columns, header.rows, header.planes, header.components,
                static_cast<unsigned>(coordSize),
                static_cast<unsigned>(corvel::CPrimType(header.dataType).Size()),
                IsCurvilinear(header), true);
}

// The axes take the same road as the rows.
void PassAxes(LatticeResequencer& lattice, LatticeHeader& header) {
  if (header.type != LatticeResequencer::Rectilinear) return;
  lattice.WriteRectilinearXs(header.axes[0].data());
  lattice.WriteRectilinearYs(header.axes[1].data());
  lattice.WriteRectilinearZs(header.axes[2].data());
  lattice.ReadRectilinearXs(header.axes[0].data());
  lattice.ReadRectilinearYs(header.axes[1].data());
  lattice.ReadRectilinearZs(header.axes[2].data());
}

void Copy(LatticeReader& reader, LatticeWriter& writer, const std::wstring& fileName,
          const ConversionOptions& options, corvel::IProgress* progress) {
  NodeSteps steps(reader.Header(), options.nodes, fileName);
  LatticeHeader header = Writable(steps.Result(), writer, options.spacingTolerance);
  RequireRoom(TemporarySize(header));

  Resequencer lattice;
  Start(*lattice, header);
  PassAxes(*lattice, header);
  RowCount rows(header, progress);
  RowsIn in(*lattice, steps, rows);
  reader.ReadRows(in);
  RowsOut out(*lattice, rows);
  writer.Write(header, out);
  rows.Last();
}

}  // namespace

ConversionOutcome ConvertLattice(LatticeReader& reader, LatticeWriter& writer,
                                 const std::wstring& fileName, const ConversionOptions& options,
                                 corvel::IProgress* progress) {
  try {
    Copy(reader, writer, fileName, options, progress);
    return ConversionOutcome::kDone;
  } catch (const Cancelled&) {
    return ConversionOutcome::kCancelled;
  } catch (const Declined&) {
    return ConversionOutcome::kDeclined;
  }
}

}  // namespace trovan::filters
