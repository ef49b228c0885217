// What is left when an import fails in the middle: managers that raise, and memory that ends.
#include <cstddef>
#include <cstdlib>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <quillon/TrBrush.h>
#include <quillon/TrClipPath.h>
#include <quillon/TrEllipse.h>
#include <quillon/TrFont.h>
#include <quillon/TrMarkerSet.h>
#include <quillon/TrPen.h>
#include <quillon/TrPolygon.h>
#include <quillon/TrPolyline.h>

#include "ClippedFixture.h"

namespace {

// How many allocations of this thread succeed before one fails; negative: all do.
thread_local int g_allocationsLeft = -1;
thread_local bool g_hasFailed = false;

// Null when there is no memory.
void* Allocate(std::size_t size) noexcept {
  if (g_allocationsLeft == 0) {
    g_allocationsLeft = -1;
    g_hasFailed = true;
    return nullptr;
  }
  if (g_allocationsLeft > 0) --g_allocationsLeft;
  return std::malloc(size == 0 ? 1 : size);
}

void* AllocateOrThrow(std::size_t size) {
  void* memory = Allocate(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

// For the whole program, the libraries that it loads included.
void* operator new(std::size_t size) { return AllocateOrThrow(size); }
void* operator new[](std::size_t size) { return AllocateOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { std::free(memory); }

namespace trovan::test {
namespace {

using corvel::Box2d;
using corvel::Color4b;
using quillon::TrBrush;
using quillon::TrClipPath;
using quillon::TrEllipse;
using quillon::TrFont;
using quillon::TrMarkerSet;
using quillon::TrPen;
using quillon::TrPolygon;
using quillon::TrPolyline;

struct ManagerStops : std::runtime_error {
  using std::runtime_error::runtime_error;
};

class ClippedFailureTest : public ClippedTest {
 protected:
  void SetUp() override {
    Import(TrPen(TrPen::kSolid, Color4b(1, 2, 3, 4), 0.5));
    Import(Square());
    manager_.Clear();
  }

  // The manager takes so many objects and raises at the next one.
  void StopAfter(std::size_t taken) {
    manager_.onDelivery = [taken](std::size_t number) {
      if (number == taken) throw ManagerStops("stop");
    };
  }

  // Calls `import` with memory that ends at the first allocation, at the second, ... until there
  // is enough; `after` is called after each failure that comes out.
  template <class Import, class After>
  void WithLittleMemory(const Import& import, const After& after) {
    int failures = 0;
    for (int enough = 0;; ++enough) {
      SCOPED_TRACE(testing::Message() << enough << " allocations succeed");
      ASSERT_LT(enough, 10'000);
      g_hasFailed = false;
      g_allocationsLeft = enough;
      bool isOut = false;
      try {
        import();
      } catch (const std::bad_alloc&) {
        isOut = true;
      }
      g_allocationsLeft = -1;
      if (!g_hasFailed) break;
      if (isOut) {
        ++failures;
        after();
      }
    }
    EXPECT_GT(failures, 0) << "memory was never asked for";
  }
};

TrPolygon CrossingSquare() { return TrPolygon({{5, 5, 0}, {15, 5, 0}, {15, 15, 0}, {5, 15, 0}}); }

TEST_F(ClippedFailureTest, PassesOnWhatTheManagerRaises) {
  StopAfter(0);
  EXPECT_THROW(Import(TrPen()), ManagerStops);
  EXPECT_THROW(Import(TrPolyline({{1, 1, 0}, {2, 2, 0}})), ManagerStops);
  EXPECT_THROW(Import(TrMarkerSet({{1, 1, 0}})), ManagerStops);
  EXPECT_THROW(Import(CrossingSquare()), ManagerStops);
}

TEST_F(ClippedFailureTest, HasRestoredThePenWhenAnOutlineCannotBeDelivered) {
  StopAfter(3);
  EXPECT_THROW(Import(CrossingSquare()), ManagerStops);
  EXPECT_EQ(manager_.AreaTexts(),
            (Texts{"TrPen 2 00000000 0", "TrPolygon 5 5 0, 10 5 0, 10 10 0, 5 10 0 (4)",
                   "TrPen 1 01020304 0.5"}));
}

TEST_F(ClippedFailureTest, GoesOnAfterAManagerHasRaised) {
  for (std::size_t taken = 0; taken < 5; ++taken) {
    manager_.Clear();
    StopAfter(taken);
    EXPECT_THROW(Import(CrossingSquare()), ManagerStops);
    EXPECT_EQ(manager_.Size(), taken);
  }
  manager_.onDelivery = nullptr;
  EXPECT_EQ(Delivered(CrossingSquare()).at(2), "TrPen 1 01020304 0.5");
  EXPECT_EQ(Probe(), Within("0", "10"));
}

TEST_F(ClippedFailureTest, TakesAPenThoughTheManagerDoesNot) {
  StopAfter(0);
  EXPECT_THROW(Import(TrPen(TrPen::kSolid, Color4b(9, 9, 9, 9), 3.0)), ManagerStops);
  manager_.onDelivery = nullptr;
  EXPECT_EQ(Delivered(CrossingSquare()).at(2), "TrPen 1 09090909 3");
}

TEST_F(ClippedFailureTest, KeepsTheRegionWhenMemoryEnds) {
  TrClipPath triangle({{-50, 0, 0}, {50, 0, 0}, {0, 50, 0}});
  WithLittleMemory([&] { filter_.ImportObject(triangle); },
                   [&] {
                     EXPECT_EQ(Probe(), Within("0", "10"));
                     EXPECT_TRUE(PassesWhole(TrEllipse(Box2d(1, 1, 9, 9))));
                     EXPECT_FALSE(PassesWhole(TrEllipse(Box2d(-9, 1, -1, 9))));
                   });
  EXPECT_EQ(Probe(), Within("-49", "49"));
}

TEST_F(ClippedFailureTest, KeepsThePenWhenMemoryEnds) {
  TrPen pen(TrPen::kSolid, Color4b(9, 9, 9, 9), 3.0);
  pen.Params().Set(L"a key that is too long to stand in the string itself", L"value");
  const auto import = [&] {
    manager_.onDelivery = [](std::size_t) { g_allocationsLeft = -1; };  // it has memory of its own
    filter_.ImportObject(pen);
  };
  WithLittleMemory(import, [&] {
    EXPECT_EQ(manager_.Size(), 0U);
    EXPECT_EQ(Delivered(CrossingSquare()).at(2), "TrPen 1 01020304 0.5");
    manager_.Clear();
  });
}

TEST_F(ClippedFailureTest, DeliversNoBrushOrFontThatItCannotKeep) {
  TrBrush brush(TrBrush::kSolid, Color4b(1, 1, 1, 1));
  TrFont font(L"A name that is too long to stand in the string itself");
  const auto deliversNothing = [&] { EXPECT_EQ(manager_.Size(), 0U); };
  manager_.onDelivery = [](std::size_t) { g_allocationsLeft = -1; };
  WithLittleMemory([&] { filter_.ImportObject(brush); }, deliversNothing);
  manager_.Clear();
  WithLittleMemory([&] { filter_.ImportObject(font); }, deliversNothing);
}

// In a rectangle: for other regions areas go through a library that itself loses memory then.
TEST_F(ClippedFailureTest, LosesNothingWhenMemoryEndsWithinAnArea) {
  TrPolygon square = CrossingSquare();
  TrEllipse ellipse(Box2d(-5, -5, 5, 5), 0.5);
  const auto worksAsBefore = [&] { EXPECT_EQ(Probe(), Within("0", "10")); };
  WithLittleMemory([&] { filter_.ImportObject(square); }, worksAsBefore);
  WithLittleMemory([&] { filter_.ImportObject(ellipse); }, worksAsBefore);
}

TEST_F(ClippedFailureTest, LosesNothingWhenMemoryEndsWithinALineOrMarkers) {
  TrPolyline line({{-5, 5, 0}, {5, 5, 0}, {5, 20, 0}});
  TrMarkerSet markers({{1, 1, 0}, {2, 2, 0}, {30, 30, 0}});
  for (const TrClipPath& region : {Square(), Triangle()}) {
    Import(region);
    const Texts before = Probe();
    const auto worksAsBefore = [&] { EXPECT_EQ(Probe(), before); };
    WithLittleMemory([&] { filter_.ImportObject(line); }, worksAsBefore);
    WithLittleMemory([&] { filter_.ImportObject(markers); }, worksAsBefore);
  }
}

}  // namespace
}  // namespace trovan::test
