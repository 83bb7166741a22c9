// SPDX-License-Identifier: GPL-3.0-or-later
// quarlin-data: figures, filters and pictures of measured values on the command line.

#include <fmt/format.h>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <exception>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "base/licence.h"
#include "base/process.h"
#include "base/text.h"
#include "data/data_files.h"
#include "data/figures_text.h"
#include "data/input.h"
#include "data/options.h"
#include "data/plot.h"

namespace quarlin::data_tool {
namespace {

enum Status { done = 0, failed = 2 };

Status Complain(std::string_view what) {
  fmt::print(stderr, "quarlin-data: {}\n", OnOneLine(what));
  return failed;
}

// Returns false when nobody takes it any more; errno tells why.
bool Print(std::string_view text) {
  return std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
}

// A reader that wanted no more, such as head, is no failure.
Status EndOfOutput(bool printed) {
  if (printed && std::fflush(stdout) == 0) return done;
  if (errno == EPIPE) return done;
  return Complain("standard output: " + std::generic_category().message(errno));
}

void NameBadRows(const Input& input) {
  for (const BadRow& row : input.firstBadRows) {
    Complain(fmt::format("line {}: {}: {}", row.line, row.reason, row.text));
  }
  if (input.badRows > 0) {
    Complain(
        fmt::format("{} {} without a number left out", input.badRows, input.badRows == 1 ? "row" : "rows"));
  }
  if (input.curve.Dropped() > 0) {
    Complain(fmt::format("only the last {} values are kept, {} before them are left out", Series::mostPoints,
                         input.curve.Dropped()));
  }
}

std::vector<Point> WithoutGaps(const Series& curve) {
  std::vector<Point> points = curve.Points(0, curve.Size());
  std::erase_if(points, [](const Point& point) { return std::isnan(point.value); });
  return points;
}

std::vector<double> ValuesOf(const std::vector<Point>& points) {
  std::vector<double> values;
  values.reserve(points.size());
  for (const Point& point : points) values.push_back(point.value);
  return values;
}

Status PrintStatistics(const Options& options, const Input& input) {
  const Statistics statistics = Describe(WithoutGaps(input.curve));
  return EndOfOutput(Print(options.json ? FiguresAsJson(statistics, input.curve.unit, input.timed)
                                        : FiguresAsText(statistics, input.curve.unit, input.timed)));
}

Status PrintFiltered(const Options& options, const Series& curve) {
  const std::vector<double> raw = ValuesOf(WithoutGaps(curve));
  const std::vector<double> filtered = Filtered(options.filter, raw, options.zeroPhase);
  if (options.folder) {
    const DataFilesOutcome outcome = WriteDataFiles(*options.folder, raw, filtered);
    if (outcome.error) {
      return Complain(fmt::format("{}: {}", outcome.file.string(), outcome.error.message()));
    }
  }
  bool printed = true;
  NumberLines(filtered, [&](std::string_view piece) { return printed = Print(piece); });
  return EndOfOutput(printed);
}

Status WritePlot(const Options& options, const Input& input) {
  const Series& curve = input.curve;
  std::vector<Series> curves{curve};
  if (options.filter.kind != FilterKind::None) {
    std::vector<Point> points = curve.Points(0, curve.Size());
    const std::vector<double> filtered = Filtered(options.filter, ValuesOf(points), options.zeroPhase);
    Series& other = curves.emplace_back(curve.name.empty() ? "filtered" : curve.name + ", filtered");
    other.unit = curve.unit;
    for (std::size_t i = 0; i < points.size(); ++i) other.Append({points[i].time, filtered[i]});
  }
  const std::string wrong = DrawPlot(curves, input.timed, options.picture);
  return wrong.empty() ? done : Complain(wrong);
}

Status Work(const Options& options) {
  const Input input = ReadInput(options);
  if (!input.error.empty()) return Complain(input.error);
  NameBadRows(input);
  switch (options.verb) {
    case Verb::Stats:
      return PrintStatistics(options, input);
    case Verb::Filter:
      return PrintFiltered(options, input.curve);
    case Verb::Plot:
      return WritePlot(options, input);
  }
  return done;
}

Status Run(std::span<const char* const> arguments) {
  const Options options = ParseOptions(arguments);
  if (!options.error.empty()) return Complain(options.error);
  if (options.help) return EndOfOutput(Print(HelpText()));
  if (options.version) return EndOfOutput(Print(VersionText("quarlin-data")));
  try {
    return Work(options);
  } catch (const std::exception& failure) {
    return Complain(failure.what());
  }
}

}  // namespace
}  // namespace quarlin::data_tool

int main(int count, char** arguments) {
  quarlin::PrepareProcess();
  return quarlin::data_tool::Run({arguments + 1, static_cast<std::size_t>(count - 1)});
}
