// SPDX-License-Identifier: GPL-3.0-or-later
// How long one string to send spends in the macro language.
#include <benchmark/benchmark.h>

#include "macro/expander.h"
#include "support/virtual_loop.h"

namespace {

using namespace quarlin;

void Expand(benchmark::State& state, const char* command) {
  VirtualLoop loop;
  MacroControls controls(loop);
  Expander expander(
      controls, [] { return true; }, [] { return 0.5; });
  std::string text;
  for ([[maybe_unused]] const auto _ : state) {
    text = command;
    benchmark::DoNotOptimize(expander.ExpandMacros(text).data());
  }
  state.SetItemsProcessed(state.iterations());
}

BENCHMARK_CAPTURE(Expand, Plain, "READ");
BENCHMARK_CAPTURE(Expand, FramedCounterChecksum, "{02}R[CNT3][CHECKSUMMOT]{03}");
BENCHMARK_CAPTURE(Expand, MainCounter, "R[COUNTER]^r");

}  // namespace
