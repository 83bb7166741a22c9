// Text to curves: one number a line, CSV, LOGPAR.TXT, what the clipboard holds. Taken in pieces, so a file of
// a gigabyte needs no more memory than its curves.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "data/number_rule.h"
#include "data/series.h"

namespace quarlin {

struct TableSettings {
  std::vector<NumberRule> rules{NumberRule{}};  // a curve each; at most 8

  // The time of a row: its number from 0, that number by the rate, or a column (seconds, hh:mm:ss.fff, or
  // date and time).
  enum class Time { Row, Rate, Column };
  Time time = Time::Row;
  double rate = 1;     // Hz
  int timeColumn = 1;  // from 1
};

// A row that gave no number, as it is named to the user.
struct BadRow {
  std::uint64_t line;  // from 1
  std::string text;    // its beginning
  std::string reason;
};

class TableReader {
 public:
  // Throws std::invalid_argument as NumberReader does.
  explicit TableReader(TableSettings settings);

  // The next piece of the text, cut anywhere. Finish() takes the last line without an end.
  void Take(std::string_view piece);
  void Finish();

  const std::vector<Series>& Curves() const { return curves_; }
  std::vector<Series> TakeCurves() { return std::move(curves_); }
  std::uint64_t Rows() const;                       // lines that are not empty
  std::uint64_t BadRows() const;                    // a gap in at least one curve
  const std::vector<BadRow>& FirstBadRows() const;  // the first ten
  bool LooksBinary() const;                         // bytes 0 in the first 64 KiB: reading on makes no sense

 private:
  std::vector<Series> curves_;
};

}  // namespace quarlin
