// SPDX-License-Identifier: GPL-3.0-or-later
// Where the plot looks: by hand, or following what comes. What was in sight before can be gone back to.
#pragma once

#include <optional>
#include <vector>

#include "ui/plot/curve_set.h"
#include "ui/plot/plot_span.h"

namespace quarlin {

enum class ZoomAxes { Both, Time, Values };

class Viewport {
 public:
  explicit Viewport(const CurveSet& curves) : curves_(curves) {}

  const PlotView& View() const { return state_.view; }

  // While it follows, the last point stays in sight: with all points before it until time was zoomed, else
  // with as much time as was in sight. The values keep in sight too until they were moved or zoomed.
  bool Following() const { return state_.following; }
  void SetFollow(bool on);

  // Points have come, gone or been replaced.
  void Keep();

  // All points in sight.
  void Fit();

  // `time` and `height` say where, as shares of what is in sight: 0 left or bottom, 1 right or top. Following
  // ends where the last point leaves the sight; while it goes on, `Both` leaves values to it that it keeps in
  // sight.
  void Zoom(double factor, ZoomAxes axes, double time, double height);
  // The part of what is in sight between these shares.
  void ZoomTo(Span time, Span height);
  // By shares of what is in sight. Following ends where time is moved back.
  void Move(double time, double height);
  // As at the beginning: follows, with all points in sight, and remembers nothing.
  void Reset();

  // Remembers what is in sight, for Back(). To be called before each thing the user does.
  void Remember();
  // False where there is nothing to go back to.
  bool Back();

 private:
  struct State {
    PlotView view;
    bool following = true;
    bool all = true;     // while following: with all points before the last
    bool values = true;  // while following: values are kept in sight
    bool operator==(const State&) const = default;
  };

  void KeepTime(const Span& times);
  void KeepValues(Span& shown, bool secondAxis) const;
  void FitValues();
  bool LastPointInSight() const;

  const CurveSet& curves_;
  State state_;
  std::vector<State> before_;  // the oldest first
};

}  // namespace quarlin
