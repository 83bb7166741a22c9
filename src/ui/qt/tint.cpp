// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/tint.h"

#include <QApplication>

namespace quarlin {
namespace {

constexpr double backShare = 0.4;
constexpr double foreShare = 0.6;
constexpr double disabledShare = 0.7;  // of the text's colour in a disabled widget

}  // namespace

QColor ColorOf(Color color) {
  return QColor(color & 0xFF, (color >> 8) & 0xFF, (color >> 16) & 0xFF);
}

QColor Mixed(const QColor& ground, const QColor& color, double share) {
  const auto mix = [share](float from, float to) {
    return static_cast<float>(from * (1 - share) + to * share);
  };
  return QColor::fromRgbF(mix(ground.redF(), color.redF()), mix(ground.greenF(), color.greenF()),
                          mix(ground.blueF(), color.blueF()));
}

QPalette Tinted(const QWidget& widget, std::optional<Color> back, std::optional<Color> fore) {
  QPalette palette = QApplication::palette(&widget);
  QColor base = palette.color(QPalette::Active, QPalette::Base);
  QColor text = palette.color(QPalette::Active, QPalette::Text);
  if (back) base = Mixed(base, ColorOf(*back), backShare);
  if (fore) text = Mixed(text, ColorOf(*fore), foreShare);
  palette.setColor(QPalette::Base, base);
  palette.setColor(QPalette::Text, text);
  palette.setColor(QPalette::Disabled, QPalette::Text, Mixed(base, text, disabledShare));
  return palette;
}

void KeepPlaceholdersReadable() {
  QColor faint = QApplication::palette().color(QPalette::Text);
  faint.setAlpha(128);
  if (QApplication::palette().color(QPalette::PlaceholderText) == faint) return;
  QPalette palette;  // of this one colour; all others stay the desktop's
  palette.setColor(QPalette::PlaceholderText, faint);
  QApplication::setPalette(palette);
}

}  // namespace quarlin
