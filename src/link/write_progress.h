// SPDX-License-Identifier: GPL-3.0-or-later
// How far a write has come that has to wait.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>

#include "controls/event_loop.h"

namespace quarlin {

class WriteProgress {
 public:
  static constexpr Duration interval = std::chrono::milliseconds(250);

  using Show = std::function<void(std::size_t taken, std::size_t total)>;
  WriteProgress(EventLoop& loop, Show show) : loop_(loop), show_(std::move(show)) {}

  // The write waits, after so many of its bytes. Shown at once, and then once an interval.
  void Tell(std::size_t taken, std::size_t total) {
    if (shown_ && loop_.Now() < *shown_ + interval) return;
    shown_ = loop_.Now();
    show_(taken, total);
  }

  // It has come to an end. Shown, as nothing of nothing, where there was something to show before.
  void End() {
    if (!shown_) return;
    shown_.reset();
    show_(0, 0);
  }

 private:
  EventLoop& loop_;
  Show show_;
  std::optional<Instant> shown_;  // when it was last shown
};

}  // namespace quarlin
