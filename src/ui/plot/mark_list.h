// SPDX-License-Identifier: GPL-3.0-or-later
// What went wrong in a run, as the time axis shows it.
#pragma once

#include <array>
#include <cstddef>
#include <deque>
#include <optional>
#include <vector>

#include "data/mark.h"
#include "ui/plot/plot_span.h"

namespace quarlin {

inline constexpr std::array<MarkKind, 2> markKinds{MarkKind::TimeOut, MarkKind::WrongAnswer};

class MarkList {
 public:
  static constexpr std::size_t mostOfAKind = 50'000;  // beyond them the oldest leave

  // In the order of time.
  void Add(const Mark& mark);
  void Clear();

  std::size_t Count(MarkKind kind) const { return Of(kind).size(); }

  // The first mark of a kind in each of `columns` columns of the time: as much as a picture of that width can
  // show, found without a look at all the others.
  std::vector<Mark> Drawn(MarkKind kind, Span time, int columns) const;

  // The one nearest to the middle of `time` within it.
  std::optional<Mark> Nearest(Span time) const;

 private:
  using Marks = std::deque<Mark>;
  const Marks& Of(MarkKind kind) const { return marks_[static_cast<std::size_t>(kind)]; }

  std::array<Marks, markKinds.size()> marks_;
};

}  // namespace quarlin
