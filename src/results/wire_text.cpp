// SPDX-License-Identifier: GPL-3.0-or-later
#include "results/wire_text.h"

#include <fmt/format.h>

#include "base/numbers.h"
#include "base/text.h"

namespace quarlin {
namespace {

std::string Escaped(std::string_view bytes, std::string_view kept) {
  std::string text;
  for (const char byte : bytes) {
    const auto code = static_cast<unsigned char>(byte);
    const bool control = code < 0x20 || (code >= 0x7F && code < 0xA0);
    if (control && kept.find(byte) == std::string_view::npos) {
      text += "\\x" + Hexadecimal(code, 2);
    } else {
      text += byte;
    }
  }
  return text;
}

}  // namespace

std::string WithoutControls(std::string_view bytes) {
  return Escaped(bytes, "");
}

std::string VisibleText(std::string_view bytes) {
  return Utf8FromBytes(WithoutControls(bytes));
}

std::string VisibleLines(std::string_view bytes) {
  return Utf8FromBytes(Escaped(bytes, "\t\n\r"));
}

std::string HexText(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) {
    if (!text.empty()) text += ' ';
    text += Hexadecimal(static_cast<unsigned char>(byte), 2);
  }
  return text;
}

}  // namespace quarlin
