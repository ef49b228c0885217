// A lattice whose nodes stand in columns, rows and planes at equal distances: the frame in which
// the values of a grid lie, without the values.
//
//   TrUniformLattice lattice(3, 2, 1);      // columns, rows, planes
//   lattice.SetOrigin(10.0, 20.0);          // of the first column and row
//   lattice.SetSpacing(5.0, -2.0, 0.0);     // the second row lies at y = 18
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <quillon/Export.h>
#include <quillon/TrBase.h>

namespace quillon {

// Lengths are in the units of the map. The spacing is the signed step from a column (row, plane) to
// the next, so a lattice may run down any axis.
class QUILLON_API TrUniformLattice : public TrBase {
 public:
  static const corvel::CTypeInfo* GetClassTypeId();

  // A single node at (0, 0) with spacings of 1.
  TrUniformLattice() = default;

  // The same with these numbers of nodes along X, Y and Z.
  TrUniformLattice(std::uint32_t columns, std::uint32_t rows, std::uint32_t planes)
      : columns_(columns), rows_(rows), planes_(planes) {}

  const corvel::CTypeInfo* GetTypeId() const override;
  std::unique_ptr<TrBase> Clone() const override;

  // Raises unless each count is at least 1 and origin and spacings are finite.
  void AssertValid() const override;
  std::wstring Description() const override;

  // Nodes along X, Y and Z.
  std::uint32_t ColumnCount() const { return columns_; }
  std::uint32_t RowCount() const { return rows_; }
  std::uint32_t PlaneCount() const { return planes_; }
  void SetCounts(std::uint32_t columns, std::uint32_t rows, std::uint32_t planes) {
    columns_ = columns;
    rows_ = rows;
    planes_ = planes;
  }

  // Where the first column and the first row lie: the least x and y where the spacings are
  // positive.
  double XMin() const { return xMin_; }
  double YMin() const { return yMin_; }
  void SetOrigin(double xMin, double yMin) {
    xMin_ = xMin;
    yMin_ = yMin;
  }

  double XSpacing() const { return xSpacing_; }
  double YSpacing() const { return ySpacing_; }
  double ZSpacing() const { return zSpacing_; }
  void SetSpacing(double x, double y, double z) {
    xSpacing_ = x;
    ySpacing_ = y;
    zSpacing_ = z;
  }

 private:
  std::uint32_t columns_ = 1;
  std::uint32_t rows_ = 1;
  std::uint32_t planes_ = 1;
  double xMin_ = 0.0;
  double yMin_ = 0.0;
  double xSpacing_ = 1.0;
  double ySpacing_ = 1.0;
  double zSpacing_ = 1.0;
};

}  // namespace quillon
