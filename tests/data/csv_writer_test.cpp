// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/csv_writer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "data/table_reader.h"

namespace quarlin {
namespace {

std::string Csv(const std::vector<CsvCurve>& curves) {
  std::string text;
  CsvLines(curves, "Time (s)", [&](std::string_view piece) { return text += piece, true; });
  return text;
}

TEST(CsvWriter, CurvesWithTimesOfTheirOwnShareARowWhereTheyMeet) {
  Series weight("");
  weight.unit = "kg";
  for (const Point point : {Point{0, 1.5}, {0.1, gapValue}, {0.1, 2}, {0.3, 1e-7}}) weight.Append(point);
  Series other("");
  for (const Point point : {Point{0.1, -3}, {0.2, 123456789.125}}) other.Append(point);
  EXPECT_EQ(Csv({{&weight, "Weight"}, {&other, "\"a\", b"}}),
            "Time (s),Weight (kg),\"\"\"a\"\", b\"\n"
            "0,1.5,\n0.1,,-3\n0.1,2,\n0.2,,123456789.125\n0.3,1e-07,\n");
  EXPECT_EQ(Csv({}), "Time (s)\n");
}

// Whole numbers look as if the comma were a decimal sign.
TEST(CsvWriter, IsReadBackAsItWas) {
  for (const bool whole : {true, false}) {
    Series weight("");
    weight.unit = "kg";
    for (int i = 0; i < 20'000; ++i) weight.Append({i * (whole ? 1.0 : 0.1), whole ? i % 50 : std::sin(i)});
    NumberRule column{NumberRule::Kind::Column, 2, {}, {}};
    TableSettings settings{{column}, TableSettings::Time::Column};
    TableReader reader(settings);
    reader.Take(Csv({{&weight, "Weight"}}));
    reader.Finish();
    const Series& read = reader.Curves()[0];
    EXPECT_EQ(read.name, "Weight");
    EXPECT_EQ(read.unit, "kg");
    ASSERT_EQ(read.Size(), weight.Size());
    for (std::size_t i = 0; i < read.Size(); ++i) {
      ASSERT_EQ(read.At(i).time, weight.At(i).time);
      ASSERT_EQ(read.At(i).value, weight.At(i).value);
    }
  }
}

}  // namespace
}  // namespace quarlin
