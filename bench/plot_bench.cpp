// SPDX-License-Identifier: GPL-3.0-or-later
// A frame of the plot: what is in sight is fitted, thinned to the window's columns, drawn into the picture of
// the window (1200 x 600 pixels), and that is painted. Without a screen.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QPixmap>
#include <chrono>
#include <cmath>
#include <random>

#include "ui/plot/curve_canvas.h"

namespace quarlin {
namespace {

// A noisy signal, so every column of pixels is a line from low to high; a thousand points a second.
void FillWithNoise(Series& series, std::int64_t points) {
  std::mt19937 random(1);
  std::normal_distribution<double> noise;
  for (std::int64_t i = 0; i < points; ++i) {
    const double time = static_cast<double>(i) / 1000;
    series.Append({time, std::sin(time / 100) * 5 + noise(random)});
  }
}

void DrawAFrame(CurveCanvas& canvas, QPixmap& screen) {
  canvas.DrawNow();
  canvas.render(&screen);
}

// Every frame looks elsewhere, as when the user drags: nothing of the one before can be used again.
void DrawFrames(benchmark::State& state, CurveCanvas& canvas) {
  canvas.show();
  QPixmap screen(canvas.size());
  bool left = false;
  for (auto _ : state) {
    canvas.ZoomBy(left ? 1.01 : 1 / 1.01);
    left = !left;
    DrawAFrame(canvas, screen);
  }
}

void Frame(benchmark::State& state) {
  Series series;
  FillWithNoise(series, state.range(0));
  CurveCanvas canvas;
  canvas.resize(1200, 600);
  canvas.SetCurves({{&series, "Weight"}});
  DrawFrames(state, canvas);
}
BENCHMARK(Frame)->Arg(1'000)->Arg(100'000)->Arg(4'000'000)->Unit(benchmark::kMillisecond);

// Raw and filtered together, with ten thousand marks.
void FrameOfTwo(benchmark::State& state) {
  Series raw;
  Series filtered;
  FillWithNoise(raw, state.range(0));
  FillWithNoise(filtered, state.range(0));
  std::vector<Mark> marks;
  const double end = static_cast<double>(state.range(0)) / 1000;
  for (std::uint64_t i = 0; i < 10'000; ++i)
    marks.push_back({end * static_cast<double>(i) / 10'000, MarkKind(i % 2), i});
  CurveCanvas canvas;
  canvas.resize(1200, 600);
  canvas.SetCurves({{&raw, "raw", false, true}, {&filtered, "filtered"}});
  canvas.SetMarks(marks);
  DrawFrames(state, canvas);
}
BENCHMARK(FrameOfTwo)->Arg(4'000'000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quarlin

int main(int count, char** words) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(count, words);
  benchmark::Initialize(&count, words);
  benchmark::RunSpecifiedBenchmarks();
}
