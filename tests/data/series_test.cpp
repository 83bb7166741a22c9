// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/series.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "data/decimation.h"

namespace quarlin {
namespace {

// A curve with all that is awkward: uneven times, many points at one time, gaps alone and in rows, peaks.
Point AwkwardPoint(std::mt19937& random, double& time) {
  const auto kind = random() % 100;
  if (kind < 40) time += static_cast<double>(random() % 1000) / 1000;
  if (kind == 99) time += 50;
  if (random() % 10 == 0) return {time, gapValue};
  return {time, kind == 50 ? 1e6 : static_cast<double>(random() % 2000) - 1000};
}

std::vector<Point> AwkwardPoints(Series& series, std::size_t count) {
  std::mt19937 random(7);
  double time = -100;
  std::vector<Point> points;
  for (std::size_t i = 0; i < count; ++i) {
    points.push_back(AwkwardPoint(random, time));
    series.Append(points.back());
  }
  return points;
}

Series::Extremes PlainExtremes(std::span<const Point> points) {
  Series::Extremes extremes;
  for (const Point& point : points) extremes.Take(point.value);
  return extremes;
}

// Against the plain way over all points, also when the oldest have left in the middle of a block.
TEST(Series, FindsTimesAndExtremesAsALookAtEveryPointWould) {
  Series series;
  const std::size_t more = 4096 + 1000;
  const auto all = AwkwardPoints(series, Series::mostPoints + more);
  ASSERT_EQ(series.Size(), Series::mostPoints);
  EXPECT_EQ(series.Dropped(), more);
  const std::span<const Point> kept = std::span(all).subspan(more);
  std::mt19937 random(3);
  for (int round = 0; round < 300; ++round) {
    const std::size_t begin = round < 100 ? random() % 200 : random() % kept.size();
    const std::size_t end = std::min(begin + random() % (round % 3 == 0 ? 70 : 30000), kept.size());
    const auto expected = PlainExtremes(kept.subspan(begin, end - begin));
    const auto found = series.ExtremesOf(begin, end);
    ASSERT_EQ(found.low, expected.low) << begin << ".." << end;
    ASSERT_EQ(found.high, expected.high) << begin << ".." << end;
    const double time = kept[begin].time + (round % 2 == 0 ? 0 : 0.01);
    const auto plain = std::lower_bound(kept.begin(), kept.end(), time,
                                        [](const Point& point, double at) { return point.time < at; });
    ASSERT_EQ(series.IndexAt(time), static_cast<std::size_t>(plain - kept.begin()));
  }
  EXPECT_EQ(series.IndexAt(kept.back().time + 1), series.Size());
  const auto copied = series.Points(4000, 9000);
  ASSERT_EQ(copied.size(), 5000u);
  EXPECT_EQ(copied.back().time, kept[8999].time);
  EXPECT_EQ(series.Points(series.Size() - 2, series.Size() + 5).size(), 2u);
}

TEST(Series, TellsOnceThatTheOldestLeaveAndNeverRunsBack) {
  Series series;
  int told = 0;
  for (std::size_t i = 0; i < Series::mostPoints + 10; ++i) {
    told += series.Append({static_cast<double>(i), 1}) ? 1 : 0;
  }
  EXPECT_EQ(told, 1);
  EXPECT_EQ(series.At(0).time, 10);
  const double last = series.At(series.Size() - 1).time;
  for (const double time : {-5.0, gapValue, std::numeric_limits<double>::infinity()}) {
    series.Append({time, std::numeric_limits<double>::infinity()});
    EXPECT_EQ(series.At(series.Size() - 1).time, last) << time;
    EXPECT_TRUE(std::isnan(series.At(series.Size() - 1).value));
  }
  series.Clear();
  EXPECT_EQ(series.Size(), 0u);
  EXPECT_EQ(series.IndexAt(0), 0u);
}

struct Picture {
  double from, to;
  int columns;
};

// Every column of the picture shows the extremes of its points, and lets the line go through no gap that
// stands between two of them.
TEST(Decimation, KeepsThePeaksAndTheGapsOfEveryColumn) {
  Series series;
  const auto all = AwkwardPoints(series, 200'000);
  const double end = all.back().time;
  for (const auto& [from, to, columns] :
       {Picture{-100, end, 1000}, {-100, end, 7}, {0.1, 500.3, 800}, {-1e6, 1e6, 500}, {10, 11, 1000}}) {
    const auto drawn = Decimated(series, from, to, columns);
    EXPECT_LE(drawn.size(), static_cast<std::size_t>(columns) * 4 + 2);
    EXPECT_TRUE(std::is_sorted(drawn.begin(), drawn.end(),
                               [](const Point& left, const Point& right) { return left.time < right.time; }));
    const auto between = [](const std::vector<Point>& points, double left, double right) {
      std::vector<Point> found;
      std::copy_if(points.begin(), points.end(), std::back_inserter(found),
                   [&](const Point& point) { return point.time >= left && point.time < right; });
      return found;
    };
    for (int column = 0; column < columns; column += std::max(1, columns / 50)) {
      const double left = from + (to - from) / columns * column;
      const double right = from + (to - from) / columns * (column + 1);
      const auto expected = between(all, left, right);
      const auto shown = between(drawn, left, right);
      ASSERT_EQ(shown.empty(), expected.empty());
      if (expected.empty()) continue;
      EXPECT_EQ(PlainExtremes(shown).low, PlainExtremes(expected).low);
      EXPECT_EQ(PlainExtremes(shown).high, PlainExtremes(expected).high);
      EXPECT_EQ(std::isnan(shown.front().value), std::isnan(expected.front().value));
      EXPECT_EQ(std::isnan(shown.back().value), std::isnan(expected.back().value));
    }
  }
}

TEST(Decimation, ReachesTheNextPointBeyondEitherEnd) {
  Series series;
  for (int i = 0; i < 10; ++i) series.Append({i * 1.0, i * 1.0});
  const auto drawn = Decimated(series, 3.5, 3.9, 100);
  ASSERT_EQ(drawn.size(), 2u);
  EXPECT_EQ(drawn[0].time, 3);
  EXPECT_EQ(drawn[1].time, 4);
  EXPECT_EQ(Decimated(series, 3, 5, 100).size(), 5u);
  EXPECT_EQ(Decimated(series, -5, -1, 100).size(), 1u);
  EXPECT_EQ(Decimated(series, -1e9, 1e9, 1).size(), 4u);
  EXPECT_TRUE(Decimated(series, 5, 5, 100).empty());
  EXPECT_TRUE(Decimated(series, 0, gapValue, 100).empty());
  EXPECT_TRUE(Decimated(series, 0, 5, 0).empty());
  EXPECT_TRUE(Decimated(Series{}, 0, 5, 10).empty());
}

}  // namespace
}  // namespace quarlin
