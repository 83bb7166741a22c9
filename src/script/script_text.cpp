// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/script_text.h"

#include "script/values/conversions.h"

namespace quarlin {

std::u16string Utf16FromBytes(std::string_view bytes) {
  std::u16string text(bytes.size(), u'\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) text[i] = static_cast<unsigned char>(bytes[i]);
  return text;
}

std::string BytesFromUtf16(std::u16string_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  bool halfPair = false;
  for (const char16_t unit : text) {
    const bool secondHalf = halfPair && unit >= 0xDC00 && unit <= 0xDFFF;
    halfPair = unit >= 0xD800 && unit <= 0xDBFF;
    if (!secondHalf) bytes += unit <= 0xFF ? static_cast<char>(unit) : '?';
  }
  return bytes;
}

vbs::Value TextValue(std::string_view bytes) {
  if (bytes.size() == 1) return vbs::Value::Character(static_cast<unsigned char>(bytes.front()));
  return vbs::Value::String(Utf16FromBytes(bytes));
}

std::string BytesOfValue(const vbs::Value& value) {
  std::u16string scratch;
  return BytesFromUtf16(vbs::ToTextView(value, scratch));
}

}  // namespace quarlin
