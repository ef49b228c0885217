#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <random>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <tarnis/Polygon2.h>

namespace tarnis {
namespace {

using corvel::Vec2d;
using Counts = std::vector<unsigned int>;
using Points = std::vector<Vec2d>;

// Coordinates that are whole multiples of `unit` and stay small, so that 128 bits hold every
// product.
struct Lattice {
  double unit;
  Vec2d origin;  // a multiple of the unit, too
  Vec2d operator()(std::int64_t x, std::int64_t y) const {
    return {origin.x + static_cast<double>(x) * unit, origin.y + static_cast<double>(y) * unit};
  }
};

struct Whole {
  std::int64_t x, y;
};

using Rings = std::vector<std::vector<Whole>>;

int SideOf(const Whole& a, const Whole& b, const Whole& p) {
  const auto cross = static_cast<__int128>(b.x - a.x) * (p.y - a.y) -
                     static_cast<__int128>(b.y - a.y) * (p.x - a.x);
  return cross > 0 ? 1 : cross < 0 ? -1 : 0;
}

// By the definition: on an edge, or an odd number of edges above.
bool IsInside(const Whole& p, const Rings& rings) {
  bool isInside = false;
  for (const auto& ring : rings) {
    for (std::size_t i = 0; i < ring.size(); ++i) {
      const Whole& a = ring[i];
      const Whole& b = ring[(i + 1) % ring.size()];
      const int side = SideOf(a, b, p);
      const bool isInBox = std::min(a.x, b.x) <= p.x && p.x <= std::max(a.x, b.x) &&
                           std::min(a.y, b.y) <= p.y && p.y <= std::max(a.y, b.y);
      if (side == 0 && isInBox) return true;
      if ((a.x <= p.x) == (b.x <= p.x)) continue;
      const bool isAbove = b.x > a.x ? side < 0 : side > 0;
      isInside = isInside != isAbove;
    }
  }
  return isInside;
}

Polygon2 PolygonOf(const Rings& rings, const Lattice& lattice) {
  Points points;
  Counts counts;
  for (const auto& ring : rings) {
    for (const Whole& p : ring) points.push_back(lattice(p.x, p.y));
    counts.push_back(static_cast<unsigned int>(ring.size()));
  }
  return {points, counts};
}

class Random {
 public:
  explicit Random(unsigned seed) : engine_(seed) {}
  std::int64_t Below(std::int64_t bound) {
    return static_cast<std::int64_t>(engine_() % static_cast<std::uint64_t>(bound));
  }

