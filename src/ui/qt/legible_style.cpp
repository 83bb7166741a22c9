// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/legible_style.h"

#include <QApplication>
#include <QProxyStyle>
#include <QStyleOption>

namespace quarlin {
namespace {

constexpr auto ownStyle = "fusion";
constexpr int dark = 128;  // lightness below which the style's outline is lost

QColor Between(const QColor& one, const QColor& other) {
  return QColor((one.red() + other.red()) / 2, (one.green() + other.green()) / 2,
                (one.blue() + other.blue()) / 2);
}

class LegibleStyle : public QProxyStyle {
 public:
  using QProxyStyle::QProxyStyle;

  // Of the colours of a box that of the window serves for its outline, and for nothing else.
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
    const auto* box = qstyleoption_cast<const QStyleOptionButton*>(option);
    const bool isBox = element == PE_IndicatorCheckBox || element == PE_IndicatorRadioButton;
    if (!isBox || box == nullptr || box->palette.color(QPalette::Window).lightness() >= dark) {
      return QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
    QStyleOptionButton seen(*box);
    seen.palette.setColor(QPalette::Window, Between(box->palette.color(QPalette::Window),
                                                    box->palette.color(QPalette::WindowText)));
    QProxyStyle::drawPrimitive(element, &seen, painter, widget);
  }
};

}  // namespace

void MakeStyleLegible() {
  if (QApplication::style()->name() == ownStyle) QApplication::setStyle(new LegibleStyle(ownStyle));
}

}  // namespace quarlin
