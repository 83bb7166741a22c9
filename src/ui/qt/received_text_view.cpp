// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/received_text_view.h"

#include <QApplication>
#include <QEvent>
#include <QFontDatabase>
#include <QPaintEvent>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <algorithm>

#include "base/scope_flag.h"
#include "ui/qt/row_painter.h"

namespace quarlin {
namespace {

QPushButton* MakeStrip(QWidget* parent) {
  auto* strip = new QPushButton(QObject::tr("following paused - press End"), parent);
  strip->setObjectName("jumpToEnd");
  strip->setFlat(true);
  strip->setAutoFillBackground(true);
  strip->setFocusPolicy(Qt::NoFocus);  // the End key does the same
  strip->setCursor(Qt::PointingHandCursor);
  strip->hide();
  return strip;
}

}  // namespace

ReceivedTextView::ReceivedTextView(QWidget* parent) : QAbstractScrollArea(parent), strip_(MakeStrip(this)) {
  setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  painter_ = std::make_unique<RowPainter>(font(), palette());
  setAccessibleName(tr("Received text"));
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_InputMethodEnabled);
  viewport()->setBackgroundRole(QPalette::Base);
  viewport()->setCursor(Qt::IBeamCursor);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  horizontalScrollBar()->setSingleStep(4);
  connect(strip_, &QPushButton::clicked, this, &ReceivedTextView::JumpToEnd);
}

ReceivedTextView::~ReceivedTextView() = default;

void ReceivedTextView::Show(DisplayText& display) {
  display_ = &display;
  selection_.Clear();
  SetFollowing(true);
  matchCount_.Restart();
  LayRows();
  UpdateAll();
}

void ReceivedTextView::Refresh() {
  if (Ring() == nullptr) return;
  const std::uint64_t oldTop = top_;
  // Growth below the last row changes nothing that is seen.
  const bool lastRowSeen = shownEnd_ <= oldTop + VisibleRows() + 1;
  const bool wasEmpty = shownEnd_ == barFirst_;
  map_.Update(*Ring());
  AdjustBars();
  selection_.KeepFrom(Ring()->FirstLine());
  const bool hint = wasEmpty || shownEnd_ == barFirst_;
  if (hint) UpdateAll();
  if (!hint && (top_ != oldTop || lastRowSeen)) UpdateText();
  if (matcher_.Usable()) CountMatches();
}

// What text was painted over, and what it will be: mostly lines are short, and what lies beside them costs
// more to clear and to hand to the screen than they do.
void ReceivedTextView::UpdateText() {
  const std::size_t scrolled = static_cast<std::size_t>(horizontalScrollBar()->value());
  const std::size_t cells = std::max(widest_, scrolled) - scrolled + 1;  // one for the end of a selection
  const int right =
      TextLeft() + static_cast<int>(std::min(cells, VisibleCells() + 1)) * painter_->CellWidth();
  viewport()->update(0, 0, std::max(right, paintedTo_), viewport()->height());
  paintedTo_ = right;
}

// Everything else that changes what is seen.
void ReceivedTextView::UpdateAll() {
  paintedTo_ = viewport()->width();
  viewport()->update();
}

void ReceivedTextView::SetPaused(bool paused) {
  if (paused_ == paused) return;
  paused_ = paused;
  if (!paused) following_ = true;
  UpdateStrip();
  AdjustBars();
  UpdateAll();
  emit pausedChanged(paused);
}

void ReceivedTextView::Follow() {
  SetFollowing(true);
  AdjustBars();
  UpdateAll();
}

void ReceivedTextView::JumpToEnd() {
  SetPaused(false);
  Follow();
}

void ReceivedTextView::SetFollowing(bool following) {
  if (following_ == following) return;
  following_ = following;
  UpdateStrip();
}

void ReceivedTextView::SetTimes(TimeColumn times) {
  if (std::exchange(times_, times) == times) return;
  LayRows();
  emit timesChanged(times);
}

void ReceivedTextView::SetHexView(bool hex) {
  if (std::exchange(hex_, hex) == hex) return;
  horizontalScrollBar()->setValue(0);
  LayRows();
  emit hexViewChanged(hex);
}

void ReceivedTextView::SetShowsCodes(bool shows) {
  codes_ = shows;
  LayRows();
}

void ReceivedTextView::SetWraps(bool wraps) {
  wraps_ = wraps;
  LayRows();
}

void ReceivedTextView::SetErrorsOnly(bool only) {
  if (std::exchange(errorsOnly_, only) == only) return;
  LayRows();
  matchCount_.Restart();
  if (matcher_.Usable()) CountMatches();
  emit errorsOnlyChanged(only);
}

