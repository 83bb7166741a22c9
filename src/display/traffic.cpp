#include "display/traffic.h"

#include <fmt/format.h>

namespace quarlin {
namespace {

constexpr int mostErrors = 100;
constexpr std::string_view row = "\r\n";

}  // namespace

void Traffic::Received(std::string_view bytes) {
  Append(bytes, colors::black);
  logs_.WriteTraffic(bytes);
}

void Traffic::Sent(std::string_view bytes) {
  logs_.WriteTraffic(bytes);
  Append(bytes, colors::blue);
}

void Traffic::AppendReceivedRow() {
  Received(row);
}

void Traffic::AppendSentRow() {
  Append(row, colors::blue);
}

void Traffic::StampLog() {
  logs_.WriteStamp(loop_.Local());
}

void Traffic::StampEcho() {
  Append(fmt::format("{}{} ", stampMark, DateTimeText(loop_.Local())), colors::blue);
}

void Traffic::Parsed(std::string_view text) {
  logs_.WriteParser(text);
}

void Traffic::Append(std::string_view text, Color color) {
  controls_.txtric.Append(text, color);
}

void Traffic::AppendError(std::string_view line, std::string_view detail, std::uint64_t number) {
  Append(fmt::format("{}\r\n", line), colors::red);
  std::string toolTip = DateTimeText(loop_.Local());
  if (number != 0) toolTip += fmt::format(" No. {}", number);
  if (!detail.empty()) toolTip += fmt::format("{} {}", number != 0 ? ":" : "", detail);
  controls_.lstError.AddItem(line, toolTip);
  while (controls_.lstError.ListCount() > mostErrors) controls_.lstError.RemoveItem(0);
}

}  // namespace quarlin
