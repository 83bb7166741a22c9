// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/table_preview.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/text.h"
#include "data/cells.h"
#include "data/line_splitter.h"
#include "data/log_line.h"
#include "data/row_time.h"
#include "data/table_header.h"

namespace quarlin {
namespace {

constexpr std::size_t shownRows = 100;
constexpr std::size_t shownText = 200;
constexpr std::size_t proposedFrom = 10;  // rows

// The rows that settings are proposed from.
std::vector<std::string> FirstRows(std::string_view beginning) {
  std::vector<std::string> rows;
  LineSplitter splitter([&](const LineSplitter::Line& line) {
    if (rows.size() < proposedFrom && !TrimBlanks(line.text).empty()) rows.emplace_back(line.text);
  });
  splitter.Take(beginning);
  if (beginning.size() < previewSize) splitter.Finish();
  return rows;
}

bool IsCalledTime(std::string_view cell) {
  constexpr std::array<std::string_view, 13> words{"TIME",  "DATE",    "T",       "S",    "TIMESTAMP",
                                                   "SEC",   "SECONDS", "ELAPSED", "ZEIT", "DATUM",
                                                   "TEMPS", "HEURE",   "TIEMPO"};
  return std::find(words.begin(), words.end(), ToUpper(HeadOf(cell).name)) != words.end();
}

bool HoldsTimes(std::string_view cell) {
  const auto time = TimeIn(cell);
  return time && time->kind != RowTime::Kind::Seconds;
}

// The columns of the row that begin with a number.
std::vector<NumberRule> NumberColumns(std::string_view row, char separator) {
  std::vector<NumberRule> rules;
  Cells cells(row, separator);
  for (int place = 1; const auto cell = cells.Next(); ++place) {
    if (rules.size() == TableSettings::mostRules || HoldsTimes(*cell) || !LeadingNumber(*cell)) continue;
    rules.push_back({.kind = NumberRule::Kind::Column, .place = place});
  }
  return rules;
}

}  // namespace

TablePreview PreviewOf(std::string_view beginning, const TableSettings& settings) {
  TablePreview preview;
  TableReader reader(settings);
  reader.FollowRows([&preview](const TableRow& row) {
    if (preview.rows.size() == shownRows) return;
    preview.rows.push_back({row.line,
                            CodedText(row.text, shownText),
                            row.time,
                            {row.values.begin(), row.values.end()},
                            std::string(row.reason)});
    preview.numbers += static_cast<std::uint64_t>(
        std::count_if(row.values.begin(), row.values.end(), [](double value) { return !std::isnan(value); }));
  });
  reader.Take(beginning);
  if (beginning.size() < previewSize) reader.Finish();
  preview.isBinary = reader.LooksBinary();
  for (const Series& curve : reader.Curves()) preview.curves.push_back({curve.name, curve.unit});
  return preview;
}

TableSettings ProposedFor(std::string_view beginning) {
  TableSettings settings;
  const std::vector<std::string> rows = FirstRows(beginning);
  if (rows.empty()) return settings;
  if (LogLineIn(rows.front())) {
    settings.time = TableSettings::Time::Column;
    return settings;
  }
  const char separator = SeparatorOf(rows);
  const bool headed = IsHeaded(rows, separator);
  if (separator == ' ' || (!headed && CellAt(rows.front(), 2, separator) == std::nullopt)) return settings;
  const std::string& row = rows[headed ? 1 : 0];
  const auto first = CellAt(row, 1, separator);
  const bool timed =
      (first && HoldsTimes(*first)) || (headed && IsCalledTime(*CellAt(rows.front(), 1, separator)));
  auto columns = NumberColumns(row, separator);
  if (timed && !columns.empty() && columns.front().place == 1) columns.erase(columns.begin());
  if (columns.empty()) return settings;
  settings.rules = std::move(columns);
  if (timed) settings.time = TableSettings::Time::Column;
  return settings;
}

}  // namespace quarlin
