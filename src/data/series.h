// SPDX-License-Identifier: GPL-3.0-or-later
// One curve's points: when, and what. Bounded; the oldest leave. Extremes of any stretch come from levels
// that grow as points come, so their cost does not grow with the stretch.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace quarlin {

// A gap in a curve: a row without a number, a request without an answer.
inline constexpr double gapValue = std::numeric_limits<double>::quiet_NaN();

struct Point {
  double time;   // seconds, or the number of the row
  double value;  // NaN: a gap
};

class Series {
 public:
  static constexpr std::size_t mostPoints = 4'000'000;
  static constexpr std::size_t longestUnit = 16;  // what is longer is no unit, but a text behind the number

  explicit Series(std::string seriesName = {}) : name(std::move(seriesName)) {}

  std::string name;  // UTF-8
  std::string unit;  // as it stood behind the numbers, in UTF-8 or a byte a character; empty: none

  // A time before that of the last point is taken as that one's: curves run to the right; so is one that is
  // not finite. A value that is not finite is a gap. True at the first point for which an old one had to
  // leave.
  bool Append(Point point);
  void Clear();

  // The kept points, 0 is the oldest.
  std::size_t Size() const { return size_; }
  Point At(std::size_t index) const;
  std::uint64_t Dropped() const { return dropped_; }  // those that have left since Clear

  // The first kept point at `time` or later; Size() where there is none.
  std::size_t IndexAt(double time) const;

  // Of the points [begin, end) that are no gaps; low > high where there are none.
  struct Extremes {
    double low = std::numeric_limits<double>::infinity();
    double high = -std::numeric_limits<double>::infinity();
    void Take(double value);
    void Take(const Extremes& other);
  };
  Extremes ExtremesOf(std::size_t begin, std::size_t end) const;

  // Copies the points [begin, end), of those that there are.
  std::vector<Point> Points(std::size_t begin, std::size_t end) const;

 private:
  static constexpr std::size_t stretch = 64;  // points that share an entry of the lower level
  static constexpr std::size_t block = 4096;  // and of the upper one

  struct Block {
    void Add(Point point);
    void Take(std::size_t begin, std::size_t end, Extremes& extremes) const;

    std::vector<Point> points;        // at most `block`
    std::vector<Extremes> stretches;  // one for each `stretch` of them begun
    Extremes all;
  };

  void DropOldest();
  template <typename Visit>
  void EachBlock(std::size_t begin, std::size_t end, Visit visit) const;

  std::deque<Block> blocks_;  // all full but the last
  std::size_t gone_ = 0;      // points at the beginning of the first block that have left
  std::size_t size_ = 0;
  std::uint64_t dropped_ = 0;
};

}  // namespace quarlin
