// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editor/script_colors.h"

namespace quarlin {
namespace {

QColor Blend(const QColor& over, const QColor& under, double share) {
  const auto mix = [share](int a, int b) { return qRound(share * a + (1 - share) * b); };
  return {mix(over.red(), under.red()), mix(over.green(), under.green()), mix(over.blue(), under.blue())};
}

}  // namespace

// All texts have a contrast of at least 4.5 to white, or to a ground as dark as #303030.
ScriptColors::ScriptColors(const QPalette& palette)
    : paper(palette.color(QPalette::Active, QPalette::Base)),
      text(palette.color(QPalette::Active, QPalette::Text)),
      margin(Blend(text, paper, 0.05)),
      faint(Blend(text, paper, 0.5)),
      caretLine(Blend(text, paper, 0.05)),
      selection(palette.color(QPalette::Active, QPalette::Highlight)),
      selectedText(palette.color(QPalette::Active, QPalette::HighlightedText)),
      brace(Blend(text, paper, 0.2)) {
  const bool dark = paper.lightness() < 128;
  const auto pick = [dark](QRgb onLight, QRgb onDark) { return QColor(dark ? onDark : onLight); };
  error = pick(0xC62828, 0xFF6B6B);
  running = Blend(pick(0xE0A800, 0xE0A800), paper, 0.35);
  found = Blend(pick(0xFF8C1A, 0xFF8C1A), paper, 0.4);
  keyword = pick(0x1D4FB8, 0x82B1FF);
  string = pick(0x1B7A2E, 0x9CCC8F);
  comment = pick(0x6A7079, 0x9AA3AD);
  number = pick(0x9A4A00, 0xE8B465);
  function = pick(0x7B3A9E, 0xCDA4EC);
  object = pick(0x00707C, 0x6FCBD1);
}

}  // namespace quarlin
