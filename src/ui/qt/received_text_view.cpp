#include "ui/qt/received_text_view.h"

#include <QApplication>
#include <QClipboard>
#include <QEvent>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QPaintEvent>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <algorithm>

#include "base/files.h"
#include "base/scope_flag.h"
#include "display/line_times.h"
#include "ui/qt/row_painter.h"
#include "ui/qt/text_search.h"

namespace quarlin {
namespace {

// Of the time that a search may take: a key's patience, and a part of a frame.
constexpr std::chrono::seconds searchPatience(2);
constexpr std::chrono::milliseconds countBudget(4);

QString TextOf(const std::string& bytes) {
  return QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

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

void ReceivedTextView::JumpToEnd() {
  SetPaused(false);
  SetFollowing(true);
  AdjustBars();
  UpdateAll();
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
  const auto mostRows = static_cast<std::uint64_t>(height() / painter_->RowHeight() + 1);
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

void ReceivedTextView::SetSearch(const TextQuery& query) {
  matcher_ = TextMatcher(query);
  matchCount_.Restart();
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

QString ReceivedTextView::SelectedText() const {
  return Ring() == nullptr ? QString() : TextOf(quarlin::SelectedText(*Ring(), map_, selection_));
}

void ReceivedTextView::SelectAll() {
  if (Ring() == nullptr) return;
  selection_.Start(WholeText(*Ring()));
  UpdateAll();
}

void ReceivedTextView::Copy() {
  if (!selection_.Empty()) QGuiApplication::clipboard()->setText(SelectedText());
}

void ReceivedTextView::CopyAsShown() {
  if (selection_.Empty()) return;
  const std::uint64_t first = std::max(selection_.Span().begin.line, Ring()->FirstLine());
  const std::uint64_t end = std::min(selection_.Span().end.line + 1, Ring()->EndLine());
  QString text;
  for (std::uint64_t line = first; line < end; ++line) {
    if (map_.Shows(line)) text += ShownText(line) + QChar('\n');
  }
  QGuiApplication::clipboard()->setText(text);
}

void ReceivedTextView::CopyAsHex() {
  if (selection_.Empty()) return;
  QGuiApplication::clipboard()->setText(TextOf(SelectedHex(*Ring(), map_, selection_)));
}

std::error_code ReceivedTextView::Save(const std::filesystem::path& file, std::uint64_t& lines) const {
  constexpr qsizetype pieceSize = 65'536;
  return WriteWholeFile(file, [&](const TakePiece& take) {
    lines = 0;
    QByteArray piece;
    for (std::uint64_t line = Ring()->FirstLine(); line < Ring()->EndLine(); ++line) {
      if (!map_.Shows(line)) continue;
      piece += ShownText(line).toUtf8() + '\n';
      ++lines;
      if (piece.size() < pieceSize) continue;
      if (!take({piece.data(), static_cast<std::size_t>(piece.size())})) return;
      piece.clear();
    }
    take({piece.data(), static_cast<std::size_t>(piece.size())});
  });
}

QString ReceivedTextView::ShownText(std::uint64_t line) const {
  return Ring() == nullptr ? QString() : ShownLine(Ring()->Line(line), format_, times_, TimeBefore(line));
}

}  // namespace quarlin
