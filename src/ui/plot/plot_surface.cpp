// SPDX-License-Identifier: GPL-3.0-or-later
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

// A line that goes up and down by more pixels than this for each one to the right is drawn rough.
constexpr double roughness = 8;

using GraphData = QVector<QCPGraphData>;

bool IsGap(const Point& point) {
  return std::isnan(point.value);
}

// All ways up and down along a line.
double Height(const std::vector<Point>& points) {
  double height = 0;
  for (std::size_t i = 1; i < points.size(); ++i) {
    const double way = std::abs(points[i].value - points[i - 1].value);
    if (!std::isnan(way)) height += way;
  }
  return height;
}

double PixelsPerValue(const QCPAxis& axis) {
  return std::abs(axis.coordToPixel(axis.range().upper) - axis.coordToPixel(axis.range().lower)) /
         axis.range().size();
}

// Points between two gaps that are no further apart than `width`: as a line they would hardly be seen.
GraphData LonePoints(const std::vector<Point>& points, double width) {
  GraphData lone;
  for (auto begin = points.begin(); begin != points.end();) {
    const auto end = std::find_if(begin, points.end(), IsGap);
    if (begin != end && (end - 1)->time - begin->time <= width) lone.push_back({begin->time, begin->value});
    begin = std::find_if_not(end, points.end(), IsGap);
  }
  return lone;
}

}  // namespace

PlotSurface::PlotSurface(const CurveSet& curves, const MarkList& marks, QWidget* parent)
    : QCustomPlot(parent),
      curves_(curves),
      marks_(marks),
      legend_(new PlotLegend(this)),
      ticks_(new MarkTicks(this, marks)),
      overlay_(new PlotOverlay(this)) {
  setWindowTitle(tr("Plot"));
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
  if (title_) title_->setTextColor(colors.text);
  ticks_->SetColors(colors);
  overlay_->SetColors(colors);
  overlay_->SetFont(font());
  DressLines();
}

void PlotSurface::SetTitle(const QString& title) {
  if (title.isEmpty()) return;
  setWindowTitle(title);
  QFont bold = font();
  bold.setBold(true);
  title_ = new QCPTextElement(this, title, bold);
  title_->setTextColor(colors_.text);
  title_->setTextFlags(Qt::AlignLeft | Qt::AlignVCenter);
  title_->setMargins({12, 8, 12, 0});
  plotLayout()->insertRow(0);
  plotLayout()->addElement(0, 0, title_);
}

void PlotSurface::SetAxisTitles(const QString& time, const QString& values, const QString& secondValues) {
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
    lines_.push_back({new CurveGraph(xAxis, values), new CurveGraph(xAxis, values), color});
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
    for (CurveGraph* graph : {lines_[i].curve, lines_[i].lonePoints}) {
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

// What can be drawn by itself is a second picture that lies over the first in every frame, which costs as
// much as the curves; so there is one only while it is of use.
void PlotSurface::ChooseBuffers() {
  const bool moves = overlay_->cursors.shown || overlay_->box;
  layer("overlay")->setMode(moves ? QCPLayer::lmBuffered : QCPLayer::lmLogical);
}

void PlotSurface::DrawOverlay() {
  ChooseBuffers();
  layer("overlay")->replot();
}

void PlotSurface::Draw(const PlotView& view) {
  ChooseBuffers();
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
  const Span time{xAxis->range().lower, xAxis->range().upper};
  const double density = onPaper_ ? paperDensity : devicePixelRatioF();
  const auto drawn = [&](double columnsPerPixel) {
    return curves_.Drawn(look, time, std::max(1, static_cast<int>(Area().width() * columnsPerPixel)));
  };
  std::vector<Point> points = drawn(1);
  const bool rough =
      !onPaper_ && Height(points) * PixelsPerValue(*line.curve->valueAxis()) > roughness * Area().width();
  if (!rough && density > 1) points = drawn(density);
  line.curve->SetRough(rough);

  GraphData graph;
  graph.reserve(static_cast<qsizetype>(points.size()));
  for (const Point& point : points) graph.push_back({point.time, point.value});
  line.curve->data()->set(graph, true);
  line.lonePoints->data()->set(LonePoints(points, PixelTime()), true);
  line.lonePoints->setVisible(lineDrawn_ && !points_);
}

}  // namespace quarlin
