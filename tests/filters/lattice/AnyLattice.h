// Small lattices of any kind with random nodes.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <random>
#include <vector>

#include <corvel/PrimType.h>

#include "MemoryLattice.h"
#include "filters/lattice/NodeTypes.h"
#include "support/Random.h"

namespace trovan::test {

constexpr corvel::PrimType kElementTypes[] = {corvel::kInt8,   corvel::kUInt8, corvel::kInt16,
                                              corvel::kUInt16, corvel::kInt32, corvel::kUInt32,
                                              corvel::kInt64,  corvel::kFloat, corvel::kDouble};

// Any bits, but no NaN: text keeps no more of one than its sign.
inline std::vector<unsigned char> AnyElements(std::mt19937& random, corvel::PrimType type,
                                              std::size_t count) {
  const auto size = static_cast<std::size_t>(corvel::CPrimType(type).Size());
  std::vector<unsigned char> bytes(count * size);
  for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(random());
  for (std::size_t i = 0; i < count; ++i) {
    if (!std::isnan(corvel::CPrimData::GetWideReal(type, &bytes[i * size]))) continue;
    std::memset(&bytes[i * size], 0, size);
  }
  return bytes;
}

// `count` elements from 1 on, each one more than the one before.
inline std::vector<unsigned char> CountingElements(corvel::PrimType type, unsigned count) {
  std::vector<unsigned char> bytes;
  filters::VisitElementType(type, [&](auto element) {
    for (unsigned i = 0; i < count; ++i) {
      element = static_cast<decltype(element)>(i + 1);
      const auto* const raw = reinterpret_cast<const unsigned char*>(&element);
      bytes.insert(bytes.end(), raw, raw + sizeof element);
    }
  });
  return bytes;
}

// 1 to 5 nodes along each axis; the axes and the position come through every format as they are.
inline filters::LatticeHeader AnyHeader(std::mt19937& random, LatticeResequencer::LatticeType type,
                                        corvel::PrimType dataType, corvel::PrimType coordType) {
  filters::LatticeHeader header;
  header.type = type;
  header.columns = 1 + Below(random, 5);
  header.rows = 1 + Below(random, 5);
  header.planes = 1 + Below(random, 5);
  header.components = 1 + Below(random, 6);
  header.dataType = dataType;
  header.coordType = coordType;
  header.origin = {-20.5, 3.25, 100.0};
  header.spacing = {0.5, 2.0, 0.25};
  if (type == LatticeResequencer::Rectilinear) {
    header.axes[0] = AnyElements(random, coordType, header.columns);
    header.axes[1] = CountingElements(coordType, header.rows);
    header.axes[2] = AnyElements(random, coordType, header.planes);
  }
  return header;
}

inline MemoryLattice AnyLattice(std::mt19937& random, const filters::LatticeHeader& header) {
  MemoryLattice lattice(header);
  for (unsigned z = 0; z < header.planes; ++z) {
    for (unsigned y = 0; y < header.rows; ++y) {
      auto row =
          AnyElements(random, header.dataType, std::size_t{header.columns} * header.components);
      lattice.TakeRow(y, z, row.data());
      if (header.type != LatticeResequencer::Curvilinear) continue;
      auto coordinates = AnyElements(random, header.coordType, std::size_t{header.columns} * 3);
      lattice.TakeCoordinateRow(y, z, coordinates.data());
    }
  }
  return lattice;
}

}  // namespace trovan::test
