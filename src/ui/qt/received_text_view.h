// SPDX-License-Identifier: GPL-3.0-or-later
// The received-text display: a window onto the control's ring of lines. It paints the rows that are visible
// and keeps no text of its own, so what scrolls by unseen costs nothing and switching the view converts
// nothing. To the left of the text a gutter tells the time and the direction of each line.
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
#include <filesystem>
#include <memory>
#include <optional>
#include <system_error>
#include <vector>

#include "display/display_controls.h"
#include "display/row_map.h"
#include "ui/qt/row_text.h"
#include "ui/qt/text_search.h"
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

  // What stands in the time column, lines as hex, control codes by their names, long lines in several rows.
  // The lines in view stay in view, and what is selected stays selected.
  TimeColumn Times() const { return times_; }
  void SetTimes(TimeColumn times);
  bool HexView() const { return hex_; }
  void SetHexView(bool hex);
  bool ShowsCodes() const { return codes_; }
  void SetShowsCodes(bool shows);
  bool Wraps() const { return wraps_; }
  void SetWraps(bool wraps);

  // Only lines that tell errors, each with the exchange before it.
  bool ErrorsOnly() const { return errorsOnly_; }
  void SetErrorsOnly(bool only);

  // Any font, from the next frame on. Each character has a cell of its own, so columns stay straight in a
  // proportional font, too.
  void SetDisplayFont(const QFont& font) { setFont(font); }

  bool Following() const { return following_ && !paused_; }
  void Follow();     // from its end on, once a pause has ended
  void JumpToEnd();  // ends a pause, too

  // Brings a line of the ring into view, selected, and stops following; where only errors are shown and it is
  // none of them, all lines are shown again. False when the ring does not keep it.
  bool ShowLine(std::uint64_t line);

  // The same for the line that came nearest to a time of day. False when none is kept from then.
  bool ShowTime(Duration timeOfDay);

  struct TimeRange {
    QString first;
    QString last;
  };
  // The times of the first and the last kept line, "19:04:14.776"; nothing for an empty display.
  std::optional<TimeRange> KeptTimes() const;

  // What is looked for from now on: its places are marked, and counted while the window lives on.
  void SetSearch(const TextQuery& query);

  // Goes from the selection (else from the visible lines) on and round the end; selects and shows the next
  // place that matches. False when there is none.
  bool FindNext(SearchDirection direction);

  struct SearchState {
    QString error;             // why nothing can be found, for the user
    std::uint64_t count = 0;   // places in the kept lines
    std::uint64_t number = 0;  // of the one that is selected, from 1; 0 for none
    bool counted = true;       // all lines have been looked at
    bool operator==(const SearchState&) const = default;
  };
  const SearchState& Search() const { return search_; }

  // The selection as text: control characters as they are, line ends as "\n". Empty without one.
  QString SelectedText() const;
  std::string SelectedBytes() const;  // bytes of the wire only
  bool HasSelection() const { return !selection_.Empty(); }
  void SelectAll();
  void Copy();
  void CopyAsShown();  // the whole lines that it touches, with time, direction and the names of codes
  void CopyAsHex();    // bytes of the wire only

  // Writes all lines, only those with errors where only they are shown, as they are shown, in UTF-8. The file
  // is replaced as a whole or left as it was; `lines` counts what was written.
  std::error_code Save(const std::filesystem::path& file, std::uint64_t& lines) const;

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
  void timesChanged(TimeColumn times);
  void hexViewChanged(bool hex);
  void errorsOnlyChanged(bool only);
  void searchChanged();

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
    TextPosition edge;  // the nearest edge between two bytes
    TextPosition byte;  // the byte itself
  };

  const TextRing* Ring() const { return display_ == nullptr ? nullptr : &display_->Ring(); }
  std::optional<LocalTime> TimeBefore(std::uint64_t line) const;
  QString ShownText(std::uint64_t line) const;

  void PaintHint(QPainter& painter);
  void AdjustBars();
  void AdjustHorizontalBar();
  void AdjustVerticalBar();
  void SetFollowing(bool following);
  void UpdateStrip();
  void PlaceStrip();
  void UpdateText();
  void UpdateAll();
  void LayRows();
  void LayWhenWidthChanged();
  RowFormat FormatForWidth() const;
  void PaintRows(QPainter& painter, std::uint64_t first, std::uint64_t end);
  void PaintLine(QPainter& painter, const LineRows& rows, RowPlace place, std::uint64_t row);
  std::size_t WidestOf(std::uint64_t first, std::uint64_t end);
  void ScrollSideways(int begin, int end);
  void MakeVisible(const TextSpan& span);
  std::uint64_t VisibleRows() const;  // that are whole, at least 1
  std::size_t TimeCells() const;
  int TextLeft() const;
  std::size_t VisibleCells() const;  // of the text
  void CountMatches();
  void ShowSearch(SearchState state);

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
  TimeColumn times_ = TimeColumn::Off;
  bool hex_ = false;
  bool codes_ = false;
  bool wraps_ = false;
  bool errorsOnly_ = false;
  RowFormat format_;  // what follows from these and the width
  RowMap map_;
  TextSelection selection_;

  TextLine read_;  // memory that is used again, as matches_ is
  std::vector<ByteRange> matches_;
  TextMatcher matcher_;
  MatchCount matchCount_;
  SearchState search_;
  QBasicTimer countOn_;  // while lines are left to be looked at

  std::uint64_t top_ = 0;       // the first row
  std::uint64_t barFirst_ = 0;  // the row for which the scroll bar stands at 0
  std::size_t widest_ = 0;      // cells of the widest line that is seen
  int paintedTo_ = 0;           // text was painted to the left of this alone
  std::uint64_t shownEnd_ = 0;  // behind the last row when the view was last brought up to date
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
