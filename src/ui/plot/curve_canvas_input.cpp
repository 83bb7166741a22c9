// SPDX-License-Identifier: GPL-3.0-or-later
// Mouse and keys of the plot.
#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <algorithm>
#include <cmath>

#include "ui/plot/curve_canvas_parts.h"

namespace quarlin {

namespace {

constexpr double hitRadius = 7;  // pixels
constexpr double keyZoom = 1.25;

ZoomAxes AxesOf(Qt::KeyboardModifiers modifiers, ZoomAxes place) {
  if (modifiers.testFlag(Qt::ControlModifier)) return ZoomAxes::Time;
  if (modifiers.testFlag(Qt::ShiftModifier)) return ZoomAxes::Values;
  return place;
}

}  // namespace

void CurveCanvas::wheelEvent(QWheelEvent* event) {
  parts_->Wheel(*event);
  event->accept();
}

void CurveCanvas::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton || event->button() == Qt::MiddleButton) parts_->StartDrag(*event);
}

void CurveCanvas::mouseMoveEvent(QMouseEvent* event) {
  parts_->drag == Parts::Drag::None ? parts_->ShowPointer(event->position())
                                    : parts_->DragTo(event->position());
}

void CurveCanvas::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton || event->button() == Qt::MiddleButton) parts_->EndDrag();
}

void CurveCanvas::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && !parts_->CursorAt(event->position())) Fit();
}

void CurveCanvas::keyPressEvent(QKeyEvent* event) {
  if (!parts_->Key(*event)) QWidget::keyPressEvent(event);
}

// Where things are

QPointF CurveCanvas::Parts::Shares(QPointF at) const {
  const QRectF area = surface->Area();
  return {std::clamp((at.x() - area.left()) / std::max(1.0, area.width()), 0.0, 1.0),
          std::clamp((area.bottom() - at.y()) / std::max(1.0, area.height()), 0.0, 1.0)};
}

ZoomAxes CurveCanvas::Parts::AxesAt(QPointF at) const {
  const QRectF area = surface->Area();
  if (at.y() > area.bottom() && at.x() >= area.left() && at.x() <= area.right()) return ZoomAxes::Time;
  if (at.x() < area.left() || at.x() > area.right()) return ZoomAxes::Values;
  return ZoomAxes::Both;
}

double CurveCanvas::Parts::TimeAt(double x) const {
  return surface->xAxis->pixelToCoord(x);
}

std::optional<std::size_t> CurveCanvas::Parts::CursorAt(QPointF at) const {
  const CursorPair& cursors = surface->Overlay().cursors;
  if (!cursors.shown || AxesAt(at) != ZoomAxes::Both) return {};
  for (const std::size_t index : {cursors.chosen, 1 - cursors.chosen})
    if (std::abs(surface->xAxis->coordToPixel(cursors.times[index]) - at.x()) < hitRadius) return index;
  return {};
}

std::optional<Mark> CurveCanvas::Parts::MarkAt(QPointF at) const {
  const QRect area = surface->Area();
  if (at.y() < area.bottom() - MarkTicks::height || at.y() > area.bottom() + 2) return {};
  return marks.Nearest({TimeAt(at.x() - hitRadius), TimeAt(at.x() + hitRadius)});
}

std::optional<CurveCanvas::Parts::Hit> CurveCanvas::Parts::PointAt(QPointF at) const {
  const Span time{TimeAt(at.x() - hitRadius), TimeAt(at.x() + hitRadius)};
  std::optional<Hit> nearest;
  double distance = hitRadius;
  for (std::size_t i = 0; i < curves.Looks().size(); ++i) {
    const CurveLook& look = curves.Looks()[i];
    if (!look.visible) continue;
    const QCPAxis& values = look.secondAxis ? *surface->yAxis2 : *surface->yAxis;
    for (const Point& point :
         look.series->Points(look.series->IndexAt(time.from), look.series->IndexAt(time.to))) {
      const double away = std::hypot(surface->xAxis->coordToPixel(point.time) - at.x(),
                                     values.coordToPixel(point.value) - at.y());
      if (!(away < distance)) continue;
      distance = away;
      nearest = {static_cast<int>(i), point};
    }
  }
  return nearest;
}

// Mouse

void CurveCanvas::Parts::StartDrag(const QMouseEvent& event) {
  dragStart = dragAt = event.position();
  dragged = false;
  dragAxes = AxesAt(dragStart);
  const auto cursor = CursorAt(dragStart);
  if (cursor && event.button() == Qt::LeftButton) {
    drag = Drag::Cursor;
    draggedCursor = Cursors().chosen = *cursor;
    surface->DrawOverlay();
    return;
  }
  const bool shifted = event.modifiers().testFlag(Qt::ShiftModifier);
  const bool zooms = event.button() == Qt::LeftButton && dragZooms != shifted && dragAxes == ZoomAxes::Both;
  drag = zooms ? Drag::Box : Drag::Move;
}

void CurveCanvas::Parts::DragTo(QPointF at) {
  if (!dragged) {
    if ((at - dragStart).manhattanLength() < QApplication::startDragDistance()) return;
    dragged = true;
    if (drag == Drag::Move) viewport.Remember();
  }
  const QRectF area = surface->Area();
  const QPointF way((at.x() - dragAt.x()) / std::max(1.0, area.width()),
                    (at.y() - dragAt.y()) / std::max(1.0, area.height()));
  dragAt = at;
  if (drag == Drag::Cursor) {
    MoveCursor(draggedCursor, TimeAt(std::clamp(at.x(), area.left(), area.right())));
  } else if (drag == Drag::Box) {
    surface->Overlay().box = QRectF(dragStart, at).normalized().toRect();
    surface->DrawOverlay();
  } else {
    widget.setCursor(Qt::ClosedHandCursor);
    LookOn([&] {
      viewport.Move(dragAxes == ZoomAxes::Values ? 0 : -way.x(), dragAxes == ZoomAxes::Time ? 0 : way.y());
    });
  }
}

