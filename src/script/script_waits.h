// SPDX-License-Identifier: GPL-3.0-or-later
// What a script can wait for while the program goes on: a time, the next answer, the panel to be closed.
//
// All of it throws what ScriptRunner::Wait does, and error 5 for a time below 0.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "controls/form.h"
#include "script/script_runner.h"

namespace quarlin {

class ScriptWaits {
 public:
  ScriptWaits(EventLoop& loop, ScriptRunner& runner) : loop_(loop), runner_(runner) {}

  void Sleep(std::int32_t milliseconds);

  // The next string that is complete; nothing when none is in time.
  std::optional<std::string> Answer(std::int32_t milliseconds);

  // Shows the form in front of the other windows, which take no input, until it is hidden again. Returns at
  // once where nobody could hide it.
  void ShowModal(Form& form);

  // Told of each string that is complete. A wait for it takes it and is over; without one it is not kept.
  void Completed(std::string_view text);

 private:
  Instant End(std::int32_t milliseconds) const;

  EventLoop& loop_;
  ScriptRunner& runner_;
  bool awaitsAnswer_ = false;
  std::optional<std::string> answer_;
};

}  // namespace quarlin
