// SPDX-License-Identifier: GPL-3.0-or-later
// Whether the instrument holds the line back. A driver takes what is written and keeps it, without a word,
// for as long as flow control forbids to send; so while something waits there it is looked at now and then.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "controls/event_loop.h"
#include "link/device.h"

namespace quarlin {

enum class Hold { None, Cts, Xoff };

// "the instrument holds the line: CTS is off"; empty for none.
std::string_view InWords(Hold hold);

class FlowWatch {
 public:
  static constexpr Duration interval = std::chrono::milliseconds(500);  // of the looks

  // `changed` is called from the event loop, or from Look, when By is another.
  FlowWatch(EventLoop& loop, std::function<void()> changed);

  // The device must live until Closed. Without flow control nothing is ever looked at.
  void Opened(Device& device, const SerialSettings& settings);
  void Closed();

  // The driver was offered something and took so many bytes of it.
  void Wrote(std::size_t bytes);

  // For whoever waits, since no alarm fires meanwhile; at most once an interval.
  void Look();

  // Who holds the line. CTS is seen, once nothing has left for an interval. XOFF shows in nothing but that:
  // so it is what is left as the reason when, beyond the interval, all that waits could have left.
  Hold By() const { return by_; }

 private:
  Hold Judge(std::size_t unsent, bool waits) const;
  bool CtsIsOff() const;

  EventLoop& loop_;
  std::function<void()> changed_;
  Alarm alarm_;
  Device* device_ = nullptr;  // while it has flow control
  SerialSettings settings_;
  std::uint64_t handedOver_ = 0;  // bytes since the opening
  std::uint64_t left_ = 0;        // of them, at the last look
  Instant still_{};               // since when nothing has left
  Hold by_ = Hold::None;
};

}  // namespace quarlin
