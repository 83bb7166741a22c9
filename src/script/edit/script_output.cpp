// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/edit/script_output.h"

#include <utility>

namespace quarlin {

ScriptOutput::ScriptOutput(EventLoop& loop) : loop_(loop), frame_(loop, [this] { EndFrame(); }) {}

void ScriptOutput::EndFrame() {
  if (!begun_.empty()) Keep({std::exchange(begun_, {})});
  frame_.Cancel();
  OnNew();
}

void ScriptOutput::Write(std::string_view text) {
  if (!frame_.IsSet()) frame_.At(loop_.Now() + frame);
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    begun_ += text.substr(0, std::min(end, mostBytes));
    if (begun_.size() > mostBytes) begun_.resize(mostBytes);
    if (end == std::string_view::npos) return;
    while (!begun_.empty() && begun_.back() == '\r') begun_.pop_back();
    Keep({std::exchange(begun_, {})});
    text.remove_prefix(end + 1);
  }
}

void ScriptOutput::Add(ScriptLine line) {
  if (!begun_.empty()) Keep({std::exchange(begun_, {})});
  Keep(std::move(line));
}

void ScriptOutput::Keep(ScriptLine line) {
  fresh_.push_back(std::move(line));
  if (fresh_.size() > mostLines) fresh_.pop_front();
  if (!frame_.IsSet()) frame_.At(loop_.Now() + frame);
}

std::vector<ScriptLine> ScriptOutput::Take() {
  std::vector<ScriptLine> taken(std::make_move_iterator(fresh_.begin()),
                                std::make_move_iterator(fresh_.end()));
  fresh_.clear();
  return taken;
}

}  // namespace quarlin
