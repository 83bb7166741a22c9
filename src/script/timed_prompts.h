// SPDX-License-Identifier: GPL-3.0-or-later
// Passes every box on and counts the time for which boxes stand open, which is the user's and not the
// script's.
#pragma once

#include <atomic>

#include "base/hook.h"
#include "controls/event_loop.h"
#include "controls/prompts.h"

namespace quarlin {

class TimedPrompts : public Prompts {
 public:
  TimedPrompts(const EventLoop& loop, Prompts& inner) : loop_(loop), inner_(inner) {}

  void ShowMessage(std::string_view text, std::string_view title) override;
  int MsgBox(std::u16string_view text, std::int32_t style, std::u16string_view title) override;
  std::optional<std::u16string> InputBox(std::u16string_view prompt, std::u16string_view title,
                                         std::u16string_view proposal) override;
  bool Confirm(std::string_view question, std::string_view title) override;
  SaveAnswer AskToSave(std::string_view question, std::string_view title) override;

  // Told of a box that is not shown any more, as one line "TITLE: TEXT".
  Hook<void(std::string_view line)> OnUnshown;

  // Closes what is shown. A box that is asked for from now on is taken as closed at once, until Readmit: what
  // is on the stack is to return without the user.
  void Dismiss() override;
  void Readmit() { dismissed_ = false; }
  bool Dismissed() const { return dismissed_; }

  // While one lives, time is not the script's: a box stands open, or it is held for another reason. They may
  // lie within each other.
  class OthersTime {
   public:
    explicit OthersTime(TimedPrompts& prompts);
    ~OthersTime();
    OthersTime(const OthersTime&) = delete;
    OthersTime& operator=(const OthersTime&) = delete;

   private:
    TimedPrompts& prompts_;
    Instant start_;
  };

  // All that has passed by now, but for what still goes on.
  Duration TimeOfOthers() const { return ofOthers_; }

  // From any thread: whether the time that passes is others'; for one reason within another, too.
  bool IsOthersTime() const { return othersNow_ > 0; }
  bool IsNested() const { return othersNow_ > 1; }

 private:
  bool Passes(std::string_view text, std::string_view title) const;

  const EventLoop& loop_;
  Prompts& inner_;
  Duration ofOthers_{};
  std::atomic<int> othersNow_ = 0;
  bool dismissed_ = false;
};

}  // namespace quarlin
