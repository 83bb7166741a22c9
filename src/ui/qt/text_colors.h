// SPDX-License-Identifier: GPL-3.0-or-later
// The display's colours on the desktop's palette: the text's own colour for black, and any other brought
// as far from the background as reading needs, on light desktops and dark ones.
#pragma once

#include <QColor>
#include <QPalette>
#include <utility>
#include <vector>

#include "controls/control.h"

namespace quarlin {

class TextColors {
 public:
  // A colour for text, and the fainter one for control characters in it.
  struct Shades {
    QRgb full = 0;
    QRgb dimmed = 0;
  };

  TextColors() : TextColors(QPalette()) {}
  explicit TextColors(const QPalette& palette);

  const Shades& Of(Color color);

  QRgb Dimmed() const { return text_.dimmed; }  // time stamps, bars
  QRgb Found() const { return found_; }         // behind what a search finds
  QRgb Highlight() const { return highlight_; }
  QRgb HighlightedText() const { return highlightedText_; }

 private:
  QColor base_;
  Shades text_;
  QRgb found_ = 0;
  QRgb highlight_ = 0;
  QRgb highlightedText_ = 0;
  std::vector<std::pair<Color, Shades>> known_;  // some seven in all
};

// A colour with its bytes blue-green-red, changed in lightness until it can be read on `base`.
QColor ReadableColor(Color color, const QColor& base);

}  // namespace quarlin
