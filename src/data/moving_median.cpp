// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/moving_median.h"

#include <cstdlib>
#include <utility>

namespace quarlin {

MovingMedian::MovingMedian(int width)
    : half_(width / 2), nodes_(static_cast<std::size_t>(width)), nodeOf_(static_cast<std::size_t>(width)) {}

void MovingMedian::Start(double first) {
  for (int i = 0; i < static_cast<int>(nodes_.size()); ++i) {
    nodes_[static_cast<std::size_t>(i)] = {first, i};
    nodeOf_[static_cast<std::size_t>(i)] = i - half_;
  }
}

double MovingMedian::Next(double value) {
  int node = nodeOf_[oldest_];
  if (++oldest_ == nodeOf_.size()) oldest_ = 0;
  At(node).value = value;
  node = MoveIn(node);
  if (node == 0) {
    MoveOutOfTheMiddle();
  } else {
    MoveOut(node);
  }
  return At(0).value;
}

bool MovingMedian::InOrder(int inner, int outer) {
  return outer > 0 ? At(inner).value <= At(outer).value : At(inner).value >= At(outer).value;
}

void MovingMedian::Swap(int one, int other) {
  std::swap(At(one), At(other));
  nodeOf_[static_cast<std::size_t>(At(one).age)] = one;
  nodeOf_[static_cast<std::size_t>(At(other).age)] = other;
}

int MovingMedian::MoveIn(int node) {
  for (; node != 0 && !InOrder(node / 2, node); node /= 2) Swap(node / 2, node);
  return node;
}

void MovingMedian::MoveOut(int node) {
  const int side = node > 0 ? 1 : -1;
  for (;;) {
    int outer = 2 * node;
    if (std::abs(outer) > half_) return;
    if (std::abs(outer) < half_ && !InOrder(outer, outer + side)) outer += side;
    if (InOrder(node, outer)) return;
    Swap(node, outer);
    node = outer;
  }
}

void MovingMedian::MoveOutOfTheMiddle() {
  if (half_ == 0) return;
  for (const int outer : {1, -1}) {
    if (InOrder(0, outer)) continue;
    Swap(0, outer);
    MoveOut(outer);
  }
}

}  // namespace quarlin
