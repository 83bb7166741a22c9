// SPDX-License-Identifier: GPL-3.0-or-later
// A curve as a picture of some columns needs it.
#pragma once

#include <vector>

#include "data/series.h"

namespace quarlin {

// The points of `series` to draw between the times `from` and `to` in `columns` pixel columns: all of them
// where they are few, else the lowest and the highest of each column, so no peak is lost; besides, the next
// point beyond either end, so the line goes on to the border. A gap between two columns stays a gap (NaN).
// At most 4 points a column and 2; none where columns < 1, from >= to or to - from is not finite. The first
// and the last point of a column stand where they were, between them its extremes, at a quarter of it. The
// cost depends on the columns, hardly on the number of points.
std::vector<Point> Decimated(const Series& series, double from, double to, int columns);

}  // namespace quarlin
