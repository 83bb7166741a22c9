// The received-text display: a window onto the control's ring of lines. It paints the lines that are
// visible and keeps no text of its own, so what scrolls by unseen costs nothing and switching the view
// converts nothing.
//
// While its end is visible the view follows the traffic; scrolled up, or paused, it stays on its lines
// until they leave the ring, and a strip below says how to get back.
#pragma once

#include <QAbstractScrollArea>
#include <QBasicTimer>
#include <QByteArray>
#include <QPoint>
#include <QString>
#include <cstdint>
#include <memory>
#include <optional>

#include "display/display_controls.h"
#include "ui/qt/row_text.h"
#include "ui/qt/text_selection.h"

class QPushButton;

namespace quarlin {

class RowPainter;

class ReceivedTextView : public QAbstractScrollArea {
  Q_OBJECT

 public:
  explicit ReceivedTextView(QWidget* parent = nullptr);
  ~ReceivedTextView() override;

  // Gives the view its control, which outlives it or is replaced by another Show.
  void Show(DisplayText& display);

  // To be called when the control has changed, at most once a frame.
  void Refresh();

  // A paused view stays where it is, also at the end; going on jumps to the end.
  bool Paused() const { return paused_; }
  void SetPaused(bool paused);

  // What an empty display says, in the middle; may be empty.
  void SetHint(const QString& hint);

  // Time stamps before the lines, lines as hex pairs, pictures for the line ends. Each drops the selection.
  bool ShowsTimes() const { return format_.times; }
  void SetShowsTimes(bool shows);
  bool HexView() const { return format_.hex; }
  void SetHexView(bool hex);
  bool ShowsLineEnds() const { return format_.lineEnds; }
  void SetShowsLineEnds(bool shows);

  // Any font, from the next frame on. Each character has a cell of its own, so columns stay straight in a
  // proportional font, too.
  void SetDisplayFont(const QFont& font) { setFont(font); }

  bool Following() const { return following_ && !paused_; }
  void JumpToEnd();  // ends a pause, too

  // Brings a line of the ring into view, selected, and stops following. False when the ring does not keep it.
  bool ShowLine(std::uint64_t line);

  // Looks through the kept lines as they are shown, from the selection (else from the visible lines) on
  // and round the end; selects and shows the next place that matches. False when there is none.
  bool Find(const QString& text, bool backward, bool caseSensitive);

  // The selection as text: control characters as they are, line ends as "\n". Empty without one.
  QString SelectedText() const;
  void SelectAll();
  void Copy();
  void CopyAsHex();

  // While the keyboard is on the line, keys and their control codes are `typed`; Ctrl+Shift+C and V copy and
  // paste, Ctrl+Tab and Shift+Tab leave.
  void SetOnLine(bool onLine) { onLine_ = onLine; }

  // A text of the desktop as bytes, what is none as "?".
  static QByteArray BytesOfText(const QString& text);

 signals:
  void clearRequested();
  void typed(const QByteArray& text);  // keys that are text; Enter is "\r"
  void pasteRequested();
  void pausedChanged(bool paused);
  void showsTimesChanged(bool shows);
  void hexViewChanged(bool hex);

 protected:
  bool event(QEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  void changeEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void timerEvent(QTimerEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  enum class Unit { Character, Word, Line };  // what a drag selects by

  struct Hit {
    TextPosition edge;  // the nearest edge between two cells
    TextPosition cell;  // the cell itself
  };

  const TextRing* Ring() const { return display_ == nullptr ? nullptr : &display_->Ring(); }
  Row RowOf(std::uint64_t line) const { return Row(display_->Ring().Line(line), format_); }

  void PaintHint(QPainter& painter);
  void AdjustBars();
  void AdjustHorizontalBar();
  void AdjustVerticalBar();
  void SetFollowing(bool following);
  void UpdateStrip();
  void PlaceStrip();
  void SetFormat(RowFormat format);
  void MakeVisible(const TextSpan& span);
  std::uint64_t VisibleRows() const;  // that are whole, at least 1
  int VisibleColumns() const;

  std::optional<Hit> HitAt(QPoint point) const;
  TextSpan UnitAt(const Hit& hit) const;
  void StartSelection(QPoint point, Unit unit);
  void ExtendSelection(QPoint point);
  void AutoScroll();
  void EndDrag();
  void Type(const QString& text);
  bool IsOurs(const QKeyEvent& event) const;

  DisplayText* display_ = nullptr;
  std::unique_ptr<RowPainter> painter_;
  QPushButton* strip_;
  QString hint_;
  RowFormat format_;
  TextSelection selection_;

  std::uint64_t top_ = 0;       // the line in the first row
  std::uint64_t barFirst_ = 0;  // the line for which the scroll bar stands at 0
  std::uint64_t shownEnd_ = 0;  // the ring's end when the view was last brought up to date
  bool following_ = true;
  bool paused_ = false;
  bool adjusting_ = false;    // the bars are being moved by us, not by the user
  bool adjustAgain_ = false;  // a bar came or went meanwhile

  bool onLine_ = false;
  bool dragging_ = false;
  Unit dragUnit_ = Unit::Character;
  QPoint dragPoint_;
  QBasicTimer autoScroll_;
  std::uint64_t doubleClickAt_ = 0;  // the event's time in ms; a third click soon after takes the line
};

}  // namespace quarlin
