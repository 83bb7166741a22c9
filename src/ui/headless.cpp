// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/headless.h"

#include <fmt/format.h>

#include "base/text.h"
#include "script/values/conversions.h"

namespace quarlin {
namespace {

constexpr Duration longestDelay = std::chrono::milliseconds(50);
constexpr std::size_t printSize = std::size_t{64} * 1024;

}  // namespace

void HeadlessPrompts::PrintBox(std::string_view text, std::string_view title) {
  print_(OnOneLine(fmt::format("{}: {}", title, text)) + "\n");
}

void HeadlessPrompts::ShowMessage(std::string_view text, std::string_view title) {
  PrintBox(Utf8FromBytes(text), Utf8FromBytes(title));
}

int HeadlessPrompts::MsgBox(std::u16string_view text, std::int32_t style, std::u16string_view title) {
  PrintBox(vbs::Utf8Of(text), vbs::Utf8Of(title));
  return static_cast<int>(BoxStyleOf(style).defaultButton);
}

std::optional<std::u16string> HeadlessPrompts::InputBox(std::u16string_view prompt, std::u16string_view title,
                                                        std::u16string_view proposal) {
  PrintBox(vbs::Utf8Of(prompt), vbs::Utf8Of(title));
  return std::u16string(proposal);
}

bool HeadlessPrompts::Confirm(std::string_view question, std::string_view title) {
  ShowMessage(question, title);
  return true;
}

SaveAnswer HeadlessPrompts::AskToSave(std::string_view question, std::string_view title) {
  ShowMessage(question, title);
  return SaveAnswer::Discard;
}

TrafficPrinter::TrafficPrinter(EventLoop& loop, DisplayText& display, StandardStream& output)
    : loop_(loop), output_(output), flushAlarm_(loop, [this] { Flush(); }) {
  display.OnAppend = [this](std::string_view text, Color) { Print(text); };
}

TrafficPrinter::~TrafficPrinter() {
  Flush();
}

void TrafficPrinter::Print(std::string_view text) {
  for (const char character : text) {
    const bool secondOfPair = lastWasCr_ && character == '\n';
    lastWasCr_ = character == '\r';
    if (!secondOfPair) pending_ += lastWasCr_ ? '\n' : character;
  }
  if (pending_.size() >= printSize) {
    Flush();
  } else if (!flushAlarm_.IsSet()) {
    flushAlarm_.At(loop_.Now() + longestDelay);
  }
}

void TrafficPrinter::Flush() {
  output_.Write(Utf8FromBytes(pending_));
  pending_.clear();
}

}  // namespace quarlin
