// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/series.h"

#include <algorithm>
#include <cmath>

namespace quarlin {

void Series::Extremes::Take(double value) {  // a gap is neither below nor above
  if (value < low) low = value;
  if (value > high) high = value;
}

void Series::Extremes::Take(const Extremes& other) {
  low = std::min(low, other.low);
  high = std::max(high, other.high);
}

void Series::Block::Add(Point point) {
  if (points.size() % stretch == 0) stretches.emplace_back();
  points.push_back(point);
  stretches.back().Take(point.value);
  all.Take(point.value);
}

// Whole stretches between `begin` and `end` by their entry, what is left at both ends point by point.
void Series::Block::Take(std::size_t begin, std::size_t end, Extremes& extremes) const {
  const std::size_t whole = (begin + stretch - 1) / stretch;
  const std::size_t wholeEnd = end / stretch;
  const auto takePoints = [&](std::size_t from, std::size_t to) {
    for (std::size_t i = from; i < to; ++i) extremes.Take(points[i].value);
  };
  if (begin / stretch == wholeEnd) return takePoints(begin, end);
  takePoints(begin, whole * stretch);
  for (std::size_t i = whole; i < wholeEnd; ++i) extremes.Take(stretches[i]);
  takePoints(wholeEnd * stretch, end);
}

bool Series::Append(Point point) {
  const double last = size_ > 0 ? blocks_.back().points.back().time : 0;
  if (!std::isfinite(point.time) || (size_ > 0 && point.time < last)) point.time = last;
  if (!std::isfinite(point.value)) point.value = gapValue;
  if (blocks_.empty() || blocks_.back().points.size() == block) blocks_.emplace_back();
  blocks_.back().Add(point);
  ++size_;
  if (size_ <= mostPoints) return false;
  DropOldest();
  return dropped_ == 1;
}

void Series::DropOldest() {
  --size_;
  ++dropped_;
  if (++gone_ < block) return;
  blocks_.pop_front();
  gone_ = 0;
}

void Series::Clear() {
  blocks_.clear();
  gone_ = 0;
  size_ = 0;
  dropped_ = 0;
}

Point Series::At(std::size_t index) const {
  const std::size_t place = gone_ + index;
  return blocks_[place / block].points[place % block];
}

std::size_t Series::IndexAt(double time) const {
  const auto inBlock = std::partition_point(blocks_.begin(), blocks_.end(), [time](const Block& candidate) {
    return candidate.points.back().time < time;
  });
  if (inBlock == blocks_.end()) return size_;
  const auto& points = inBlock->points;
  const auto point = std::partition_point(points.begin(), points.end(),
                                          [time](const Point& candidate) { return candidate.time < time; });
  const auto place = static_cast<std::size_t>(inBlock - blocks_.begin()) * block +
                     static_cast<std::size_t>(point - points.begin());
  return std::max(place, gone_) - gone_;
}

// Calls `visit` with each block that has some of the points [begin, end), and where they are in it.
template <typename Visit>
void Series::EachBlock(std::size_t begin, std::size_t end, Visit visit) const {
  std::size_t place = gone_ + begin;
  const std::size_t last = gone_ + std::min(end, size_);
  while (place < last) {
    const std::size_t start = place / block * block;
    const std::size_t stop = std::min(last, start + block);
    visit(blocks_[start / block], place - start, stop - start);
    place = stop;
  }
}

Series::Extremes Series::ExtremesOf(std::size_t begin, std::size_t end) const {
  Extremes extremes;
  EachBlock(begin, end, [&](const Block& part, std::size_t from, std::size_t to) {
    if (from == 0 && to == part.points.size()) {
      extremes.Take(part.all);
    } else {
      part.Take(from, to, extremes);
    }
  });
  return extremes;
}

std::vector<Point> Series::Points(std::size_t begin, std::size_t end) const {
  std::vector<Point> points;
  if (begin < std::min(end, size_)) points.reserve(std::min(end, size_) - begin);
  EachBlock(begin, end, [&](const Block& part, std::size_t from, std::size_t to) {
    const auto first = part.points.begin();
    points.insert(points.end(), first + static_cast<std::ptrdiff_t>(from),
                  first + static_cast<std::ptrdiff_t>(to));
  });
  return points;
}

}  // namespace quarlin
