// SPDX-License-Identifier: GPL-3.0-or-later
// What a script writes while it runs, and what goes wrong in it: the last lines, told a frame at a time.
#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "base/hook.h"
#include "controls/event_loop.h"

namespace quarlin {

struct ScriptLine {
  std::string text;  // a byte a character
  int line = 0;      // of the script, where it leads to; 0: nowhere
  int column = 0;
  bool isError = false;
};

class ScriptOutput {
 public:
  static constexpr std::size_t mostLines = 1000;
  static constexpr std::size_t mostBytes = 2048;  // of a line; the rest of a longer one is left out
  static constexpr Duration frame = std::chrono::milliseconds(33);

  explicit ScriptOutput(EventLoop& loop);

  // A text as it comes: it goes on in the last line until a line end, or until the frame ends.
  void Write(std::string_view text);

  // A line of its own.
  void Add(ScriptLine line);

  // What has come since the last call; of more than `mostLines` the last ones.
  std::vector<ScriptLine> Take();

  // The view's: there is something to take.
  Hook<void()> OnNew;

 private:
  void Keep(ScriptLine line);
  void EndFrame();

  EventLoop& loop_;
  std::deque<ScriptLine> fresh_;
  std::string begun_;  // a line that has no end yet
  Alarm frame_;
};

}  // namespace quarlin
