// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/plot/mark_list.h"

#include <algorithm>
#include <cmath>

namespace quarlin {

namespace {

bool IsBefore(const Mark& mark, double time) {
  return mark.time < time;
}

}  // namespace

void MarkList::Add(const Mark& mark) {
  Marks& marks = marks_[static_cast<std::size_t>(mark.kind)];
  if (marks.size() == mostOfAKind) marks.pop_front();
  marks.push_back(mark);
}

void MarkList::Clear() {
  for (Marks& marks : marks_) marks.clear();
}

std::vector<Mark> MarkList::Drawn(MarkKind kind, Span time, int columns) const {
  std::vector<Mark> drawn;
  const Marks& marks = Of(kind);
  const double width = time.Size() / columns;
  auto next = std::lower_bound(marks.begin(), marks.end(), time.from, IsBefore);
  while (next != marks.end() && next->time <= time.to) {
    drawn.push_back(*next);
    const double column = std::floor((next->time - time.from) / width);
    next =
        std::max(next + 1, std::lower_bound(next, marks.end(), time.from + (column + 1) * width, IsBefore));
  }
  return drawn;
}

std::optional<Mark> MarkList::Nearest(Span time) const {
  const double middle = (time.from + time.to) / 2;
  std::optional<Mark> nearest;
  const auto take = [&](const Mark& mark) {
    if (!time.Holds(mark.time)) return;
    if (!nearest || std::abs(mark.time - middle) < std::abs(nearest->time - middle)) nearest = mark;
  };
  for (const Marks& marks : marks_) {
    const auto after = std::lower_bound(marks.begin(), marks.end(), middle, IsBefore);
    if (after != marks.end()) take(*after);
    if (after != marks.begin()) take(*(after - 1));
  }
  return nearest;
}

}  // namespace quarlin
