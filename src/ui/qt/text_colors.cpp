// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/text_colors.h"

#include <algorithm>
#include <cmath>

namespace quarlin {
namespace {

double Linear(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& color) {
  return 0.2126 * Linear(color.redF()) + 0.7152 * Linear(color.greenF()) + 0.0722 * Linear(color.blueF());
}

// From 1, the same, to 21, black on white.
double Contrast(const QColor& one, const QColor& other) {
  const auto [darker, lighter] = std::minmax({Luminance(one), Luminance(other)});
  return (lighter + 0.05) / (darker + 0.05);
}

QColor Mixed(const QColor& color, const QColor& base, double share) {
  const auto mix = [share](int from, int to) { return qRound(from * share + to * (1 - share)); };
  return {mix(color.red(), base.red()), mix(color.green(), base.green()), mix(color.blue(), base.blue())};
}

bool IsDark(const QColor& color) {
  return Luminance(color) < 0.18;
}

TextColors::Shades ShadesOf(const QColor& color, const QColor& base) {
  const double dimmedShare = IsDark(base) ? 0.8 : 0.65;  // on dark a colour sinks sooner
  return {color.rgb(), Mixed(color, base, dimmedShare).rgb()};
}

}  // namespace

QColor ReadableColor(Color color, const QColor& base) {
  const auto value = static_cast<std::uint32_t>(color);
  const QColor given(static_cast<int>(value & 255), static_cast<int>(value >> 8 & 255),
                     static_cast<int>(value >> 16 & 255));
  // Saturated colours glare on dark, so they are brought further than on light, where red and magenta
  // are to stay what they are.
  const bool onDark = IsDark(base);
  const double wanted = onDark ? 4.5 : 3.0;
  QColor readable = given;
  for (int step = 1; step <= 20 && Contrast(readable, base) < wanted; ++step) {
    readable = Mixed(given, onDark ? Qt::white : Qt::black, 1.0 - 0.05 * step);
  }
  return readable;
}

TextColors::TextColors(const QPalette& palette)
    : base_(palette.color(QPalette::Base)),
      text_(ShadesOf(palette.color(QPalette::Text), base_)),
      found_(Mixed(QColor(255, 200, 0), base_, 0.4).rgb()),
      highlight_(palette.color(QPalette::Highlight).rgb()),
      highlightedText_(palette.color(QPalette::HighlightedText).rgb()) {}

const TextColors::Shades& TextColors::Of(Color color) {
  if (color == colors::black) return text_;
  const auto known =
      std::find_if(known_.begin(), known_.end(), [color](const auto& entry) { return entry.first == color; });
  if (known != known_.end()) return known->second;
  constexpr std::size_t most = 64;  // a script may think of any number of colours
  if (known_.size() >= most) known_.clear();
  return known_.emplace_back(color, ShadesOf(ReadableColor(color, base_), base_)).second;
}

}  // namespace quarlin
