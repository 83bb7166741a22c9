// SPDX-License-Identifier: GPL-3.0-or-later
// Which row of the display shows which line: a line may take several rows, where lines are wrapped or shown
// as hex, or none, where only errors are shown. Rows are numbered on as lines come, so a row keeps its number
// while older ones leave.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "display/line_sums.h"
#include "display/text_ring.h"

namespace quarlin {

struct RowPlace {
  std::uint64_t line = 0;
  std::uint32_t row = 0;  // of the line, from 0
};

class RowMap {
 public:
  // How many rows a line takes, if it is shown.
  using RowsOf = std::function<std::uint32_t(const TextLine& line)>;

  // Begins anew; Update then lays every line. Without `rowsOf` a line is a row. With `errorsOnly` the lines
  // that tell errors are shown, each with the exchange before it: from the request on, or, where that is far
  // off, the line before.
  void Lay(RowsOf rowsOf, bool errorsOnly);

  // Takes in what the ring, whose limits are the usual ones, has got and lost since. Says nothing of lines
  // behind the update.
  void Update(const TextRing& ring);

  // Rows from FirstRow() to EndRow() - 1 are there.
  std::uint64_t FirstRow() const { return firstRow_; }
  std::uint64_t EndRow() const;

  // For a row that is there; for any other the first or the last one's. For none at all the ring's end.
  RowPlace PlaceOf(std::uint64_t row) const;

  // The first row of a line; of one that is not shown, the row behind the place where it would be.
  std::uint64_t RowOf(std::uint64_t line) const;

  // Whether a line of the ring is shown at all, as far as it was taken in.
  bool Shows(std::uint64_t line) const;

  // An error shows lines before it, so many at the most.
  static constexpr std::uint64_t farthestBefore = 50;

  // Whether every line is a row.
  bool Plain() const { return sums_ == nullptr; }

 private:
  void AddLine(const TextRing& ring, std::uint64_t line);
  void ShowExchangeBefore(const TextRing& ring, std::uint64_t line);
  std::uint32_t RowsIn(const TextLine& line) const { return rowsOf_ ? rowsOf_(line) : 1; }

  RowsOf rowsOf_;
  bool errorsOnly_ = false;
  std::unique_ptr<LineSums> sums_;  // none while a line is a row
  TextLine read_;
  bool fresh_ = true;  // nothing was laid yet
  std::uint64_t firstRow_ = 0;
  std::uint64_t endLine_ = 0;
};

}  // namespace quarlin
