#include "filters/lattice/LatticeReport.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include <corvel/Text.h>
#include <quillon/TrUniformLattice.h>
#include <trovan/LatticeProperties.h>

#include "filters/lattice/NodeTypes.h"

namespace trovan::filters {
namespace {

struct Cancelled {};

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// Adds one row to the report.
template <typename T>
void AddRow(const unsigned char* row, unsigned columns, std::optional<double> voidValue,
            std::vector<ComponentReport>& components) {
  for (std::size_t c = 0; c < components.size(); ++c) {
    ComponentReport& report = components[c];
    double lowest = report.lowest.value_or(kInfinity);
    double highest = report.highest.value_or(-kInfinity);
    const std::uint64_t validBefore = report.valid;
    for (std::size_t x = 0; x < columns; ++x) {
      T element;
      std::memcpy(&element, row + (x * components.size() + c) * sizeof(T), sizeof(T));
      const auto value = static_cast<double>(element);
      if (voidValue && (value == *voidValue || (std::isnan(value) && std::isnan(*voidValue)))) {
        ++report.voids;
      } else if (!std::isfinite(value)) {
        ++report.invalid;
      } else {
        ++report.valid;
        lowest = std::min(lowest, value);
        highest = std::max(highest, value);
      }
    }
    if (report.valid == validBefore) continue;
    report.lowest = lowest;
    report.highest = highest;
  }
}

class ReportSink : public LatticeRowSink {
 public:
  ReportSink(LatticeReport& report, corvel::IProgress* progress)
      : report_(report),
        progress_(progress),
        total_(static_cast<double>(report.header.rows) * report.header.planes) {
    const LatticeHeader& header = report.header;
    if (!header.voidValue) return;
    const bool isNan = std::isnan(*header.voidValue) && !IsInteger(header.dataType);
    voidValue_ = isNan ? header.voidValue : StoredValue(header.dataType, *header.voidValue);
  }

  void TakeRow(unsigned /*y*/, unsigned /*z*/, void* nodes) override {
    const LatticeHeader& header = report_.header;
    VisitElementType(header.dataType, [&](auto element) {
      AddRow<decltype(element)>(static_cast<const unsigned char*>(nodes), header.columns,
                                voidValue_, report_.components);
    });
    ++rows_;
    if (progress_ != nullptr && !progress_->Update(rows_ / total_)) throw Cancelled();
  }

  void TakeCoordinateRow(unsigned /*y*/, unsigned /*z*/, void* coordinates) override {
    const auto size = static_cast<std::size_t>(corvel::CPrimType(report_.header.coordType).Size());
    const auto* element = static_cast<const unsigned char*>(coordinates);
    auto& extent = *report_.extent;
    for (std::size_t i = 0; i < std::size_t{report_.header.columns} * 3; ++i, element += size) {
      const double value = corvel::CPrimData::GetWideReal(report_.header.coordType, element);
      extent[i % 3] = {std::min(extent[i % 3][0], value), std::max(extent[i % 3][1], value)};
    }
  }

 private:
  LatticeReport& report_;
  corvel::IProgress* progress_;
  double total_;
  std::optional<double> voidValue_;
  double rows_ = 0.0;
};

std::array<AxisSpacing, 3> UniformAxes(const LatticeHeader& header) {
  const auto axis = [](unsigned count, double first, double step) {
    return AxisSpacing{count, first, first + (count - 1) * step, step, true, 0.0};
  };
  return {axis(header.columns, header.origin.x, header.spacing.x),
          axis(header.rows, header.origin.y, header.spacing.y),
          axis(header.planes, header.origin.z, header.spacing.z)};
}

std::wstring InfoText(const LatticeReport& report, const std::wstring& name) {
  const auto& axes = *report.axes;
  quillon::TrUniformLattice lattice(axes[0].count, axes[1].count, axes[2].count);
  lattice.SetOrigin(axes[0].first, axes[1].first);
  lattice.SetSpacing(axes[0].step, axes[1].step, axes[2].step);
  FormatLatticeInfoString(lattice, name, corvel::WideFromUtf8(report.header.format));
  return lattice.Params().Get(L"LatticeInfo");
}

void DescribeAxes(LatticeReport& report, const LatticeHeader& header, double tolerancePercent) {
  if (header.type == LatticeResequencer::Uniform) report.axes = UniformAxes(header);
  if (header.type == LatticeResequencer::Rectilinear) {
    report.axes = {MeasureAxis(header, 0, tolerancePercent),
                   MeasureAxis(header, 1, tolerancePercent),
                   MeasureAxis(header, 2, tolerancePercent)};
  }
}

}  // namespace

std::optional<LatticeReport> ReportLattice(LatticeReader& reader, const std::wstring& name,
                                           double tolerancePercent, corvel::IProgress* progress) {
  const LatticeHeader& header = reader.Header();
  LatticeReport report;
  report.header = header;
  for (auto& axis : report.header.axes) axis.clear();
  report.components.resize(header.components);
  for (std::size_t c = 0; c < header.componentNames.size() && c < header.components; ++c) {
    report.components[c].name = header.componentNames[c];
  }
  DescribeAxes(report, header, tolerancePercent);
  if (header.type == LatticeResequencer::Curvilinear) {
    const std::array<double, 2> nothing = {kInfinity, -kInfinity};
    report.extent = {nothing, nothing, nothing};
  }
  const bool equal = report.axes && std::all_of(report.axes->begin(), report.axes->end(),
                                                [](const AxisSpacing& axis) { return axis.equal; });
  if (equal) report.infoText = InfoText(report, name);
  try {
    ReportSink sink(report, progress);
    reader.ReadRows(sink);
  } catch (const Cancelled&) {
    return std::nullopt;
  }
  return report;
}

}  // namespace trovan::filters
