#include "ui/headless.h"

#include <fmt/format.h>

#include <algorithm>

#include "base/text.h"

namespace quarlin {
namespace {

constexpr Duration longestDelay = std::chrono::milliseconds(50);
constexpr std::size_t printSize = 64 * 1024;

}  // namespace

void PrintText(std::FILE* stream, std::string_view utf8) {
  std::fwrite(utf8.data(), 1, utf8.size(), stream);
  std::fflush(stream);
}

void HeadlessPrompts::ShowMessage(std::string_view text, std::string_view title) {
  std::string line = fmt::format("{}: {}", title, text);
  std::replace_if(
      line.begin(), line.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
  PrintText(stderr, Utf8FromBytes(line) + "\n");
}

TrafficPrinter::TrafficPrinter(EventLoop& loop, DisplayText& display)
    : loop_(loop), flushAlarm_(loop, [this] { Flush(); }) {
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
  PrintText(stdout, Utf8FromBytes(pending_));
  pending_.clear();
}

}  // namespace quarlin
