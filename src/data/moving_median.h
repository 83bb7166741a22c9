// SPDX-License-Identifier: GPL-3.0-or-later
// The median of the last values, in a time that grows with the logarithm of their number.
#pragma once

#include <vector>

#include "data/started_filter.h"

namespace quarlin {

// Two heaps that share their root, the median. Node n > 0 belongs to the greater half, n < 0 to the smaller
// one; the nodes beyond n are 2n and, one further out, 2n + 1 or 2n - 1. For seven values:
//
//      -3   -2        2    3        No value lies further in than one of its own half
//        \  /          \  /         that is nearer to the median.
//         -1 --- 0 ---- 1
class MovingMedian : public StartedFilter {
 public:
  explicit MovingMedian(int width);  // odd

 private:
  void Start(double first) override;
  double Next(double value) override;

  struct Node {
    double value;
    int age;  // its place in nodeOf_
  };

  Node& At(int node) { return nodes_.data()[half_ + node]; }
  bool InOrder(int inner, int outer);
  void Swap(int one, int other);
  int MoveIn(int node);  // where its value stands then
  void MoveOut(int node);
  void MoveOutOfTheMiddle();

  int half_;
  std::vector<Node> nodes_;
  std::vector<int> nodeOf_;  // a ring: where each of the last values stands
  std::size_t oldest_ = 0;
};

}  // namespace quarlin
