#include "ui/plot/plot_surface.h"

#include <algorithm>
#include <cmath>

#include "ui/plot/plot_dress.h"

namespace quarlin {

namespace {

constexpr const char* paleLayer = "pale";  // of curves behind the others
constexpr double thick = 1.6;
constexpr double thin = 1.0;
constexpr double pointSize = 5;

using GraphData = QVector<QCPGraphData>;

bool IsGap(const std::vector<Point>& points, std::size_t index) {
  return index >= points.size() || std::isnan(points[index].value);
}

bool IsLone(const std::vector<Point>& points, std::size_t index) {
  return !IsGap(points, index) && IsGap(points, index - 1) && IsGap(points, index + 1);
}

}  // namespace

PlotSurface::PlotSurface(const CurveSet& curves, const MarkList& marks, QWidget* parent)
    : QCustomPlot(parent),
      curves_(curves),
      marks_(marks),
      legend_(new PlotLegend(this)),
      ticks_(new MarkTicks(this, marks)),
      overlay_(new PlotOverlay(this)) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setFocusPolicy(Qt::NoFocus);
  setInteractions(QCP::iNone);
  setAutoAddPlottableToLegend(false);
  setPlottingHint(QCP::phFastPolylines);
  legend->setVisible(false);
  xAxis->setTicker(timeTicker_);
  yAxis->setTicker(valueTicker_);
  yAxis2->setTicker(secondTicker_);
  yAxis2->grid()->setVisible(false);
  addLayer(paleLayer, layer("grid"));
  plotLayout()->insertRow(0);
  plotLayout()->addElement(0, 0, legend_);
  plotLayout()->setRowSpacing(0);
  legend_->setMargins({12, 8, 12, 0});
  axisRect()->setMinimumMargins({12, 10, 12, 8});
  connect(this, &QCustomPlot::afterLayout, this, [this] { Fill(); });
  SetColors(colors_);
}

void PlotSurface::SetColors(const PlotColors& colors) {
  colors_ = colors;
  setBackground(QBrush(colors.background));
  for (QCPAxis* axis : {xAxis, yAxis, yAxis2}) DressAxis(*axis, colors, font());
  legend_->SetLook(font(), colors.text);
  ticks_->SetColors(colors);
  overlay_->SetColors(colors);
  overlay_->SetFont(font());
  DressLines();
}

void PlotSurface::SetTitles(const QString& time, const QString& values, const QString& secondValues) {
  timeTitle_ = time;
  yAxis->setLabel(values);
  yAxis2->setLabel(secondValues);
}

void PlotSurface::SetTimes(PlotTimes times) {
  times_ = times;
  timeTicker_->SetTimes(times);
}

void PlotSurface::SetStyle(bool points, bool lines) {
  points_ = points;
  lineDrawn_ = lines || !points;
  DressLines();
}

void PlotSurface::ReplaceCurves() {
  clearGraphs();
  lines_.clear();
  const std::vector<CurveLook>& looks = curves_.Looks();
  int color = 0;
  for (const CurveLook& look : looks) {
    QCPAxis* values = look.secondAxis ? yAxis2 : yAxis;
    lines_.push_back({addGraph(xAxis, values), addGraph(xAxis, values), color});
    if (look.thin) lines_.back().curve->setLayer(paleLayer);
    if (!look.thin) ++color;
  }
  yAxis2->setVisible(curves_.UsesSecondAxis());
  DressLines();
}

QPen PlotSurface::PenOf(const Line& line, const CurveLook& look) const {
  if (look.thin) return QPen(colors_.PaleCurve(line.color), thin);
  return CurvePen(colors_.Curve(line.color), line.color, thick);
}

void PlotSurface::DressLines() {
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const QPen pen = PenOf(lines_[i], curves_.Looks()[i]);
    const QCPScatterStyle disc(QCPScatterStyle::ssDisc, pen.color(), pen.color(), pointSize);
    for (QCPGraph* graph : {lines_[i].curve, lines_[i].lonePoints}) {
      graph->setAdaptiveSampling(false);
      graph->setPen(pen);
      graph->setScatterStyle(disc);
    }
    lines_[i].curve->setLineStyle(lineDrawn_ ? QCPGraph::lsLine : QCPGraph::lsNone);
    if (!points_) lines_[i].curve->setScatterStyle(QCPScatterStyle::ssNone);
    lines_[i].lonePoints->setLineStyle(QCPGraph::lsNone);
  }
  FillLegend();
}

void PlotSurface::FillLegend() {
  std::vector<LegendEntry> entries;
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const CurveLook& look = curves_.Looks()[i];
    if (!look.visible || look.title.isEmpty()) continue;
    QPen pen = PenOf(lines_[i], look);
    if (!lineDrawn_) pen.setStyle(Qt::NoPen);
    entries.push_back({look.title, pen, false, false, points_});
  }
  if (marks_.Count(MarkKind::TimeOut) > 0) entries.push_back({tr("time-out"), colors_.timeOut, true, false});
  if (marks_.Count(MarkKind::WrongAnswer) > 0)
    entries.push_back({tr("wrong answer"), colors_.wrongAnswer, true, true});
  legend_->SetEntries(std::move(entries));
}

void PlotSurface::ShowView(const PlotView& view) {
  xAxis->setRange(view.time.from, view.time.to);
  yAxis->setRange(view.values.from, view.values.to);
  yAxis2->setRange(view.secondValues.from, view.secondValues.to);
  const QString unit = TimeUnit(times_, view.time);
  xAxis->setLabel(timeTitle_.isEmpty() || unit.isEmpty() ? timeTitle_ : timeTitle_ + " (" + unit + ")");
}

void PlotSurface::Draw(const PlotView& view) {
  FillLegend();
  ShowView(view);
  replot(rpQueuedRefresh);
}

double PlotSurface::PixelTime() const {
  return xAxis->range().size() / std::max(1, Area().width());
}

// Once it is known how wide the area is.
void PlotSurface::Fill() {
  for (std::size_t i = 0; i < lines_.size(); ++i) FillLine(lines_[i], curves_.Looks()[i]);
}

void PlotSurface::FillLine(const Line& line, const CurveLook& look) {
  const double density = density_ > 0 ? density_ : devicePixelRatioF();
  const int columns = std::max(1, static_cast<int>(Area().width() * density));
  const std::vector<Point> points =
      curves_.Drawn(look, {xAxis->range().lower, xAxis->range().upper}, columns);
  GraphData drawn;
  GraphData lone;
  drawn.reserve(static_cast<qsizetype>(points.size()));
  for (std::size_t i = 0; i < points.size(); ++i) {
    drawn.push_back({points[i].time, points[i].value});
    if (IsLone(points, i)) lone.push_back({points[i].time, points[i].value});
  }
  line.curve->data()->set(drawn, true);
  line.lonePoints->data()->set(lone, true);
  line.lonePoints->setVisible(lineDrawn_ && !points_);
}

}  // namespace quarlin
