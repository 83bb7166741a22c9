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

#include "base/scope_flag.h"
#include "ui/qt/row_painter.h"
#include "ui/qt/text_search.h"

namespace quarlin {
namespace {

QString Shown(const std::string& bytes) {
  return QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

// What to look for in bytes. Nothing when a character can stand in none of them.
std::optional<std::string> Needle(const QString& text) {
  std::string needle;
  for (const QChar character : text) {
    const char16_t code = character.unicode();
    const bool picture = code >= 0x2400 && code < 0x2420;  // copied from a display such as this one
    if (!picture && code > 0xFF) return std::nullopt;
    needle += static_cast<char>(picture ? code - 0x2400 : code);
  }
  if (needle.empty()) return std::nullopt;
  return needle;
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
  AdjustBars();
  viewport()->update();
}

void ReceivedTextView::Refresh() {
  if (Ring() == nullptr) return;
  const std::uint64_t oldTop = top_;
  // Growth below the last row changes nothing that is seen.
  const bool lastLineSeen = shownEnd_ <= oldTop + VisibleRows() + 1;
  AdjustBars();
  selection_.KeepFrom(Ring()->FirstLine());
  if (top_ != oldTop || lastLineSeen) viewport()->update();
}

void ReceivedTextView::SetPaused(bool paused) {
  if (paused_ == paused) return;
  paused_ = paused;
  if (!paused) following_ = true;
  UpdateStrip();
  AdjustBars();
  viewport()->update();
  emit pausedChanged(paused);
}

void ReceivedTextView::JumpToEnd() {
  SetPaused(false);
  SetFollowing(true);
  AdjustBars();
  viewport()->update();
}

void ReceivedTextView::SetFollowing(bool following) {
  if (following_ == following) return;
  following_ = following;
  UpdateStrip();
}

void ReceivedTextView::SetShowsTimes(bool shows) {
  if (format_.times == shows) return;
  SetFormat({shows, format_.hex, format_.lineEnds});
  emit showsTimesChanged(shows);
}

void ReceivedTextView::SetHexView(bool hex) {
  if (format_.hex == hex) return;
  SetFormat({format_.times, hex, format_.lineEnds});
  emit hexViewChanged(hex);
}

void ReceivedTextView::SetShowsLineEnds(bool shows) {
  SetFormat({format_.times, format_.hex, shows});
}

void ReceivedTextView::SetFormat(RowFormat format) {
  if (format == format_) return;
  format_ = format;
  selection_.Clear();  // its columns mean something else from now on
  horizontalScrollBar()->setValue(0);
  AdjustBars();
  viewport()->update();
}

std::uint64_t ReceivedTextView::VisibleRows() const {
  return static_cast<std::uint64_t>(std::max(1, viewport()->height() / painter_->RowHeight()));
}

int ReceivedTextView::VisibleColumns() const {
  return std::max(1, (viewport()->width() - 2 * RowPainter::margin) / painter_->CellWidth());
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
  const std::uint64_t first = Ring()->FirstLine();
  const std::uint64_t count = Ring()->EndLine() - first;
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
  const std::uint64_t end = std::min(Ring()->EndLine(), top_ + mostRows);
  const std::uint64_t room = std::min(mostRows, end - Ring()->FirstLine());
  const std::uint64_t first = Following() ? end - room : std::max(top_, Ring()->FirstLine());
  std::size_t widest = 0;
  for (std::uint64_t line = first; line < end; ++line) widest = std::max(widest, RowOf(line).Length());

  QScrollBar* bar = horizontalScrollBar();
  const int columns = VisibleColumns();
  const int scrolledTo = end == first ? 0 : bar->value();
  const int most = std::max(static_cast<int>(widest) - columns, scrolledTo);
  bar->setPageStep(columns);
  bar->setRange(0, most);
  // Said outright: left to itself, a bar whose range changes while it is being laid out may stay.
  const auto policy = most > 0 ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff;
  if (horizontalScrollBarPolicy() != policy) setHorizontalScrollBarPolicy(policy);
}

void ReceivedTextView::scrollContentsBy(int, int dy) {
  viewport()->update();
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
  AdjustBars();
}

void ReceivedTextView::changeEvent(QEvent* event) {
  QAbstractScrollArea::changeEvent(event);
  const QEvent::Type type = event->type();
  const bool looksChanged =
      type == QEvent::FontChange || type == QEvent::PaletteChange || type == QEvent::StyleChange;
  if (!looksChanged || painter_ == nullptr) return;
  painter_ = std::make_unique<RowPainter>(font(), palette());
  AdjustBars();
  viewport()->update();
}

void ReceivedTextView::paintEvent(QPaintEvent* event) {
  if (Ring() == nullptr) return;
  QPainter painter(viewport());
  const int rowHeight = painter_->RowHeight();
  const RowPainter::Columns columns{horizontalScrollBar()->value(), VisibleColumns() + 1};
  const auto firstRow = static_cast<std::uint64_t>(event->rect().top() / rowHeight);
  const auto lastRow = static_cast<std::uint64_t>(event->rect().bottom() / rowHeight);
  // The ring may have moved since the last frame; what has left it stays blank until the next one.
  const std::uint64_t first = std::max(top_ + firstRow, Ring()->FirstLine());
  const std::uint64_t end = std::min(top_ + lastRow + 1, Ring()->EndLine());
  for (std::uint64_t line = first; line < end; ++line) {
    const int y = static_cast<int>(line - top_) * rowHeight;
    painter_->PaintRow(painter, RowOf(line), selection_.CellsOf(line), y, columns);
  }
  painter_->Finish(painter);
  if (Ring()->FirstLine() == Ring()->EndLine()) PaintHint(painter);
  if (hasFocus()) {
    painter.setPen(palette().color(QPalette::Highlight));
    painter.drawRect(viewport()->rect().adjusted(0, 0, -1, -1));
  }
}

void ReceivedTextView::SetHint(const QString& hint) {
  hint_ = hint;
  viewport()->update();
}

void ReceivedTextView::PaintHint(QPainter& painter) {
  painter.setFont(QApplication::font());
  painter.setPen(palette().color(QPalette::PlaceholderText));
  painter.drawText(viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap, hint_);
}

bool ReceivedTextView::Find(const QString& text, bool backward, bool caseSensitive) {
  const auto needle = Needle(text);
  if (Ring() == nullptr || !needle) return false;
  const auto direction = backward ? SearchDirection::Backward : SearchDirection::Forward;
  const TextQuery query{*needle, direction, caseSensitive};

  TextSpan from{{top_, 0}, {top_ + VisibleRows(), 0}};
  selection_.KeepFrom(Ring()->FirstLine());
  if (!selection_.Empty()) {
    from = selection_.Span();
    // A match is passed over; anything else that is selected may hold or begin one.
    if (Matches(*Ring(), format_, query, from)) std::swap(from.begin, from.end);
  }
  const auto match = FindText(*Ring(), format_, query, backward ? from.end : from.begin);
  if (!match) return false;
  selection_.Start(*match);
  MakeVisible(*match);
  return true;
}

bool ReceivedTextView::ShowLine(std::uint64_t line) {
  if (Ring() == nullptr || line < Ring()->FirstLine() || line >= Ring()->EndLine()) return false;
  const TextSpan span{{line, 0}, {line, RowOf(line).Length()}};
  selection_.Start(span);
  MakeVisible(span);
  return true;
}

void ReceivedTextView::MakeVisible(const TextSpan& span) {
  SetFollowing(false);
  const std::uint64_t rows = VisibleRows();
  const std::uint64_t line = span.begin.line;
  if (line < top_ || line >= top_ + rows) top_ = line - std::min(line - Ring()->FirstLine(), rows / 2);
  AdjustBars();
  const int columns = VisibleColumns();
  QScrollBar* bar = horizontalScrollBar();
  const auto begin = static_cast<int>(span.begin.column);
  const auto end = static_cast<int>(span.end.column);
  if (end > bar->value() + columns) bar->setValue(end - columns + columns / 4);
  if (begin < bar->value()) bar->setValue(begin);
  viewport()->update();
}

QString ReceivedTextView::SelectedText() const {
  return Ring() == nullptr ? QString() : Shown(quarlin::SelectedText(*Ring(), format_, selection_));
}

void ReceivedTextView::SelectAll() {
  if (Ring() == nullptr) return;
  selection_.Start(WholeText(*Ring(), format_));
  viewport()->update();
}

void ReceivedTextView::Copy() {
  if (!selection_.Empty()) QGuiApplication::clipboard()->setText(SelectedText());
}

void ReceivedTextView::CopyAsHex() {
  if (selection_.Empty()) return;
  QGuiApplication::clipboard()->setText(Shown(SelectedHex(*Ring(), format_, selection_)));
}

}  // namespace quarlin
