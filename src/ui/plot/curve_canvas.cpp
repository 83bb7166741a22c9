// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/plot/curve_canvas.h"

#include <QEvent>
#include <QHelpEvent>
#include <QTimerEvent>
#include <QToolTip>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "ui/plot/curve_canvas_parts.h"
#include "ui/plot/picture_file.h"

namespace quarlin {

namespace {

constexpr qint64 interval = 33;        // ms between two frames
constexpr qint64 steadyInterval = 66;  // once points have come for a second, and nobody looks around
constexpr int framesOfASecond = 30;
constexpr int restTime = 150;  // ms

QLabel* MakeTable(QWidget* parent) {
  auto* table = new QLabel(parent);
  table->setTextFormat(Qt::RichText);
  table->setTextInteractionFlags(Qt::TextSelectableByMouse);
  table->setContentsMargins(8, 2, 8, 4);
  table->setVisible(false);
  return table;
}

// None of `looks` stands among `before`.
bool AreOthers(const std::vector<CurveLook>& looks, const std::vector<CurveLook>& before) {
  return std::none_of(looks.begin(), looks.end(), [&](const CurveLook& look) {
    return std::any_of(before.begin(), before.end(),
                       [&](const CurveLook& old) { return old.series == look.series; });
  });
}

}  // namespace

CurveCanvas::Parts::Parts(CurveCanvas& canvas)
    : widget(canvas), surface(new PlotSurface(curves, marks, &canvas)), table(MakeTable(&canvas)) {
  auto* layout = new QVBoxLayout(&canvas);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(surface, 1);
  layout->addWidget(table);
}

CurveCanvas::CurveCanvas(QWidget* parent) : QWidget(parent), parts_(std::make_unique<Parts>(*this)) {
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  setAccessibleName(tr("Plot"));
  setAccessibleDescription(
      tr("Arrows move, plus and minus zoom, Home shows all, Backspace goes back, F follows, Space pauses, C "
         "shows cursors"));
  parts_->surface->SetColors(PlotColors(palette()));
}

CurveCanvas::~CurveCanvas() = default;

void CurveCanvas::SetCurves(std::vector<CurveLook> looks) {
  const bool others = AreOthers(looks, Curves());
  parts_->curves.Set(std::move(looks));
  if (others) SetPaused(false);
  if (others) parts_->LookOn([this] { parts_->viewport.Reset(); });
  parts_->surface->ReplaceCurves();
  parts_->means.clear();
  parts_->dressed = false;
  parts_->StartMeans();
  parts_->RequestFrame();
}

const std::vector<CurveLook>& CurveCanvas::Curves() const {
  return parts_->curves.Looks();
}

void CurveCanvas::Refresh() {
  if (!parts_->paused) parts_->RequestFrame();
}

void CurveCanvas::DrawNow() {
  parts_->frame.stop();
  parts_->DrawFrame();
}

void CurveCanvas::SetAxisTitles(const QString& time, const QString& values, const QString& secondValues) {
  parts_->surface->SetAxisTitles(time, values, secondValues);
  parts_->dressed = false;
  parts_->RequestFrame();
}

void CurveCanvas::SetTimes(PlotTimes times) {
  parts_->surface->SetTimes(times);
  parts_->dressed = false;
  parts_->RequestFrame();
}

void CurveCanvas::SetPoints(bool points, bool lines) {
  parts_->surface->SetStyle(points, lines);
  parts_->dressed = false;
  parts_->RequestFrame();
}

void CurveCanvas::SetMarks(const std::vector<Mark>& marks) {
  parts_->marks.Clear();
  for (const Mark& mark : marks) parts_->marks.Add(mark);
  parts_->dressed = false;
  parts_->RequestFrame();
}

void CurveCanvas::AddMark(const Mark& mark) {
  parts_->marks.Add(mark);
  parts_->dressed = false;
  Refresh();
}

void CurveCanvas::Fit() {
  parts_->Look([this] { parts_->viewport.Fit(); });
}

void CurveCanvas::Back() {
  parts_->LookOn([this] { parts_->viewport.Back(); });
}

void CurveCanvas::ZoomBy(double factor) {
  const double time = Following() ? 1 : 0.5;
  parts_->Look([&] { parts_->viewport.Zoom(1 / factor, ZoomAxes::Both, time, 0.5); });
}

void CurveCanvas::SetFollow(bool on) {
  parts_->LookOn([&] { parts_->viewport.SetFollow(on); });
}

bool CurveCanvas::Following() const {
  return parts_->viewport.Following();
}

void CurveCanvas::SetPaused(bool on) {
  if (on == parts_->paused) return;
  parts_->paused = on;
  const auto times = parts_->curves.Times();
  parts_->curves.EndAt(on && times ? times->to : CurveSet::forEver);
  parts_->RequestFrame();
  emit PausedChanged(on);
}

bool CurveCanvas::Paused() const {
  return parts_->paused;
}

void CurveCanvas::SetDragZooms(bool on) {
  parts_->dragZooms = on;
}

PlotView CurveCanvas::View() const {
  return parts_->viewport.View();
}

std::optional<QString> CurveCanvas::ExportPicture(const QString& path) {
  return SavePicture(*parts_->surface, View(), parts_->surface->size(), path);
}

QImage CurveCanvas::Picture() {
  return PictureOf(*parts_->surface, View(), parts_->surface->size());
}

// Frames

void CurveCanvas::Parts::RequestFrame() {
  if (frame.isActive() || !widget.isVisible() || widget.window()->isMinimized()) return;
  const qint64 quiet = sinceFrame.isValid() ? sinceFrame.elapsed() : pause;
  frame.start(static_cast<int>(std::max<qint64>(0, pause - quiet)), Qt::PreciseTimer, &widget);
}

void CurveCanvas::Parts::DrawFrame() {
  viewport.Keep();
  if (NothingToSee()) return;
  QElapsedTimer cost;
  cost.start();
  surface->Draw(viewport.View());
  drawn = curves.Times();
  drawnView = viewport.View();
  dressed = true;
  if (Cursors().shown && !rest.isActive()) TakeMeans();  // of a stretch that points still come to
  ShowCursorTable();
  framesUntouched = std::min(framesUntouched + 1, framesOfASecond);
  const qint64 wanted = framesUntouched < framesOfASecond ? interval : steadyInterval;
  pause = std::max(wanted - cost.elapsed(), 9 * cost.elapsed());
  sinceFrame.start();
}

// Points that came beyond the right border change nothing.
bool CurveCanvas::Parts::NothingToSee() const {
  const auto times = curves.Times();
  return dressed && drawnView == viewport.View() && drawn && times && drawn->from == times->from &&
         drawn->to > drawnView.time.to;
}

bool CurveCanvas::event(QEvent* event) {
  if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
    const auto reason = static_cast<QFocusEvent*>(event)->reason();
    parts_->surface->Overlay().focused = event->type() == QEvent::FocusIn && reason != Qt::MouseFocusReason;
    parts_->surface->DrawOverlay();
  }
  if (event->type() == QEvent::ToolTip) {
    const auto* help = static_cast<QHelpEvent*>(event);
    QToolTip::showText(help->globalPos(), parts_->ToolTipAt(help->pos()), this);
    return true;
  }
  return QWidget::event(event);
}

