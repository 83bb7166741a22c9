// SPDX-License-Identifier: GPL-3.0-or-later
#include "display/log_rows.h"

#include <fmt/format.h>

#include <utility>

namespace quarlin {
namespace {

std::string Mark(Direction direction, LocalTime now) {
  std::string time = IsoText(now);
  time.replace(time.find('T'), 1, " ");
  const auto fraction = floor<std::chrono::milliseconds>(now - floor<std::chrono::seconds>(now)).count();
  return fmt::format("{}.{:03} {} ", time, fraction, direction == Direction::Sent ? "->" : "<-");
}

void AddCoded(std::string& text, char character) {
  const auto code = static_cast<unsigned char>(character);
  if (code >= ' ' && code != 0x7F) {
    text += character;
  } else {
    constexpr std::string_view digits = "0123456789ABCDEF";
    text.append({'{', digits[code / 16], digits[code % 16], '}'});
  }
}

}  // namespace

bool LogRows::EndsBefore(Direction direction, char next) const {
  if (length_ == 0) return false;
  return direction != direction_ || last_ == '\n' || (last_ == '\r' && next != '\n') || length_ >= longestRow;
}

std::string LogRows::Add(Direction direction, std::string_view bytes, LocalTime now) {
  std::string text;
  std::string mark;  // made once for all rows of the call
  text.reserve(bytes.size() * 2 + 64);
  for (const char byte : bytes) {
    if (EndsBefore(direction, byte)) text += End();
    if (length_ == 0 && mark.empty()) mark = Mark(direction, now);
    if (length_ == 0) text += mark;
    direction_ = direction;
    AddCoded(text, byte);
    last_ = byte;
    ++length_;
  }
  if (length_ > 0 && last_ == '\n') text += End();
  return text;
}

std::string LogRows::End() {
  return std::exchange(length_, 0) > 0 ? "\r\n" : "";
}

}  // namespace quarlin
