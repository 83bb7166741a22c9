// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/plot/small_chart.h"

#include <QEvent>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "ui/plot/axis_tickers.h"
#include "ui/plot/plot_dress.h"
#include "ui/plot/plot_span.h"

namespace quarlin {

namespace {

constexpr std::size_t fewPoints = 4000;  // are drawn as they are
constexpr int columns = 1000;            // that more are thinned to

// The lowest and the highest of each column, in the order of x; gaps are lost among so many.
class Thinned {
 public:
  Thinned(Span range, bool logarithmic)
      : logarithmic_(logarithmic), range_(Place(range.from), Place(range.to)) {}

  void Take(double x, double y) {
    const double share = (Place(x) - range_.lower) / std::max(range_.size(), 1e-300);
    const auto column = static_cast<int>(std::clamp(share, 0.0, 1.0) * (columns - 1));
    if (column != column_) Flush();
    column_ = column;
    if (low_.empty() || y < low_.front().value) low_.assign(1, {x, y});
    if (high_.empty() || y > high_.front().value) high_.assign(1, {x, y});
  }

  QVector<QCPGraphData> Finish() {
    Flush();
    return std::move(data_);
  }

 private:
  double Place(double x) const { return logarithmic_ ? std::log10(x) : x; }

  void Flush() {
    if (low_.empty()) return;
    const bool lowFirst = low_.front().key < high_.front().key;
    data_.push_back(lowFirst ? low_.front() : high_.front());
    data_.push_back(lowFirst ? high_.front() : low_.front());
    low_.clear();
    high_.clear();
  }

  bool logarithmic_;
  QCPRange range_;
  int column_ = -1;
  std::vector<QCPGraphData> low_, high_;  // none or one
  QVector<QCPGraphData> data_;
};

}  // namespace

struct SmallChart::Parts {
  explicit Parts(SmallChart& chart);
  void Dress();
  void Clear();
  void SetLogarithmic(QCPAxis& axis, bool on, QSharedPointer<QCPAxisTicker> linear);
  void ShowLine(std::span<const double> xs, std::span<const double> ys, bool logX, bool logY);

