// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/text_selection.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

namespace quarlin {
namespace {

enum class CharClass { Word, Blank, Other };

CharClass ClassOf(char cell) {
  const auto code = static_cast<unsigned char>(cell);
  const auto lower = static_cast<unsigned char>(code | 0x20);
  const bool letter = (lower >= 'a' && lower <= 'z') || (code >= 0xC0 && code != 0xD7 && code != 0xF7);
  if (letter || (code >= '0' && code <= '9') || code == '_') return CharClass::Word;
  return code == ' ' || code == '\t' ? CharClass::Blank : CharClass::Other;
}

// Hands each selected line that is shown with its selected bytes to `take`, lines in order.
template <typename Take>
void ForEachLine(const TextRing& ring, const RowMap& map, const TextSelection& selection, Take take) {
  if (selection.Empty()) return;
  const std::uint64_t first = std::max(selection.Span().begin.line, ring.FirstLine());
  const std::uint64_t end = std::min(selection.Span().end.line + 1, ring.EndLine());
  TextLine line;
  for (std::uint64_t number = first; number < end; ++number) {
    if (!map.Shows(number)) continue;
    ring.Read(number, line);
    take(line, selection.BytesOf(number));
  }
}

}  // namespace

void TextSelection::Start(TextSpan unit) {
  origin_ = unit;
  span_ = unit;
}

void TextSelection::ExtendTo(TextSpan unit) {
  if (!origin_) origin_ = unit;
  span_ = {std::min(origin_->begin, unit.begin), std::max(origin_->end, unit.end)};
}

void TextSelection::Clear() {
  origin_.reset();
  span_ = {};
}

void TextSelection::KeepFrom(std::uint64_t firstLine) {
  const TextPosition first{firstLine, 0};
  const auto clamp = [&](TextSpan& span) { span = {std::max(span.begin, first), std::max(span.end, first)}; };
  clamp(span_);
  if (origin_) clamp(*origin_);
}

ByteRange TextSelection::BytesOf(std::uint64_t line) const {
  if (Empty() || line < span_.begin.line || line > span_.end.line) return {};
  return {line == span_.begin.line ? span_.begin.byte : 0,
          line == span_.end.line ? span_.end.byte : ByteRange::throughLineEnd};
}

TextSpan WordAt(std::string_view text, TextPosition byte) {
  if (text.empty()) return {byte, byte};
  const std::size_t hit = std::min(byte.byte, text.size() - 1);
  std::size_t begin = hit;
  std::size_t end = hit + 1;
  while (begin > 0 && ClassOf(text[begin - 1]) == ClassOf(text[hit])) --begin;
  while (end < text.size() && ClassOf(text[end]) == ClassOf(text[hit])) ++end;
  return {{byte.line, begin}, {byte.line, end}};
}

TextSpan WholeText(const TextRing& ring) {
  const TextPosition begin{ring.FirstLine(), 0};
  if (ring.FirstLine() == ring.EndLine()) return {begin, begin};
  const std::uint64_t last = ring.EndLine() - 1;
  return {begin, {last, ring.Line(last).visible}};
}

std::string SelectedText(const TextRing& ring, const RowMap& map, const TextSelection& selection) {
  std::string text;
  const char* gap = "";
  ForEachLine(ring, map, selection, [&](const TextLine& line, ByteRange bytes) {
    text += gap;
    gap = "\n";
    const std::size_t end = std::min(bytes.end, line.visible);
    if (bytes.begin < end) text.append(line.text, bytes.begin, end - bytes.begin);
  });
  return text;
}

std::string SelectedBytes(const TextRing& ring, const RowMap& map, const TextSelection& selection) {
  std::string selected;
  ForEachLine(ring, map, selection, [&](const TextLine& line, ByteRange bytes) {
    const std::size_t end = std::min(bytes.end, line.text.size());
    for (std::size_t byte = bytes.begin; byte < end; ++byte) {
      if (IsOfWire(line.RunAt(byte).kind)) selected += line.text[byte];
    }
  });
  return selected;
}

std::string SelectedHex(const TextRing& ring, const RowMap& map, const TextSelection& selection) {
  std::string text;
  ForEachLine(ring, map, selection, [&](const TextLine& line, ByteRange bytes) {
    const char* gap = text.empty() ? "" : "\n";
    const std::size_t end = std::min(bytes.end, line.text.size());
    for (std::size_t byte = bytes.begin; byte < end; ++byte) {
      if (!IsOfWire(line.RunAt(byte).kind)) continue;
      fmt::format_to(std::back_inserter(text), "{}{:02X}", gap, static_cast<unsigned char>(line.text[byte]));
      gap = " ";
    }
  });
  return text;
}

}  // namespace quarlin
