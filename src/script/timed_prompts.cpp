// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/timed_prompts.h"

#include <fmt/format.h>

#include "base/text.h"
#include "script/script_text.h"

namespace quarlin {

TimedPrompts::OthersTime::OthersTime(TimedPrompts& prompts) : prompts_(prompts), start_(prompts.loop_.Now()) {
  ++prompts_.othersNow_;
}

TimedPrompts::OthersTime::~OthersTime() {
  if (--prompts_.othersNow_ == 0) prompts_.ofOthers_ += prompts_.loop_.Now() - start_;
}

bool TimedPrompts::Passes(std::string_view text, std::string_view title) const {
  if (dismissed_) OnUnshown(OnOneLine(fmt::format("{}: {}", title, text)));
  return !dismissed_;
}

void TimedPrompts::ShowMessage(std::string_view text, std::string_view title) {
  if (!Passes(text, title)) return;
  const OthersTime shown(*this);
  inner_.ShowMessage(text, title);
}

int TimedPrompts::MsgBox(std::u16string_view text, std::int32_t style, std::u16string_view title) {
  if (!Passes(BytesFromUtf16(text), BytesFromUtf16(title)))
    return static_cast<int>(BoxStyleOf(style).EscapeButton());
  const OthersTime shown(*this);
  return inner_.MsgBox(text, style, title);
}

std::optional<std::u16string> TimedPrompts::InputBox(std::u16string_view prompt, std::u16string_view title,
                                                     std::u16string_view proposal) {
  if (!Passes(BytesFromUtf16(prompt), BytesFromUtf16(title))) return std::nullopt;
  const OthersTime shown(*this);
  return inner_.InputBox(prompt, title, proposal);
}

bool TimedPrompts::Confirm(std::string_view question, std::string_view title) {
  if (!Passes(question, title)) return true;
  const OthersTime shown(*this);
  return inner_.Confirm(question, title);
}

SaveAnswer TimedPrompts::AskToSave(std::string_view question, std::string_view title) {
  if (!Passes(question, title)) return SaveAnswer::Cancel;
  const OthersTime shown(*this);
  return inner_.AskToSave(question, title);
}

void TimedPrompts::Dismiss() {
  dismissed_ = true;
  inner_.Dismiss();
}

}  // namespace quarlin
