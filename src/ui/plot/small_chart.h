// SPDX-License-Identifier: GPL-3.0-or-later
// A little chart beside a plot: the bars of a histogram, or a line such as a spectrum or a step response.
#pragma once

#include <QWidget>
#include <cstddef>
#include <memory>
#include <span>

namespace quarlin {

class SmallChart : public QWidget {
  Q_OBJECT

 public:
  enum class Scale { Linear, LogX, LogY, LogBoth };  // what is not above 0 is left out on a logarithmic axis

  explicit SmallChart(QWidget* parent = nullptr);
  ~SmallChart() override;

  // Bars of `width` side by side, the first from `from` on; their heights are `counts`.
  void ShowBars(double from, double width, std::span<const std::size_t> counts, const QString& xTitle);

  // A line through as many points as both have. NaN: a gap. Any number of points: it is thinned for drawing.
  void ShowLines(std::span<const double> xs, std::span<const double> ys, const QString& xTitle,
                 const QString& yTitle, Scale scale = Scale::Linear);

  // Empty axes, and a sentence in the middle that says why; it may be empty.
  void ShowNothing(const QString& reason = {});

  QSize sizeHint() const override { return {320, 200}; }
  QSize minimumSizeHint() const override { return {160, 110}; }

 protected:
  void changeEvent(QEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace quarlin