RowFormat ReceivedTextView::FormatForWidth() const {
  const std::size_t cells = VisibleCells();
  constexpr std::size_t fewBytes = 8;
  constexpr std::size_t manyBytes = 16;
  constexpr std::size_t narrowest = 16;  // cells; a code is never torn apart
  return {hex_, codes_, wraps_ ? std::max(cells, narrowest) : 0,
          cells >= HexWidth(manyBytes) ? manyBytes : fewBytes};
}

// Lays all rows anew; the line at the top stays there.
void ReceivedTextView::LayRows() {
  if (Ring() == nullptr) return;
  const RowPlace top = map_.PlaceOf(top_);
  format_ = FormatForWidth();
  RowMap::RowsOf rowsOf;
  if (hex_ || wraps_) rowsOf = [format = format_](const TextLine& line) { return RowCount(line, format); };
  map_.Lay(std::move(rowsOf), errorsOnly_);
  map_.Update(*Ring());
  top_ = map_.RowOf(top.line) + top.row;
  AdjustBars();
  UpdateAll();
}

void ReceivedTextView::LayWhenWidthChanged() {
  const bool matters = hex_ || wraps_;
  if (matters && FormatForWidth() != format_) LayRows();
}

std::uint64_t ReceivedTextView::VisibleRows() const {
  return static_cast<std::uint64_t>(std::max(1, viewport()->height() / painter_->RowHeight()));
}

std::size_t ReceivedTextView::TimeCells() const {
  constexpr std::size_t clockCells = 12;  // "12:34:56.789"
  return times_ == TimeColumn::Off ? 0 : clockCells;
}

// The gutter is the time, the direction and a cell between and behind them.
int ReceivedTextView::TextLeft() const {
  const std::size_t cells = TimeCells() + (times_ == TimeColumn::Off ? 2 : 3);
  return RowPainter::margin + static_cast<int>(cells) * painter_->CellWidth();
}

std::size_t ReceivedTextView::VisibleCells() const {
  const int width = viewport()->width() - TextLeft() - RowPainter::margin;
  return static_cast<std::size_t>(std::max(1, width / painter_->CellWidth()));
}

// A bar that comes or goes resizes the viewport from within; then it is done once more.
void ReceivedTextView::AdjustBars() {
  if (Ring() == nullptr) return;
  adjustAgain_ = true;
  if (adjusting_) return;
  const ScopeFlag adjusting(adjusting_);
  constexpr int enough = 3;
  for (int round = 0; adjustAgain_ && round < enough; ++round) {
    adjustAgain_ = false;
    AdjustVerticalBar();
    AdjustHorizontalBar();
  }
}

void ReceivedTextView::AdjustVerticalBar() {
  const std::uint64_t first = map_.FirstRow();
  const std::uint64_t count = map_.EndRow() - first;
  const std::uint64_t rows = VisibleRows();
  const std::uint64_t lastTop = first + (count > rows ? count - rows : 0);
  if (count <= rows && !following_) SetFollowing(true);
  if (Following() && !dragging_) top_ = lastTop;
  top_ = std::clamp(top_, first, lastTop);
  barFirst_ = first;
  shownEnd_ = first + count;

  QScrollBar* bar = verticalScrollBar();
  bar->setPageStep(static_cast<int>(rows));
  bar->setRange(0, static_cast<int>(lastTop - first));
  bar->setValue(static_cast<int>(top_ - first));
}

// The widest line decides among those that are seen, or would be without this bar, so that the bar does
// not hide the very line that it is there for. The range never shrinks below where the user has scrolled.
void ReceivedTextView::AdjustHorizontalBar() {
  const auto mostRows = static_cast<std::uint64_t>(height() / painter_->RowHeight()) + 1;
  const std::uint64_t end = std::min(map_.EndRow(), top_ + mostRows);
  const std::uint64_t room = std::min(mostRows, end - map_.FirstRow());
  const std::uint64_t first = Following() ? end - room : std::max(top_, map_.FirstRow());
  widest_ = first == end ? 0 : WidestOf(first, end);

  QScrollBar* bar = horizontalScrollBar();
  const auto columns = static_cast<int>(VisibleCells());
  const int scrolledTo = end == first || wraps_ ? 0 : bar->value();
  const int most = wraps_ ? 0 : std::max(static_cast<int>(widest_) - columns, scrolledTo);
  bar->setPageStep(columns);
  bar->setRange(0, most);
  // Said outright: left to itself, a bar whose range changes while it is being laid out may stay.
  const auto policy = most > 0 ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff;
  if (horizontalScrollBarPolicy() != policy) setHorizontalScrollBarPolicy(policy);
}

// The widest line of these rows, in cells.
std::size_t ReceivedTextView::WidestOf(std::uint64_t first, std::uint64_t end) {
  std::size_t widest = 0;
  const std::uint64_t endLine = map_.PlaceOf(end - 1).line + 1;
  for (std::uint64_t line = map_.PlaceOf(first).line; line < endLine; ++line) {
    Ring()->Read(line, read_);
    widest = std::max(widest, LineWidth(read_, format_));
  }
  return widest;
}

