// SPDX-License-Identifier: GPL-3.0-or-later
// What a CurveCanvas is made of.
#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QLabel>
#include <optional>
#include <vector>

#include "ui/plot/cursor_table.h"
#include "ui/plot/curve_canvas.h"
#include "ui/plot/plot_surface.h"
#include "ui/plot/viewport.h"

namespace quarlin {

struct CurveCanvas::Parts {
  explicit Parts(CurveCanvas& canvas);

  // Frames.
  void RequestFrame();
  void DrawFrame();
  bool NothingToSee() const;

  // Something the user does with what is in sight.
  template <typename Action>
  void Look(Action action) {
    viewport.Remember();
    LookOn(action);
  }
  // The same, as a part of what was begun before.
  template <typename Action>
  void LookOn(Action action) {
    const bool followed = viewport.Following();
    action();
    framesUntouched = 0;
    if (viewport.Following() != followed) emit widget.FollowChanged(!followed);
    RequestFrame();
  }

  // Cursors.
  CursorPair& Cursors() { return surface->Overlay().cursors; }
  void MoveCursor(std::size_t index, double time);
  void StepCursor(int direction, int pixels);
  void ShowCursorTable();
  void StartMeans();
  void TakeMeans();
  std::vector<CursorRow> CursorRows() const;

  // Where things are, in pixels of the canvas.
  QPointF Shares(QPointF at) const;  // of the area, from its lower left corner, 0 to 1
  ZoomAxes AxesAt(QPointF at) const;
  double TimeAt(double x) const;
  std::optional<std::size_t> CursorAt(QPointF at) const;
  std::optional<Mark> MarkAt(QPointF at) const;
  struct Hit {
    int curve;
    Point point;
  };
  std::optional<Hit> PointAt(QPointF at) const;

  // Input.
  enum class Drag { None, Move, Box, Cursor };
  void StartDrag(const QMouseEvent& event);
  void DragTo(QPointF at);
  void EndDrag();
  void Click(QPointF at);
  void Wheel(const QWheelEvent& event);
  bool Key(const QKeyEvent& event);
  bool CursorKey(const QKeyEvent& event);
  void ShowPointer(QPointF at);
  QString ToolTipAt(QPointF at) const;

  CurveCanvas& widget;
  CurveSet curves;
  MarkList marks;
  Viewport viewport{curves};
  PlotSurface* surface;  // the widget's children
  QLabel* table;

  QBasicTimer frame;
  QElapsedTimer sinceFrame;
  int framesUntouched = 0;    // since the user last looked around
  qint64 pause = 0;           // ms to leave the window alone after a frame
  std::optional<Span> drawn;  // the times of all points at the last frame
  PlotView drawnView;
  bool dressed = false;  // nothing but points has changed since the last frame
  bool paused = false;

  QBasicTimer rest;                               // of the cursors, before the means are taken
  std::vector<std::optional<MeanBetween>> means;  // of the curve of the same place

  Drag drag = Drag::None;
  bool dragZooms = false;
  bool dragged = false;  // further than a click does
  ZoomAxes dragAxes = ZoomAxes::Both;
  std::size_t draggedCursor = 0;
  QPointF dragStart;
  QPointF dragAt;
  std::optional<quint64> lastWheel;  // ms, by the event's own time
};

}  // namespace quarlin