void CurveCanvas::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
    parts_->surface->SetColors(PlotColors(palette()));
    parts_->dressed = false;
    parts_->RequestFrame();
  }
  QWidget::changeEvent(event);
}

void CurveCanvas::showEvent(QShowEvent* event) {
  parts_->DrawFrame();
  QWidget::showEvent(event);
}

void CurveCanvas::resizeEvent(QResizeEvent* event) {
  parts_->dressed = false;
  parts_->RequestFrame();
  QWidget::resizeEvent(event);
}

void CurveCanvas::timerEvent(QTimerEvent* event) {
  if (event->timerId() == parts_->frame.timerId()) {
    parts_->frame.stop();
    parts_->DrawFrame();
  } else if (event->timerId() == parts_->rest.timerId()) {
    parts_->TakeMeans();
  }
}

// Cursors

void CurveCanvas::SetCursors(bool on) {
  CursorPair& cursors = parts_->Cursors();
  if (on == cursors.shown) return;
  cursors.shown = on;
  parts_->table->setVisible(on);
  const Span time = View().time;
  const auto inSight = [&](double at) { return time.Holds(at); };
  if (on && (cursors.times[0] == cursors.times[1] ||
             !std::all_of(cursors.times.begin(), cursors.times.end(), inSight)))
    cursors.times = {time.from + time.Size() / 3, time.from + time.Size() * 2 / 3};
  parts_->surface->DrawOverlay();
  parts_->ShowCursorTable();
  parts_->StartMeans();
  emit CursorsShown(on);
  if (on) emit CursorsMoved(CursorTimes().from, CursorTimes().to);
}

