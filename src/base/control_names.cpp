// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/control_names.h"

#include <array>

#include "base/numbers.h"

namespace quarlin {
namespace {

constexpr std::array<std::string_view, 32> names{"NUL", "SOH", "STX", "ETX", "EOT", "ENQ", "ACK", "BEL",
                                                 "BS",  "HT",  "LF",  "VT",  "FF",  "CR",  "SO",  "SI",
                                                 "DLE", "DC1", "DC2", "DC3", "DC4", "NAK", "SYN", "ETB",
                                                 "CAN", "EM",  "SUB", "ESC", "FS",  "GS",  "RS",  "US"};
constexpr unsigned char del = 127;

bool IsControl(unsigned char code) {
  return code < names.size() || (code >= del && code < 0xA0);
}

}  // namespace

std::string_view ControlName(unsigned char code) {
  if (code == del) return "DEL";
  return code < names.size() ? names[code] : std::string_view();
}

std::string CharacterName(unsigned char code) {
  if (code == ' ') return "space";
  return IsControl(code) ? std::string(ControlName(code)) : std::string(1, static_cast<char>(code));
}

std::string WithControlNames(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  for (const char byte : bytes) {
    const auto code = static_cast<unsigned char>(byte);
    if (!IsControl(code)) {
      text += byte;
      continue;
    }
    const std::string_view name = ControlName(code);
    text += '<';
    text += name.empty() ? Hexadecimal(code, 2) : name;
    text += '>';
  }
  return text;
}

}  // namespace quarlin
