// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/plot/viewport.h"

#include <algorithm>

namespace quarlin {

namespace {

constexpr std::size_t mostRemembered = 100;
constexpr double timeRoom = 0.01;
constexpr double valueRoom = 0.06;
constexpr double followRoom = 0.02;  // between the last point and the right border
constexpr double nearlyRight = 0.9;  // who zooms here while it follows means the last points

double At(const Span& span, double share) {
  return span.from + span.Size() * share;
}

Span Part(const Span& span, const Span& shares) {
  return {At(span, shares.from), At(span, shares.to)};
}

}  // namespace

void Viewport::SetFollow(bool on) {
  if (on == state_.following) return;
  state_.following = on;
  state_.values = on;
  Keep();
}

void Viewport::Keep() {
  const auto times = curves_.Times();
  if (!state_.following || !times) return;
  KeepTime(*times);
  if (!state_.values) return;
  KeepValues(state_.view.values, false);
  KeepValues(state_.view.secondValues, true);
}

void Viewport::KeepTime(const Span& times) {
  Span& shown = state_.view.time;
  if (state_.all) {
    shown = Around(times.from, times.to, timeRoom);
    return;
  }
  const double size = shown.Size();
  shown.to = times.to + size * followRoom;
  shown.from = shown.to - size;
}

// Grows at once, and shrinks only when much of it has become empty, so that the axis stands still most of the
// time.
void Viewport::KeepValues(Span& shown, bool secondAxis) const {
  constexpr double full = 0.6;
  const Series::Extremes values = curves_.Values(state_.view.time, secondAxis);
  if (values.low > values.high) return;
  const bool inSight = shown.Holds(values.low) && shown.Holds(values.high);
  if (inSight && values.high - values.low > full * shown.Size()) return;
  shown = Around(values.low, values.high, valueRoom);
}

void Viewport::FitValues() {
  for (const bool secondAxis : {false, true}) {
    const Series::Extremes values = curves_.Values(state_.view.time, secondAxis);
    (secondAxis ? state_.view.secondValues : state_.view.values) = Around(values.low, values.high, valueRoom);
  }
}

void Viewport::Fit() {
  state_.all = true;
  state_.values = true;
  if (const auto times = curves_.Times()) {
    state_.view.time = Around(times->from, times->to, timeRoom);
    FitValues();
  }
}

void Viewport::Zoom(double factor, ZoomAxes axes, double time, double height) {
  PlotView& view = state_.view;
  if (axes != ZoomAxes::Values) {
    if (state_.following && time > nearlyRight) time = 1;
    view.time = Zoomed(view.time, At(view.time, time), factor);
    state_.all = false;
    state_.following = state_.following && LastPointInSight();
  }
  const bool kept = axes == ZoomAxes::Both && state_.following && state_.values;
  if (axes != ZoomAxes::Time && !kept) {
    view.values = Zoomed(view.values, At(view.values, height), factor);
    view.secondValues = Zoomed(view.secondValues, At(view.secondValues, height), factor);
    state_.values = false;
  }
}

void Viewport::ZoomTo(Span time, Span height) {
  PlotView& view = state_.view;
  const PlotView wanted{Part(view.time, time), Part(view.values, height), Part(view.secondValues, height)};
  view.time = Around(wanted.time.from, wanted.time.to, 0);
  view.values = Around(wanted.values.from, wanted.values.to, 0);
  view.secondValues = Around(wanted.secondValues.from, wanted.secondValues.to, 0);
  state_.following = state_.all = state_.values = false;
}

void Viewport::Move(double time, double height) {
  PlotView& view = state_.view;
  view.time = Moved(view.time, time);
  if (time < 0) state_.following = false;
  if (time != 0) state_.all = false;
  if (height == 0) return;
  view.values = Moved(view.values, height);
  view.secondValues = Moved(view.secondValues, height);
  state_.values = false;
}

void Viewport::Reset() {
  state_ = {};
  before_.clear();
  Keep();
}

void Viewport::Remember() {
  if (!before_.empty() && before_.back() == state_) return;
  if (before_.size() == mostRemembered) before_.erase(before_.begin());
  before_.push_back(state_);
}

bool Viewport::Back() {
  while (!before_.empty() && before_.back() == state_) before_.pop_back();
  if (before_.empty()) return false;
  state_ = before_.back();
  before_.pop_back();
  Keep();
  return true;
}

bool Viewport::LastPointInSight() const {
  const auto times = curves_.Times();
  return times && state_.view.time.Holds(times->to);
}

}  // namespace quarlin
