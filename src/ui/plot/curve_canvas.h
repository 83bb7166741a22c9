// SPDX-License-Identifier: GPL-3.0-or-later
// The plot of some curves over time. Whatever the number of points, it draws only a few for each column of
// pixels, so a frame costs the same for a hundred points and for four million.
//
// Mouse: the wheel zooms at the pointer (with Ctrl only time, with Shift only values; over the numbers of an
// axis only that one), dragging moves, dragging with Shift draws a box to zoom to, a double click fits.
// Keys: arrows and Page Up/Down move, + and - zoom, Home fits, Backspace goes back, F follows, Space pauses,
// C shows the cursors; then 1 and 2 choose one, Ctrl with arrows moves it.
#pragma once

#include <QImage>
#include <QString>
#include <QWidget>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "data/mark.h"
#include "ui/plot/curve_set.h"

namespace quarlin {

class CurveCanvas : public QWidget {
  Q_OBJECT

 public:
  explicit CurveCanvas(QWidget* parent = nullptr);
  ~CurveCanvas() override;

  // The series are looked at until they are replaced by another call. Where all are others than before, they
  // are shown whole again, followed, and not paused.
  void SetCurves(std::vector<CurveLook> looks);
  const std::vector<CurveLook>& Curves() const;

  // Points have come or gone. Drawn with the next frame, at most 30 times a second; nothing happens while
  // nobody sees it.
  void Refresh();
  void DrawNow();  // the same, at once

  // `time` without unit, it is added ("Time (s)", "Time (h:min:s)"); values with theirs, "Weight (kg)".
  void SetAxisTitles(const QString& time, const QString& values, const QString& secondValues = {});
  void SetTimes(PlotTimes times);

  // Drawn are points, lines, or both; lines where both are false.
  void SetPoints(bool points, bool lines);

  // Of the run, as ticks at the time axis; in the order of time. The oldest leave beyond 50,000 of a kind.
  void SetMarks(const std::vector<Mark>& marks);
  void AddMark(const Mark& mark);

  void Fit();
  void Back();
  // Shows so many times as much detail, around the middle or, while following, at the right end.
  void ZoomBy(double factor);

  // The last point stays in sight until the user moves back.
  void SetFollow(bool on);
  bool Following() const;

  // The drawing stands still, and can be looked around in, while the series go on.
  void SetPaused(bool on);
  bool Paused() const;

  // What dragging does without Shift; with it, it does the other.
  void SetDragZooms(bool on);

  // Two lines, and a table with the values there, their difference and the mean between them.
  void SetCursors(bool on);
  bool Cursors() const;
  void SetCursorTimes(double first, double second);
  Span CursorTimes() const;  // the earlier one first

  PlotView View() const;

  // As .png (twice the density of the screen's usual), .svg or .pdf, dark on white whatever the desktop.
  // A sentence where it failed.
  std::optional<QString> ExportPicture(const QString& path);
  QImage Picture();  // the same, for the clipboard

  QSize sizeHint() const override { return {720, 400}; }
  QSize minimumSizeHint() const override { return {240, 160}; }

 signals:
  void PointClicked(int curve, double time);  // the curve's place in SetCurves, and the time of that point
  void MarkClicked(std::uint64_t exchange);
  void CursorsMoved(double from, double to);  // also when they are shown
  void CursorsShown(bool on);
  void FollowChanged(bool on);
  void PausedChanged(bool on);

 protected:
  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void timerEvent(QTimerEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace quarlin
