// SPDX-License-Identifier: GPL-3.0-or-later
// Text to curves: one number a line, CSV, LOGPAR.TXT, what the clipboard holds. Taken in pieces, so a file of
// a gigabyte needs no more memory than its curves.
//
// Lines end with CR, LF or both; of one beyond 64 KiB the beginning is read. The first 64 KiB are looked at
// before any row is read: they tell what separates the columns, whether the first row holds names, and what
// points and commas are for. Of a log with times ("2026-11-22 10:00:00.135 <- 12.346 kg{0D}{0A}") the
// received rows are read behind their mark; what was sent, and the stamps of a log without times, are passed
// over.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "data/number_rule.h"
#include "data/series.h"

namespace quarlin {

struct TableSettings {
  static constexpr std::size_t mostRules = 8;

  std::vector<NumberRule> rules{NumberRule{}};  // a curve each; at most 8

  // The time of a row: its number from 0, that number by the rate, or a column: seconds as they stand, or
  // times of day or dates and times, of which the first is 0 s. A date may have its time of day in the next
  // column. The rows of a log with times have that time, whatever the column.
  enum class Time { Row, Rate, Column };
  Time time = Time::Row;
  double rate = 1;     // Hz
  int timeColumn = 1;  // from 1

  char separator = 0;  // of columns: ';', ',', tab or blank; 0: found from the first rows
};

// A row that gave no number, as it is named to the user.
struct BadRow {
  std::uint64_t line;  // from 1
  std::string text;    // its beginning, control characters as codes
  std::string reason;  // "no number", "no number in column 3"
};

// The first row with another unit than those above: where an instrument changed from kg to g, a curve makes a
// jump that was none.
struct UnitChange {
  std::uint64_t line;
  std::string from;
  std::string to;
};

// A row as it was read, for a preview.
struct TableRow {
  std::uint64_t line;
  std::string_view text;
  double time;                     // NaN: not known
  std::span<const double> values;  // a rule each; NaN: none
  std::string_view reason;         // why one of them is missing
};

class TableReader {
 public:
  // Throws std::invalid_argument as NumberReader does, and for no rules or too many, a rate that is not above
  // 0, a time column below 1.
  explicit TableReader(TableSettings settings);
  ~TableReader();
  TableReader(TableReader&&) noexcept;
  TableReader& operator=(TableReader&&) noexcept;

  // Told of each row in the calls below; what it gets lives until it returns.
  void FollowRows(std::function<void(const TableRow& row)> follower);

  // The next piece of the text, cut anywhere. Finish() takes the last line without an end.
  void Take(std::string_view piece);
  void Finish();

  // A bad row is a gap in its curves. Names and units are UTF-8. A series whose oldest points had to leave
  // tells so by Dropped().
  const std::vector<Series>& Curves() const;
  std::vector<Series> TakeCurves();
  std::uint64_t Rows() const;                       // lines that are neither empty nor the header
  std::uint64_t Numbers() const;                    // of all curves
  std::uint64_t BadRows() const;                    // a gap in at least one curve
  const std::vector<BadRow>& FirstBadRows() const;  // the first ten
  const std::optional<UnitChange>& FirstUnitChange() const;
  std::uint64_t CutLines() const;  // those beyond 64 KiB
  bool LooksBinary() const;        // bytes 0 in the first 64 KiB: nothing is read
  char Separator() const;          // as set or found

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace quarlin
