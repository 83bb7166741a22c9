// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/status_note.h"

#include <fmt/format.h>

#include <utility>

namespace quarlin {

StatusNote::StatusNote(EventLoop& loop, StatusControls& controls)
    : loop_(loop), controls_(controls), saidLongEnough_(loop, [this] { ShowWaiting(); }) {}

void StatusNote::Say(std::string_view text) {
  Keep(text);
  mentionWaits_ = false;
  saidLongEnough_.At(loop_.Now() + shownAtLeast);
  Show(messages_.back());
}

void StatusNote::Mention(std::string_view text) {
  Keep(text);
  mentionWaits_ = saidLongEnough_.IsSet();
  if (!mentionWaits_) Show(messages_.back());
}

void StatusNote::Clear() {
  saidLongEnough_.Cancel();
  mentionWaits_ = false;
  controls_.lblStatusNote.SetCaption("");
  controls_.lblStatusNote.SetToolTipText("");
}

void StatusNote::Runs(std::string_view text) {
  controls_.lblStatusCycle.SetCaption(text);
}

std::string StatusNote::WhatRuns() const {
  return controls_.lblStatusCycle.Caption();
}

void StatusNote::Keep(std::string_view text) {
  if (!messages_.empty() && messages_.back().text == text) {
    messages_.back().at = loop_.Local();
    ++messages_.back().times;
  } else {
    messages_.push_back({loop_.Local(), std::string(text)});
    if (messages_.size() > mostMessages) messages_.pop_front();
  }
  OnMessage();
}

void StatusNote::Show(const StatusMessage& message) {
  controls_.lblStatusNote.SetCaption(message.text);
  controls_.lblStatusNote.SetToolTipText(fmt::format("{}  {}", DateTimeText(message.at), message.text));
}

void StatusNote::ShowWaiting() {
  if (std::exchange(mentionWaits_, false)) Show(messages_.back());
}

}  // namespace quarlin
