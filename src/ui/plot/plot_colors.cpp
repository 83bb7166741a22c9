// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/plot/plot_colors.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace quarlin {

namespace {

constexpr std::array<QRgb, 8> colorsForAll{0x0072B2, 0xD55E00, 0x009E73, 0xCC79A7,
                                           0xE69F00, 0x56B4E9, 0x808080, 0xF0E442};
constexpr QRgb vermilion = 0xD55E00;
constexpr QRgb purple = 0xCC79A7;

// Of sRGB, 0 to 1, as the contrast of texts on screens is reckoned.
double Luminance(const QColor& color) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double Contrast(const QColor& one, const QColor& other) {
  const auto [low, high] = std::minmax({Luminance(one), Luminance(other)});
  return (high + 0.05) / (low + 0.05);
}

QColor Blend(const QColor& over, const QColor& under, double share) {
  const auto mix = [share](float a, float b) {
    return static_cast<float>(share * static_cast<double>(a) + (1 - share) * static_cast<double>(b));
  };
  return QColor::fromRgbF(mix(over.redF(), under.redF()), mix(over.greenF(), under.greenF()),
                          mix(over.blueF(), under.blueF()));
}

QColor StandingOut(QColor color, const QColor& background) {
  constexpr double step = 0.06;
  const bool light = Luminance(background) > 0.18;
  const double enough = light ? 3.2 : 5;  // a thin line is lost sooner on dark
  const QColor towards = light ? Qt::black : Qt::white;
  for (double share = step; share < 1 && Contrast(color, background) < enough; share += step)
    color = Blend(towards, color, step);
  return color;
}

QPalette PaperPalette() {
  QPalette palette(QColor(0xEF, 0xEF, 0xEF), Qt::white);
  palette.setColor(QPalette::Text, QColor(0x20, 0x20, 0x20));
  palette.setColor(QPalette::Base, Qt::white);
  return palette;
}

}  // namespace

PlotColors::PlotColors(const QPalette& palette)
    : background(palette.color(QPalette::Active, QPalette::Base)),
      text(palette.color(QPalette::Active, QPalette::Text)),
      axis(Blend(text, background, 0.55)),
      grid(Blend(text, background, 0.11)),
      cursor(Blend(text, background, 0.8)),
      timeOut(StandingOut(QColor(vermilion), background)),
      wrongAnswer(StandingOut(QColor(purple), background)),
      selection(palette.color(QPalette::Active, QPalette::Highlight)) {
  for (const QRgb color : colorsForAll) curves_.push_back(StandingOut(QColor(color), background));
}

PlotColors PlotColors::ForPaper() {
  return PlotColors(PaperPalette());
}

QColor PlotColors::Curve(int place) const {
  return curves_[static_cast<std::size_t>(place) % curves_.size()];
}

QColor PlotColors::PaleCurve(int place) const {
  return Blend(Curve(place), background, 0.6);
}

QPen CurvePen(const QColor& color, int place, double width) {
  static const std::array<QList<qreal>, 4> dashes{{{}, {6, 2.5}, {2, 2}, {7, 2, 1.5, 2}}};
  QPen pen(color, width, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin);
  const QList<qreal>& dash = dashes[static_cast<std::size_t>(place) % dashes.size()];
  if (!dash.empty()) pen.setDashPattern(dash);
  return pen;
}

}  // namespace quarlin
