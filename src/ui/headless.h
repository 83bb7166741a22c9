// SPDX-License-Identifier: GPL-3.0-or-later
// The program without a window: what it would show goes to the standard streams.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "controls/event_loop.h"
#include "controls/prompts.h"
#include "desktop/text_opener.h"
#include "display/display_controls.h"
#include "ui/standard_stream.h"

namespace quarlin {

// Message boxes as one line on standard error, "TITLE: TEXT", answered at once: with OK, a script's with
// their default button or the proposed text, a question with Yes; nothing is saved.
class HeadlessPrompts : public Prompts {
 public:
  using Print = std::function<void(std::string_view utf8)>;
  explicit HeadlessPrompts(Print print) : print_(std::move(print)) {}

  void ShowMessage(std::string_view text, std::string_view title) override;
  int MsgBox(std::u16string_view text, std::int32_t style, std::u16string_view title) override;
  std::optional<std::u16string> InputBox(std::u16string_view prompt, std::u16string_view title,
                                         std::u16string_view proposal) override;
  bool Confirm(std::string_view question, std::string_view title) override;
  SaveAnswer AskToSave(std::string_view question, std::string_view title) override;
  void Dismiss() override {}

 private:
  void PrintBox(std::string_view text, std::string_view title);  // both UTF-8

  Print print_;
};

// Nobody is there to read a file in an editor.
class NoTextOpener : public TextOpener {
 public:
  bool OpenText(const std::filesystem::path&) override { return false; }
};

// Prints the traffic as UTF-8, every line end as one LF, at most 50 ms late.
class TrafficPrinter {
 public:
  TrafficPrinter(EventLoop& loop, DisplayText& display, StandardStream& output);
  ~TrafficPrinter();

 private:
  void Print(std::string_view text);
  void Flush();

  EventLoop& loop_;
  StandardStream& output_;
  std::string pending_;
  bool lastWasCr_ = false;
  Alarm flushAlarm_;
};

}  // namespace quarlin
