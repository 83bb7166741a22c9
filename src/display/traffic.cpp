// SPDX-License-Identifier: GPL-3.0-or-later
#include "display/traffic.h"

#include <fmt/format.h>

namespace quarlin {
namespace {

constexpr int mostErrors = 100;
constexpr std::string_view row = "\r\n";

}  // namespace

void Traffic::Received(std::string_view bytes, std::string_view shown) {
  controls_.txtric.Append(shown, TextKind::Received, colors::black);
  logs_.WriteTraffic(Direction::Received, bytes);
}

void Traffic::Sent(std::string_view bytes) {
  logs_.WriteTraffic(Direction::Sent, bytes);
  controls_.txtric.Append(bytes, TextKind::Sent, colors::blue);
}

void Traffic::SentByHand(std::string_view bytes) {
  if (controls_.chkEcho.Checked()) return Sent(bytes);
  logs_.WriteTraffic(Direction::Sent, bytes);
}

void Traffic::AppendReceivedRow() {
  controls_.txtric.Append(row, TextKind::ReceivedBreak, colors::black);
  logs_.WriteRowEnd();
}

void Traffic::AppendSentRow() {
  controls_.txtric.Append(row, TextKind::SentBreak, colors::blue);
}

void Traffic::StampLog() {
  logs_.WriteStamp(loop_.Local());
}

void Traffic::StampEcho() {
  const std::string stamp = fmt::format("{}{} ", stampMark, DateTimeText(loop_.Local()));
  controls_.txtric.Append(stamp, TextKind::SentStamp, colors::blue);
}

void Traffic::Parsed(std::string_view text) {
  logs_.WriteParser(text);
}

void Traffic::Append(std::string_view text, Color color) {
  controls_.txtric.Append(text, TextKind::Own, color);
}

void Traffic::AppendError(std::string_view line, std::string_view detail, std::uint64_t number) {
  controls_.txtric.Append(fmt::format("{}\r\n", line), TextKind::Error, colors::red);
  std::string toolTip = DateTimeText(loop_.Local());
  if (number != 0) toolTip += fmt::format(" No. {}", number);
  if (!detail.empty()) toolTip += fmt::format("{} {}", number != 0 ? ":" : "", detail);
  controls_.lstError.AddItem(line, toolTip);
  while (controls_.lstError.ListCount() > mostErrors) controls_.lstError.RemoveItem(0);
}

}  // namespace quarlin
