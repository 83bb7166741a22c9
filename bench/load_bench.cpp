// SPDX-License-Identifier: GPL-3.0-or-later
// Tables to curves.
#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <string>

#include "data/decimation.h"
#include "data/table_reader.h"

namespace quarlin {
namespace {

std::string Rows(int count, const char* format) {
  std::string text;
  for (int i = 0; i < count; ++i)
    text += fmt::format(fmt::runtime(format), i * 0.01, 12.0 + i % 1000 * 0.001);
  return text;
}

void Read(benchmark::State& state, const std::string& text, const TableSettings& settings) {
  for (auto _ : state) {
    TableReader reader(settings);
    for (std::size_t at = 0; at < text.size(); at += 65536)
      reader.Take(std::string_view(text).substr(at, 65536));
    reader.Finish();
    benchmark::DoNotOptimize(reader.Numbers());
  }
}

void OneNumberALine(benchmark::State& state) {
  Read(state, Rows(1'000'000, "{1:.3f}\n"), {});
}
BENCHMARK(OneNumberALine)->Unit(benchmark::kMillisecond);

void Answers(benchmark::State& state) {
  Read(state, Rows(1'000'000, "ST,GS,+{1:09.3f} kg\r\n"), {});
}
BENCHMARK(Answers)->Unit(benchmark::kMillisecond);

void Matched(benchmark::State& state) {
  Read(state, Rows(1'000'000, "ST,GS,+{1:09.3f} kg\r\n"),
       {.rules = {{.kind = NumberRule::Kind::Group, .expression = "GS,(?<value>\\S+)"}}});
}
BENCHMARK(Matched)->Unit(benchmark::kMillisecond);

void TwoColumnsWithTimes(benchmark::State& state) {
  TableSettings settings{.time = TableSettings::Time::Column};
  settings.rules = {{.kind = NumberRule::Kind::Column, .place = 2},
                    {.kind = NumberRule::Kind::Column, .place = 3}};
  Read(state, Rows(1'000'000, "2026-11-22T10:00:00.123+01:00;{0:.2f};{1:.3f} kg\n"), settings);
}
BENCHMARK(TwoColumnsWithTimes)->Unit(benchmark::kMillisecond);

// The points to draw of a full series, all of it in a window 1,900 pixels wide.
void Decimate(benchmark::State& state) {
  Series series;
  for (std::size_t i = 0; i < Series::mostPoints; ++i) {
    series.Append({static_cast<double>(i) / 1000, static_cast<double>(i * 7919 % 1000)});
  }
  for (auto _ : state) benchmark::DoNotOptimize(Decimated(series, 0, 4000, 1900));
}
BENCHMARK(Decimate)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quarlin
