// SPDX-License-Identifier: GPL-3.0-or-later
// What a key or a click asks of a display of 100,000 lines: finding a text that is nowhere, and each way of
// showing them. Without a screen.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <chrono>
#include <string>

#include "support/virtual_loop.h"
#include "ui/qt/received_text_view.h"

namespace quarlin {
namespace {

struct FullDisplay {
  FullDisplay() {
    for (int i = 0; i < 33'334; ++i) {
      display.txtric.Append("READ\r\n", TextKind::Sent, colors::blue);
      display.txtric.Append("\x02ST,GS,+00012.345 kg " + std::to_string(i) + "\x03\r\n", TextKind::Received,
                            colors::black);
      const bool fails = i % 100 == 0;
      display.txtric.Append("ERROR CHECKSUM\r\n", fails ? TextKind::Error : TextKind::Own, colors::red);
    }
    view.resize(800, 600);
    view.Show(display.txtric);
    view.show();
  }

  VirtualLoop loop;
  DisplayControls display{loop};
  ReceivedTextView view;
};

void Find(benchmark::State& state, const char* text, bool expression) {
  FullDisplay full;
  full.view.SetSearch({text, false, expression});
  for (auto _ : state) benchmark::DoNotOptimize(full.view.FindNext(SearchDirection::Forward));
}
BENCHMARK_CAPTURE(Find, PlainText, "nowhere", false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Find, Expression, "kg \\d+x", true)->Unit(benchmark::kMillisecond);

// Both ways, and painted.
void Switch(benchmark::State& state, void (ReceivedTextView::*set)(bool)) {
  FullDisplay full;
  bool on = false;
  for (auto _ : state) {
    on = !on;
    (full.view.*set)(on);
    full.view.grab();
  }
}
BENCHMARK_CAPTURE(Switch, Hex, &ReceivedTextView::SetHexView)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Switch, Codes, &ReceivedTextView::SetShowsCodes)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Switch, Wrap, &ReceivedTextView::SetWraps)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Switch, ErrorsOnly, &ReceivedTextView::SetErrorsOnly)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quarlin

int main(int count, char** words) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(count, words);
  benchmark::Initialize(&count, words);
  benchmark::RunSpecifiedBenchmarks();
}