bool CurveCanvas::Cursors() const {
  return parts_->Cursors().shown;
}

void CurveCanvas::SetCursorTimes(double first, double second) {
  parts_->MoveCursor(0, first);
  parts_->MoveCursor(1, second);
}

Span CurveCanvas::CursorTimes() const {
  const auto [first, second] = std::minmax(parts_->Cursors().times[0], parts_->Cursors().times[1]);
  return {first, second};
}

void CurveCanvas::Parts::MoveCursor(std::size_t index, double time) {
  if (Cursors().times[index] == time) return;
  Cursors().times[index] = time;
  means.clear();
  surface->DrawOverlay();
  ShowCursorTable();
  StartMeans();
  const Span times = widget.CursorTimes();
  if (Cursors().shown) emit widget.CursorsMoved(times.from, times.to);
}

void CurveCanvas::Parts::StepCursor(int direction, int pixels) {
  const double time = Cursors().times[Cursors().chosen] + direction * pixels * surface->PixelTime();
  MoveCursor(Cursors().chosen, time);
}

// The means come when the cursors have rested.
void CurveCanvas::Parts::StartMeans() {
  if (Cursors().shown) rest.start(restTime, &widget);
}

void CurveCanvas::Parts::TakeMeans() {
  constexpr std::size_t piece = 200'000;
  const std::vector<CurveLook>& looks = curves.Looks();
  if (means.empty())
    for (const CurveLook& look : looks) means.emplace_back(MeanBetween(*look.series, widget.CursorTimes()));
  bool more = false;
  for (auto& mean : means) more = mean->TakeMore(piece) || more;
  more ? rest.start(0, &widget) : rest.stop();
  if (!more) ShowCursorTable();
}

std::vector<CursorRow> CurveCanvas::Parts::CursorRows() const {
  const PlotView& view = viewport.View();
  const std::array<double, 2>& times = surface->Overlay().cursors.times;
  const auto valueAt = [&](const CurveLook& look, double time) -> std::optional<double> {
    const auto point = curves.Nearest(look, time);
    if (!point || std::isnan(point->value)) return {};
    return point->value;
  };
  std::vector<CursorRow> rows;
  for (std::size_t i = 0; i < curves.Looks().size(); ++i) {
    const CurveLook& look = curves.Looks()[i];
    if (!look.visible) continue;
    const bool hasMean = i < means.size() && means[i] && !rest.isActive();
    rows.push_back({look.title, valueAt(look, times[0]), valueAt(look, times[1]),
                    hasMean ? means[i]->Mean() : std::nullopt,
                    ReadingStep(look.secondAxis ? view.secondValues : view.values)});
  }
  return rows;
}

void CurveCanvas::Parts::ShowCursorTable() {
  if (!Cursors().shown) return;
  const Span times{Cursors().times[0], Cursors().times[1]};
  table->setText(CursorTable(times, surface->Times(), ReadingStep(viewport.View().time), CursorRows()));
}

}  // namespace quarlin
