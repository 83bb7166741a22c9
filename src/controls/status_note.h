// SPDX-License-Identifier: GPL-3.0-or-later
// The words of the status bar: what was just done, and what runs. Every room that has something to tell is
// handed this one object.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

#include "base/hook.h"
#include "controls/alarms.h"
#include "controls/status_controls.h"

namespace quarlin {

struct StatusMessage {
  LocalTime at;  // of the last time
  std::string text;
  std::uint32_t times = 1;  // in a row
};

class StatusNote {
 public:
  static constexpr std::size_t mostMessages = 200;
  static constexpr Duration shownAtLeast = std::chrono::seconds(5);

  StatusNote(EventLoop& loop, StatusControls& controls);

  // Answers what the user just did, or tells what she must not miss: shown at once, and for 5 s nothing that
  // is only mentioned takes its place.
  void Say(std::string_view text);

  // Tells what happened by itself: shown at once, or when what was said has stood for 5 s; of several that
  // waited, the last one.
  void Mention(std::string_view text);

  // Nothing is shown any more, as after a Connect that mended what was told. The messages stay.
  void Clear();

  // What runs, or what is waited for; empty for nothing. No message.
  void Runs(std::string_view text);
  std::string WhatRuns() const;

  // What was said and mentioned, the oldest first, the last 200. Each change of theirs changes lblStatusNote,
  // or did when it had to wait.
  const std::deque<StatusMessage>& Messages() const { return messages_; }

  // Told of each of them; for a list of them that is on the screen.
  Hook<void()> OnMessage;

 private:
  void Keep(std::string_view text);
  void Show(const StatusMessage& message);
  void ShowWaiting();

  EventLoop& loop_;
  StatusControls& controls_;
  std::deque<StatusMessage> messages_;
  bool mentionWaits_ = false;  // the last message has not been shown yet
  Alarm saidLongEnough_;
};

}  // namespace quarlin
