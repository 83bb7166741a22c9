#include "display/log_rows.h"

#include <fmt/format.h>

#include <utility>

#include "base/numbers.h"

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
    text += '{';
    text += Hexadecimal(code, 2);
    text += '}';
  }
}

}  // namespace

bool LogRows::EndsBefore(Direction direction, char next) const {
  if (length_ == 0) return false;
  return direction != direction_ || last_ == '\n' || (last_ == '\r' && next != '\n') || length_ >= longestRow;
}

std::string LogRows::Add(Direction direction, std::string_view bytes, LocalTime now) {
  std::string text;
  text.reserve(bytes.size() + 32);
  for (const char byte : bytes) {
    if (EndsBefore(direction, byte)) text += End();
    if (length_ == 0) text += Mark(direction, now);
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
