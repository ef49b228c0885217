// One benchmark for each region.
#pragma once

#include <string>

#include <benchmark/benchmark.h>

#include "SampleShapes.h"

namespace trovan::bench {

// Registers `run` as "<what>/<region>/<who>" with each region.
inline void RegisterForEachRegion(const char* what, const char* who,
                                  void (*run)(benchmark::State&, RegionKind)) {
  for (const RegionKind kind : kRegions) {
    const std::string name = std::string(what) + "/" + NameOf(kind) + "/" + who;
    benchmark::RegisterBenchmark(name.c_str(), run, kind)->Unit(benchmark::kMillisecond);
  }
}

}  // namespace trovan::bench