void ReceivedTextView::scrollContentsBy(int dx, int dy) {
  if (!adjusting_ || dx != 0) UpdateAll();
  if (adjusting_ || Ring() == nullptr) return;
  const QScrollBar* bar = verticalScrollBar();
  if (dy != 0) {
    top_ = barFirst_ + static_cast<std::uint64_t>(bar->value());
    SetFollowing(bar->value() == bar->maximum());
  }
  AdjustBars();
}

void ReceivedTextView::UpdateStrip() {
  const bool shows = !Following();
  strip_->setVisible(shows);
  PlaceStrip();
  setViewportMargins(0, 0, 0, shows ? strip_->height() : 0);
}

void ReceivedTextView::PlaceStrip() {
  const QRect view = viewport()->geometry();
  strip_->setGeometry(view.left(), view.bottom() + 1, view.width(), strip_->fontMetrics().height() + 4);
}

void ReceivedTextView::resizeEvent(QResizeEvent*) {
  PlaceStrip();
  LayWhenWidthChanged();
  AdjustBars();
}

void ReceivedTextView::changeEvent(QEvent* event) {
  QAbstractScrollArea::changeEvent(event);
  const QEvent::Type type = event->type();
  const bool looksChanged =
      type == QEvent::FontChange || type == QEvent::PaletteChange || type == QEvent::StyleChange;
  if (!looksChanged || painter_ == nullptr) return;
  painter_ = std::make_unique<RowPainter>(font(), palette());
  LayRows();
  UpdateAll();
}

void ReceivedTextView::paintEvent(QPaintEvent* event) {
  if (Ring() == nullptr) return;
  QPainter painter(viewport());
  const int rowHeight = painter_->RowHeight();
  const auto firstRow = static_cast<std::uint64_t>(event->rect().top() / rowHeight);
  const auto lastRow = static_cast<std::uint64_t>(event->rect().bottom() / rowHeight);
  PaintRows(painter, top_ + firstRow, std::min(top_ + lastRow + 1, map_.EndRow()));
  painter_->Finish(painter);
  if (map_.EndRow() == map_.FirstRow()) PaintHint(painter);
  if (hasFocus()) {
    painter.setPen(palette().color(QPalette::Highlight));
    painter.drawRect(viewport()->rect().adjusted(0, 0, -1, -1));
  }
}

void ReceivedTextView::SetHint(const QString& hint) {
  hint_ = hint;
  UpdateAll();
}

void ReceivedTextView::PaintHint(QPainter& painter) {
  const bool filtered = Ring()->FirstLine() != Ring()->EndLine();
  painter.setFont(QApplication::font());
  QColor faint = palette().color(QPalette::Text);
  faint.setAlphaF(0.6F);
  painter.setPen(faint);
  painter.drawText(viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap,
                   filtered ? tr("No errors in the lines that are kept") : hint_);
}

void ReceivedTextView::PaintRows(QPainter& painter, std::uint64_t first, std::uint64_t end) {
  for (std::uint64_t row = std::max(first, map_.FirstRow()); row < end;) {
    const RowPlace place = map_.PlaceOf(row);
    Ring()->Read(place.line, read_);
    const LineRows rows(read_, format_);
    // The ring may have moved since the last frame; what has left it stays blank until the next one.
    if (!read_.runs.empty()) PaintLine(painter, rows, place, row);
    row += std::max<std::size_t>(rows.Count(), place.row + 1) - place.row;
  }
}

// The rows of the line in `read_`, from the place on, which is the view's row `row`.
void ReceivedTextView::PaintLine(QPainter& painter, const LineRows& rows, RowPlace place, std::uint64_t row) {
  matcher_.Find(read_, matches_);
  const RowPainter::Marked marked{selection_.BytesOf(place.line), matches_};
  RowPainter::Frame frame{TextLeft(), 0, static_cast<std::size_t>(horizontalScrollBar()->value()),
                          VisibleCells() + 1};
  for (std::size_t part = place.row; part < rows.Count(); ++part, ++row) {
    frame.top = static_cast<int>(row - top_) * painter_->RowHeight();
    if (frame.top >= viewport()->height()) return;
    if (part == 0) {
      painter_->PaintGutter(read_, TimeColumnText(read_, times_, TimeBefore(place.line)), TimeCells(),
                            frame.top);
    }
    painter_->PaintRow(painter, read_, rows, part, marked, frame);
  }
}

std::optional<LocalTime> ReceivedTextView::TimeBefore(std::uint64_t line) const {
  if (times_ != TimeColumn::SinceRow || line == 0 || !Ring()->Keeps(line - 1)) return std::nullopt;
  return Ring()->TimeOf(line - 1);
}

}  // namespace quarlin