 private:
  std::mt19937_64 engine_;
};

// Rings that cross and touch themselves and each other, with corners that often coincide.
Rings RandomRings(Random& random, std::int64_t size) {
  Rings rings(static_cast<std::size_t>(1 + random.Below(4)));
  for (auto& ring : rings) {
    const std::int64_t count = 1 + random.Below(random.Below(4) == 0 ? 60 : 9);
    for (std::int64_t i = 0; i < count; ++i)
      ring.push_back({random.Below(size), random.Below(size)});
    if (random.Below(4) == 0) ring.push_back(ring.front());
  }
  return rings;
}

void ExpectEveryPointIsPlaced(const Rings& rings, const Lattice& lattice, std::int64_t size) {
  const Polygon2 polygon = PolygonOf(rings, lattice);
  for (std::int64_t y = -1; y <= size; ++y) {
    for (std::int64_t x = -1; x <= size; ++x) {
      ASSERT_EQ(PointInPolygon(lattice(x, y), polygon), IsInside({x, y}, rings)) << x << ", " << y;
    }
  }
}

TEST(PointInPolygon, AgreesWithTheDefinitionOnSmallLattices) {
  Random random(21);
  for (int round = 0; round < 3000; ++round) {
    SCOPED_TRACE(testing::Message() << "round " << round);
    const std::int64_t size = 2 + random.Below(12);
    ExpectEveryPointIsPlaced(RandomRings(random, size), {1.0, {0, 0}}, size);
    if (testing::Test::HasFatalFailure()) return;
  }
}

// Degrees, metres of UTM, and numbers of a billion: products need more bits than a double has.
TEST(PointInPolygon, AgreesWithTheDefinitionAtEveryMagnitude) {
  const Lattice lattices[] = {{0x1p-20, {10.5, 47.25}},
                              {0x1p-10, {500'000.0, 5'400'000.0}},
                              {1.0, {1e9, -1e9}},
                              {0x1p-23, {1e9, 1e9}}};
  Random random(22);
  for (const Lattice& lattice : lattices) {
    for (int round = 0; round < 150; ++round) {
      SCOPED_TRACE(testing::Message() << "unit " << lattice.unit << ", round " << round);
      ExpectEveryPointIsPlaced(RandomRings(random, 20), lattice, 20);
      if (testing::Test::HasFatalFailure()) return;
    }
  }
}

TEST(PointInPolygon, AgreesWithTheDefinitionOnManyLongEdges) {
  Random random(23);
  constexpr std::int64_t kSize = 1 << 20;
  for (int round = 0; round < 20; ++round) {
    Rings rings(3);
    for (auto& ring : rings) {
      for (int i = 0; i < 400; ++i) ring.push_back({random.Below(kSize), random.Below(kSize)});
    }
    const Polygon2 polygon = PolygonOf(rings, {1.0, {0, 0}});
    for (int i = 0; i < 2000; ++i) {
      // Half of them in line with a corner of a ring.
      const auto& ring = rings[static_cast<std::size_t>(random.Below(3))];
      Whole p{random.Below(kSize), random.Below(kSize)};
      if (i % 4 == 1) p.x = ring[static_cast<std::size_t>(random.Below(400))].x;
      if (i % 4 == 2) p.y = ring[static_cast<std::size_t>(random.Below(400))].y;
      ASSERT_EQ(PointInPolygon({static_cast<double>(p.x), static_cast<double>(p.y)}, polygon),
                IsInside(p, rings))
          << "round " << round << ": " << p.x << ", " << p.y;
    }
  }
}

TEST(PointInPolygon, TakesTheRingItselfForInside) {
  const Polygon2 frame({{0, 0}, {4, 0}, {4, 4}, {0, 4}, {1, 1}, {2, 1}, {2, 2}, {1, 2}}, {4, 4});
  EXPECT_TRUE(PointInPolygon({0, 0}, frame));
  EXPECT_TRUE(PointInPolygon({4, 2}, frame));
  EXPECT_TRUE(PointInPolygon({1, 1.5}, frame)) << "that of a hole, too";
  EXPECT_FALSE(PointInPolygon({1.5, 1.5}, frame)) << "in the hole";
  EXPECT_TRUE(PointInPolygon({3, 3}, frame));
  EXPECT_FALSE(PointInPolygon({std::nextafter(4.0, 5.0), 2}, frame));
}

TEST(PointInPolygon, IsTrueOnRingsWithoutArea) {
  const Polygon2 line({{0, 0}, {4, 2}}, {2});
  EXPECT_TRUE(PointInPolygon({2, 1}, line));
  EXPECT_FALSE(PointInPolygon({2, std::nextafter(1.0, 2.0)}, line));
  const Polygon2 point({{3, 3}}, {1});
  EXPECT_TRUE(PointInPolygon({3, 3}, point));
  EXPECT_FALSE(PointInPolygon({3, 4}, point));
}

TEST(PointInPolygon, IsFalseWithoutRingsAndForWhatIsNoPoint) {
  EXPECT_FALSE(PointInPolygon({0, 0}, Polygon2()));
  EXPECT_FALSE(PointInPolygon({0, 0}, Polygon2({}, {0})));
  const Polygon2 square({{-1, -1}, {1, -1}, {1, 1}, {-1, 1}}, {4});
  EXPECT_FALSE(PointInPolygon({std::nan(""), 0}, square));
  EXPECT_FALSE(PointInPolygon({0, std::nan("")}, square));
  EXPECT_FALSE(PointInPolygon({INFINITY, 0}, square));
}

TEST(PointInPolygon, SharesItsIndexAmongCopies) {
  const Polygon2 square({{-1, -1}, {1, -1}, {1, 1}, {-1, 1}}, {4});
  EXPECT_TRUE(PointInPolygon({0, 0}, square));
  Polygon2 copy = square;
  EXPECT_EQ(&copy.Index(), &square.Index());
  const Polygon2 moved = std::move(copy);
  EXPECT_EQ(&moved.Index(), &square.Index());
  copy = Polygon2({{5, 5}, {7, 5}, {7, 7}}, {3});
  EXPECT_FALSE(PointInPolygon({0, 0}, copy));
  EXPECT_TRUE(PointInPolygon({6.5, 6}, copy));
  copy = square;
  EXPECT_EQ(&copy.Index(), &square.Index());
}

TEST(PointInPolygon, CanBeAskedByManyThreadsAtOnce) {
  for (int round = 0; round < 50; ++round) {
    const Polygon2 square({{-1, -1}, {1, -1}, {1, 1}, {-1, 1}}, {4});
    std::vector<const RegionIndex*> seen(4);
    std::vector<std::thread> threads;
    for (auto& index : seen) threads.emplace_back([&] { index = &square.Index(); });
    for (std::thread& thread : threads) thread.join();
    for (const auto* index : seen) EXPECT_EQ(index, seen[0]);
  }
}

}  // namespace
}  // namespace tarnis
