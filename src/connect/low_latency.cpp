// SPDX-License-Identifier: GPL-3.0-or-later
#include "connect/low_latency.h"

#include <fmt/format.h>

namespace quarlin {
namespace {

// "this adapter waits 16 ms: at most 62 exchanges a second"
std::string Limit(int delay) {
  return fmt::format("this adapter waits {} ms: at most {} exchanges a second", delay, 1000 / delay);
}

}  // namespace

LowLatency::LowLatency(Link& link, ConnectionControls& controls, StatusNote& status)
    : link_(link), controls_(controls), status_(status) {
  controls_.chkLowLatency.Click = [this] { chkLowLatency_Click(); };
}

void LowLatency::LinkChanged() {
  if (SerialIsOpen() && controls_.chkLowLatency.Checked() && !Switch()) {
    status_.Mention(fmt::format("{} has no low-latency mode", link_.Target().port));
  }
  ShowDelay();
}

void LowLatency::chkLowLatency_Click() {
  if (!SerialIsOpen()) return;
  const bool switched = Switch();
  ShowDelay();
  if (!switched) {
    status_.Say(fmt::format("{} has no low-latency mode", link_.Target().port));
  } else if (delay_) {
    status_.Say(Limit(*delay_));
  }
}

bool LowLatency::Switch() {
  return !link_.SetLowLatency(controls_.chkLowLatency.Checked());
}

void LowLatency::ShowDelay() {
  const LinkTarget& target = link_.Target();
  delay_ = SerialIsOpen() ? delayOf(target.path.empty() ? target.port : target.path) : std::nullopt;
  controls_.lblLatency.SetCaption(delay_ ? fmt::format("adapter waits {} ms", *delay_) : "");
  controls_.lblLatency.SetToolTipText(delay_ ? Limit(*delay_) : "");
}

void LowLatency::CycleStarts(int interval) {
  if (!delay_ || interval >= *delay_) return;
  const bool canBeShorter = *delay_ > 1 && !controls_.chkLowLatency.Checked();
  status_.Mention(Limit(*delay_) + (canBeShorter ? "; \"Low latency\" shortens that" : ""));
}

}  // namespace quarlin