  SmallChart& widget;
  QCustomPlot* plot;
  QCPBars* bars;
  QCPGraph* line;
  QCPItemText* reason;
  QSharedPointer<QCPAxisTicker> xTicker{new ValueTicker};
  QSharedPointer<QCPAxisTicker> yTicker{new ValueTicker};
};

SmallChart::Parts::Parts(SmallChart& chart) : widget(chart), plot(new QCustomPlot(&chart)) {
  auto* layout = new QVBoxLayout(&chart);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(plot);
  plot->setInteractions(QCP::iNone);
  plot->setFocusPolicy(Qt::NoFocus);
  plot->setAttribute(Qt::WA_TransparentForMouseEvents);
  bars = new QCPBars(plot->xAxis, plot->yAxis);
  line = plot->addGraph();
  line->setAdaptiveSampling(false);
  reason = new QCPItemText(plot);
  reason->position->setType(QCPItemPosition::ptAxisRectRatio);
  reason->position->setCoords(0.5, 0.5);
  for (QCPAxis* axis : {plot->xAxis, plot->yAxis}) axis->ticker()->setTickCount(4);
  xTicker->setTickCount(4);
  yTicker->setTickCount(4);
}

void SmallChart::Parts::Dress() {
  const PlotColors colors(widget.palette());
  plot->setBackground(QBrush(colors.background));
  DressAxis(*plot->xAxis, colors, widget.font());
  DressAxis(*plot->yAxis, colors, widget.font());
  line->setPen(QPen(colors.Curve(0), 1.6));
  bars->setPen(Qt::NoPen);
  bars->setBrush(colors.Curve(0));
  reason->setFont(widget.font());
  reason->setColor(colors.text);
  plot->replot(QCustomPlot::rpQueuedRefresh);
}

void SmallChart::Parts::Clear() {
  bars->data()->clear();
  line->data()->clear();
  reason->setText({});
  SetLogarithmic(*plot->xAxis, false, xTicker);
  SetLogarithmic(*plot->yAxis, false, yTicker);
}

void SmallChart::Parts::SetLogarithmic(QCPAxis& axis, bool on, QSharedPointer<QCPAxisTicker> linear) {
  axis.setScaleType(on ? QCPAxis::stLogarithmic : QCPAxis::stLinear);
  axis.setTicker(on ? QSharedPointer<QCPAxisTicker>(new QCPAxisTickerLog) : std::move(linear));
  axis.setNumberFormat(on ? "gb" : "g");
}

void SmallChart::Parts::ShowLine(std::span<const double> xs, std::span<const double> ys, bool logX,
                                 bool logY) {
  const std::size_t count = std::min(xs.size(), ys.size());
  QVector<QCPGraphData> points;
  double lowX = std::numeric_limits<double>::infinity(), highX = -lowX, lowY = lowX, highY = -lowX;
  for (std::size_t i = 0; i < count; ++i) {
    if ((logX && !(xs[i] > 0)) || (logY && ys[i] <= 0)) continue;
    points.push_back({xs[i], ys[i]});
    if (std::isnan(ys[i])) continue;
    lowX = std::min(lowX, xs[i]), highX = std::max(highX, xs[i]);
    lowY = std::min(lowY, ys[i]), highY = std::max(highY, ys[i]);
  }
  if (static_cast<std::size_t>(points.size()) > fewPoints) {
    Thinned thinned({lowX, highX}, logX);
    for (const QCPGraphData& point : points)
      if (!std::isnan(point.value)) thinned.Take(point.key, point.value);
    points = thinned.Finish();
  }
  line->data()->set(points, true);
  const Span x = logX ? Span{lowX, highX} : Around(lowX, highX, 0);
  const Span y = logY ? Span{lowY / 1.5, highY * 1.5} : Around(lowY, highY, 0.06);
  if (lowX <= highX) plot->xAxis->setRange(x.from, x.to);
  if (lowY <= highY) plot->yAxis->setRange(y.from, y.to);
}

SmallChart::SmallChart(QWidget* parent) : QWidget(parent), parts_(std::make_unique<Parts>(*this)) {
  setAccessibleName(tr("Chart"));
  parts_->Dress();
}

SmallChart::~SmallChart() = default;

void SmallChart::ShowBars(double from, double width, std::span<const std::size_t> counts,
                          const QString& xTitle) {
  parts_->Clear();
  parts_->plot->xAxis->setLabel(xTitle);
  parts_->plot->yAxis->setLabel(tr("Count"));
  QVector<QCPBarsData> bars;
  for (std::size_t i = 0; i < counts.size(); ++i)
    bars.push_back({from + (static_cast<double>(i) + 0.5) * width, static_cast<double>(counts[i])});
  parts_->bars->setWidth(width * (counts.size() > 60 ? 1.0 : 0.94));
  parts_->bars->data()->set(bars, true);
  const std::size_t most =
      counts.empty() ? 1 : std::max<std::size_t>(1, *std::max_element(counts.begin(), counts.end()));
  const Span x = Around(from, from + width * static_cast<double>(counts.size()), 0.02);
  parts_->plot->xAxis->setRange(x.from, x.to);
  parts_->plot->yAxis->setRange(0, static_cast<double>(most) * 1.06);
  parts_->plot->replot(QCustomPlot::rpQueuedRefresh);
}

void SmallChart::ShowLines(std::span<const double> xs, std::span<const double> ys, const QString& xTitle,
                           const QString& yTitle, Scale scale) {
  parts_->Clear();
  parts_->plot->xAxis->setLabel(xTitle);
  parts_->plot->yAxis->setLabel(yTitle);
  const bool logX = scale == Scale::LogX || scale == Scale::LogBoth;
  const bool logY = scale == Scale::LogY || scale == Scale::LogBoth;
  parts_->SetLogarithmic(*parts_->plot->xAxis, logX, parts_->xTicker);
  parts_->SetLogarithmic(*parts_->plot->yAxis, logY, parts_->yTicker);
  parts_->ShowLine(xs, ys, logX, logY);
  parts_->plot->replot(QCustomPlot::rpQueuedRefresh);
}

void SmallChart::ShowNothing(const QString& reason) {
  parts_->Clear();
  parts_->reason->setText(reason);
  parts_->plot->replot(QCustomPlot::rpQueuedRefresh);
}

void SmallChart::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) parts_->Dress();
  QWidget::changeEvent(event);
}

void SmallChart::showEvent(QShowEvent* event) {
  parts_->Dress();
  QWidget::showEvent(event);
}

}  // namespace quarlin
