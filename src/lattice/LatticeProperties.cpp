#include <trovan/LatticeProperties.h>

#include <cmath>
#include <cstdint>

#include <corvel/Text.h>

namespace trovan {
namespace {

// Where the last of `count` nodes lies. Deliberate: 0 wraps around to 4294967295 steps.
double LastNode(double first, std::uint32_t count, double spacing) {
  return (count - 1) * spacing + first;
}

}  // namespace

bool GetExternalLatticeProperties(const quillon::IoPropertyPage& page, double& dataMin,
                                  double& dataMax, corvel::PrimType& dataType) {
  using Page = quillon::IoPropertyPage;
  page.GetProperty(Page::GetLatticeExportPropName_DataMin(), dataMin);
  page.GetProperty(Page::GetLatticeExportPropName_DataMax(), dataMax);
  int type = dataType;
  const bool found = page.GetProperty(Page::GetLatticeExportPropName_DataType(), type);
  dataType = static_cast<corvel::PrimType>(type);
  return found;
}

void FormatLatticeInfoString(quillon::TrUniformLattice& lattice, const std::wstring& name,
                             const std::wstring& formatName) {
  const double xMin = lattice.XMin();
  const double yMin = lattice.YMin();
  const double xMax = LastNode(xMin, lattice.ColumnCount(), lattice.XSpacing());
  const double yMax = LastNode(yMin, lattice.RowCount(), lattice.YSpacing());
  std::wstring text;
  corvel::FormatString(text,
                       L"Name:\t%s\r\n"
                       L"Format:\t%s\r\n"
                       L"Size:\t%u rows x %u columns x %u planes\r\n"
                       L"Spacing:\tX=%.12G,   Y=%.12G,   Z=%.12G\r\n"
                       L"xMin:\t%.12G\txMax:\t%.12G\r\n"
                       L"yMin:\t%.12G\tyMax:\t%.12G\r\n"
                       L"SW Corner:\t%.12G, %.12G\r\n"
                       L"NW Corner:\t%.12G, %.12G\r\n"
                       L"NE Corner:\t%.12G, %.12G\r\n"
                       L"SE Corner:\t%.12G, %.12G\r\n",
                       name.c_str(), formatName.c_str(), lattice.RowCount(), lattice.ColumnCount(),
                       lattice.PlaneCount(), std::fabs(lattice.XSpacing()),
                       std::fabs(lattice.YSpacing()), std::fabs(lattice.ZSpacing()), xMin, xMax,
                       yMin, yMax, xMin, yMin, xMin, yMax, xMax, yMax, xMax, yMin);
  lattice.Params().Set(L"LatticeInfo", text);
}

}  // namespace trovan
