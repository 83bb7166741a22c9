// SPDX-License-Identifier: GPL-3.0-or-later
// Message boxes that nobody sees.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "controls/prompts.h"
#include "script/script_text.h"

namespace quarlin {

// Notes every message; what the user would do while the box is open can be prepared, and so can the answers
// to boxes and questions. Without one the default button is pressed and a proposed text taken; a question is
// answered with Yes, and nothing is saved.
class ListedPrompts : public Prompts {
 public:
  void ShowMessage(std::string_view text, std::string_view title) override {
    shown.push_back(std::string(title) + ": " + std::string(text));
    if (whileShown) whileShown();
  }
  int MsgBox(std::u16string_view text, std::int32_t style, std::u16string_view title) override {
    ShowMessage(BytesFromUtf16(text), BytesFromUtf16(title));
    return NextAnswer().value_or(static_cast<int>(BoxStyleOf(style).defaultButton));
  }
  std::optional<std::u16string> InputBox(std::u16string_view prompt, std::u16string_view title,
                                         std::u16string_view proposal) override {
    ShowMessage(BytesFromUtf16(prompt), BytesFromUtf16(title));
    return std::u16string(proposal);
  }
  bool Confirm(std::string_view question, std::string_view title) override {
    ShowMessage(question, title);
    return NextAnswer().value_or(1) != 0;
  }
  SaveAnswer AskToSave(std::string_view question, std::string_view title) override {
    ShowMessage(question, title);
    return saveAnswer;
  }
  void Dismiss() override { dismissed = true; }
  SaveAnswer saveAnswer = SaveAnswer::Discard;
  std::vector<std::string> shown;
  std::deque<int> answers;
  std::function<void()> whileShown;
  bool dismissed = false;

 private:
  std::optional<int> NextAnswer() {
    if (answers.empty()) return std::nullopt;
    const int answer = answers.front();
    answers.pop_front();
    return answer;
  }
};

}  // namespace quarlin
