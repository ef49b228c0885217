// What lattice filters read from the user's dialog, and the summary that they leave with a lattice.
//
//   double dataMin = 0.0, dataMax = 255.0;
//   corvel::PrimType dataType = corvel::kUInt8;
//   if (!GetExternalLatticeProperties(page, dataMin, dataMax, dataType)) ...  // no type was chosen
//
//   FormatLatticeInfoString(lattice, L"Harz", L"ESRI ASCII grid");
//   lattice.Params().Get(L"LatticeInfo");  // "Name:\tHarz\r\nFormat:\tESRI ASCII grid\r\n..."
#pragma once

#include <string>

#include <corvel/PrimType.h>
#include <quillon/IoPropertyPage.h>
#include <quillon/TrUniformLattice.h>
#include <trovan/Export.h>

namespace trovan {

// Reads the range of the data and the type of the samples from the page of a lattice export.
// Returns whether the page holds the type.
//
// Deliberate: the result says nothing about the range. What the page does not hold stays as the
// caller set it, so set all three before. The type may be any number that the page holds.
TROVAN_API bool GetExternalLatticeProperties(const quillon::IoPropertyPage& page, double& dataMin,
                                             double& dataMax, corvel::PrimType& dataType);

// Writes a summary of the lattice into its own parameter list, for the application to show: the
// entry "LatticeInfo", which is added or replaced. Each line ends with CR LF; numbers have twelve
// significant digits.
//
//   Name:        <name>
//   Format:      <formatName>
//   Size:        2 rows x 3 columns x 1 planes
//   Spacing:     X=5,   Y=2,   Z=0
//   xMin:        10          xMax:  20
//   yMin:        20          yMax:  22
//   SW Corner:   10, 20
//   NW Corner:   10, 22
//   NE Corner:   20, 22
//   SE Corner:   20, 20
//
// (The wide gaps are tabs.) Both names end at their first null character.
//
// Deliberate: the spacings are shown without their signs, while the last column and row lie where
// the signs put them. Along an axis that runs down, "Max" is less than "Min" and the corners have
// the names of their opposites. A count of 0 reaches as far as 4294967295 steps.
TROVAN_API void FormatLatticeInfoString(quillon::TrUniformLattice& lattice,
                                        const std::wstring& name, const std::wstring& formatName);

}  // namespace trovan
