// SPDX-License-Identifier: GPL-3.0-or-later
// A round indicator lamp. One in a dark colour is not lit: it is hollow, a ring of its colour, so that nobody
// takes a dark green for a light.
#pragma once

#include <QBrush>
#include <QColor>
#include <QWidget>

namespace quarlin {

class Lamp : public QWidget {
  Q_OBJECT

 public:
  explicit Lamp(QWidget* parent = nullptr);

  // Also describes the lamp as "lit" or "dark" to those who cannot see it.
  void SetColor(const QColor& color);
  const QColor& ColorShown() const { return color_; }

  // How it is filled when it is lit, and with which line around it; an invalid colour is the usual one.
  void SetFill(Qt::BrushStyle fill);
  void SetBorder(const QColor& color, Qt::PenStyle line);

  // Whether it shines: not in a dark colour, nor without a filling.
  bool Lit() const;

  QSize sizeHint() const override { return {14, 14}; }
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QBrush Filling(const QPointF& centre, double radius) const;

  QColor color_;
  Qt::BrushStyle fill_ = Qt::SolidPattern;
  QColor borderColor_;
  Qt::PenStyle border_ = Qt::SolidLine;
};

}  // namespace quarlin
