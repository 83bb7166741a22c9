// SPDX-License-Identifier: GPL-3.0-or-later
// Looking for something in the display and bringing it into view: a text, a line, a time.
#include <QScrollBar>
#include <algorithm>
#include <utility>

#include "display/line_times.h"
#include "ui/qt/received_text_view.h"
#include "ui/qt/row_painter.h"

namespace quarlin {
namespace {

// Of the time that a search may take: a key's patience, and a part of a frame.
constexpr std::chrono::seconds searchPatience(2);
constexpr std::chrono::milliseconds countBudget(4);

}  // namespace

void ReceivedTextView::SetSearch(const TextQuery& query) {
  matcher_ = TextMatcher(query);
  matchCount_.Restart();
  countOn_.stop();  // of the search before, which would have no error to tell
  ShowSearch({matcher_.Error(), 0, 0, true});
  if (matcher_.Usable()) CountMatches();
  UpdateAll();
}

bool ReceivedTextView::FindNext(SearchDirection direction) {
  if (Ring() == nullptr || !matcher_.Usable()) return false;
  const bool backward = direction == SearchDirection::Backward;
  TextSpan from{{map_.PlaceOf(top_).line, 0}, {map_.PlaceOf(top_ + VisibleRows()).line, 0}};
  selection_.KeepFrom(Ring()->FirstLine());
  if (!selection_.Empty()) {
    from = selection_.Span();
    // A match is passed over; anything else that is selected may hold or begin one.
    if (IsMatch(*Ring(), matcher_, from)) std::swap(from.begin, from.end);
  }
  const auto match =
      FindText(*Ring(), map_, matcher_, backward ? from.end : from.begin, direction, searchPatience);
  if (!match) return false;
  selection_.Start(*match);
  MakeVisible(*match);
  CountMatches();
  return true;
}

void ReceivedTextView::CountMatches() {
  if (Ring() == nullptr) return;
  const bool counted = matchCount_.Update(*Ring(), map_, matcher_, countBudget);
  counted ? countOn_.stop() : countOn_.start(0, this);
  const std::uint64_t number =
      selection_.Empty() ? 0 : matchCount_.NumberOf(*Ring(), matcher_, selection_.Span());
  ShowSearch({QString(), matchCount_.Count(), number, counted});
}

void ReceivedTextView::ShowSearch(SearchState state) {
  if (search_ == state) return;
  search_ = std::move(state);
  emit searchChanged();
}

bool ReceivedTextView::ShowLine(std::uint64_t line) {
  if (Ring() == nullptr || !Ring()->Keeps(line)) return false;
  const TextSpan span{{line, 0}, {line, Ring()->Line(line).visible}};
  selection_.Start(span);
  MakeVisible(span);
  return true;
}

bool ReceivedTextView::ShowTime(Duration timeOfDay) {
  const auto line = Ring() == nullptr ? std::nullopt : LineNearest(*Ring(), timeOfDay);
  return line && ShowLine(*line);
}

std::optional<ReceivedTextView::TimeRange> ReceivedTextView::KeptTimes() const {
  if (Ring() == nullptr || Ring()->FirstLine() == Ring()->EndLine()) return std::nullopt;
  const auto text = [&](std::uint64_t line) {
    return QString::fromStdString(ClockText(Ring()->TimeOf(line)));
  };
  return TimeRange{text(Ring()->FirstLine()), text(Ring()->EndLine() - 1)};
}

void ReceivedTextView::MakeVisible(const TextSpan& span) {
  SetFollowing(false);
  map_.Update(*Ring());
  const std::uint64_t line = span.begin.line;
  if (!map_.Shows(line)) SetErrorsOnly(false);
  const LineRows rows(Ring()->Line(line), format_);
  const LineRows::Place begin = rows.PlaceOf(span.begin.byte);
  const std::uint64_t row = map_.RowOf(line) + begin.row;
  const std::uint64_t visible = VisibleRows();
  if (row < top_ || row >= top_ + visible) top_ = row - std::min(row - map_.FirstRow(), visible / 2);
  AdjustBars();
  const LineRows::Place end = rows.PlaceOf(span.end.byte);
  ScrollSideways(static_cast<int>(begin.cell),
                 static_cast<int>(end.row == begin.row ? end.cell : begin.cell));
  UpdateAll();
}

void ReceivedTextView::ScrollSideways(int begin, int end) {
  const auto columns = static_cast<int>(VisibleCells());
  QScrollBar* bar = horizontalScrollBar();
  if (end > bar->value() + columns) bar->setValue(end - columns + columns / 4);
  if (begin < bar->value()) bar->setValue(begin);
}

}  // namespace quarlin