void CurveCanvas::Parts::EndDrag() {
  if (drag == Drag::None) return;  // the end of a double click
  const Drag ended = drag;
  drag = Drag::None;
  surface->Overlay().box.reset();
  if (!dragged) {
    if (ended != Drag::Cursor) Click(dragAt);
  } else if (ended == Drag::Box) {
    const QPointF one = Shares(dragStart);
    const QPointF other = Shares(dragAt);
    const auto [left, right] = std::minmax({one.x(), other.x()});
    const auto [low, high] = std::minmax({one.y(), other.y()});
    const Span time{left, right};
    const Span height{low, high};
    if (time.Size() > 0 && height.Size() > 0) Look([&] { viewport.ZoomTo(time, height); });
  }
  surface->DrawOverlay();
  ShowPointer(dragAt);
}

void CurveCanvas::Parts::Click(QPointF at) {
  if (const auto mark = MarkAt(at)) {
    emit widget.MarkClicked(mark->exchange);
  } else if (const auto hit = PointAt(at)) {
    emit widget.PointClicked(hit->curve, hit->point.time);
  }
}

QString CurveCanvas::Parts::ToolTipAt(QPointF at) const {
  const PlotView& view = viewport.View();
  const auto timeText = [&](double time) {
    const QString text = TimeText(time, surface->Times(), view.time, ReadingStep(view.time));
    return surface->Times() == PlotTimes::Rows ? tr("row %1").arg(text)
                                               : text + " " + TimeUnit(surface->Times(), view.time);
  };
  if (const auto mark = MarkAt(at))
    return (mark->kind == MarkKind::TimeOut ? tr("time-out") : tr("wrong answer")) + ", " +
           timeText(mark->time);
  const auto hit = PointAt(at);
  if (!hit) return {};
  const CurveLook& look = curves.Looks()[static_cast<std::size_t>(hit->curve)];
  const Span& values = look.secondAxis ? view.secondValues : view.values;
  return look.title + ": " + ReadingText(hit->point.value, ReadingStep(values)) + ", " +
         timeText(hit->point.time);
}

// Steps that follow each other soon are gone back over at once.
void CurveCanvas::Parts::Wheel(const QWheelEvent& event) {
  constexpr quint64 soon = 700;  // ms
  if (!lastWheel || event.timestamp() - *lastWheel > soon) viewport.Remember();
  lastWheel = event.timestamp();
  const double notches = event.angleDelta().y() / 120.0;
  const double sideways = event.angleDelta().x() / 120.0;
  const QPointF shares = Shares(event.position());
  const ZoomAxes axes = AxesOf(event.modifiers(), AxesAt(event.position()));
  LookOn([&] {
    if (notches != 0) viewport.Zoom(std::pow(keyZoom, -notches), axes, shares.x(), shares.y());
    if (sideways != 0) viewport.Move(-sideways * 0.1, 0);
  });
}

void CurveCanvas::Parts::ShowPointer(QPointF at) {
  if (CursorAt(at)) return widget.setCursor(Qt::SplitHCursor);
  if (MarkAt(at)) return widget.setCursor(Qt::PointingHandCursor);
  widget.setCursor(dragZooms && AxesAt(at) == ZoomAxes::Both ? Qt::CrossCursor : Qt::ArrowCursor);
}

// Keys

bool CurveCanvas::Parts::Key(const QKeyEvent& event) {
  if (Cursors().shown && CursorKey(event)) return true;
  constexpr double step = 0.1;
  constexpr double page = 0.9;
  const auto move = [this](double time, double height) { Look([=, this] { viewport.Move(time, height); }); };
  if (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier)) return false;
  switch (event.key()) {
    case Qt::Key_Left:
      move(-step, 0);
      return true;
    case Qt::Key_Right:
      move(step, 0);
      return true;
    case Qt::Key_Up:
      move(0, step);
      return true;
    case Qt::Key_Down:
      move(0, -step);
      return true;
    case Qt::Key_PageUp:
      move(-page, 0);
      return true;
    case Qt::Key_PageDown:
      move(page, 0);
      return true;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
      widget.ZoomBy(keyZoom);
      return true;
    case Qt::Key_Minus:
      widget.ZoomBy(1 / keyZoom);
      return true;
    case Qt::Key_Home:
      widget.Fit();
      return true;
    case Qt::Key_Backspace:
      widget.Back();
      return true;
    case Qt::Key_F:
      widget.SetFollow(!widget.Following());
      return true;
    case Qt::Key_Space:
      widget.SetPaused(!paused);
      return true;
    case Qt::Key_C:
      widget.SetCursors(!Cursors().shown);
      return true;
    default:
      return false;
  }
}

bool CurveCanvas::Parts::CursorKey(const QKeyEvent& event) {
  const bool control = event.modifiers().testFlag(Qt::ControlModifier);
  const int pixels = event.modifiers().testFlag(Qt::ShiftModifier) ? 20 : 1;
  switch (event.key()) {
    case Qt::Key_1:
      Cursors().chosen = 0;
      break;
    case Qt::Key_2:
      Cursors().chosen = 1;
      break;
    case Qt::Key_Left:
      if (!control) return false;
      StepCursor(-1, pixels);
      break;
    case Qt::Key_Right:
      if (!control) return false;
      StepCursor(1, pixels);
      break;
    default:
      return false;
  }
  surface->DrawOverlay();
  return true;
}

}  // namespace quarlin
