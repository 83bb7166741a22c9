// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/plot/cursor_table.h"

#include <QObject>
#include <algorithm>
#include <cmath>

#include "ui/plot/axis_tickers.h"

namespace quarlin {

namespace {

// A count of points from the first one there ever was, as an index of those that are kept.
std::uint64_t First(const Series& series) {
  return series.Dropped();
}

QString Cell(const QString& text, const char* align = "right") {
  return QString("<td align=\"%1\" style=\"padding-left: 14px\">%2</td>").arg(align, text);
}

QString Cell(std::optional<double> value, double step) {
  return Cell(value ? ReadingText(*value, step) : QString("–"));
}

QString RowText(const CursorRow& row) {
  std::optional<double> difference;
  if (row.first && row.second) difference = *row.second - *row.first;
  return "<tr>" + Cell(row.title.toHtmlEscaped(), "left") + Cell(row.first, row.step) +
         Cell(row.second, row.step) + Cell(difference, row.step) + Cell(row.mean, row.step / 10) + "</tr>";
}

QString TimeRow(Span times, PlotTimes kind, double step) {
  const Span difference{0, std::abs(times.Size())};
  const QString unit = TimeUnit(kind, times);
  const QString name = kind == PlotTimes::Rows ? QObject::tr("Row") : QObject::tr("Time (%1)").arg(unit);
  return "<tr>" + Cell(name, "left") + Cell(TimeText(times.from, kind, times, step)) +
         Cell(TimeText(times.to, kind, times, step)) + Cell(TimeText(difference.to, kind, times, step)) +
         Cell(QString()) + "</tr>";
}

}  // namespace

MeanBetween::MeanBetween(const Series& series, Span time)
    : series_(series),
      to_(std::nextafter(time.to, CurveSet::forEver)),
      next_(First(series) + series.IndexAt(time.from)) {}

bool MeanBetween::TakeMore(std::size_t most) {
  next_ = std::max(next_, First(series_));
  const std::uint64_t last = First(series_) + series_.IndexAt(to_);
  const std::uint64_t end = std::min(last, next_ + most);
  if (next_ >= end) return false;
  const auto from = static_cast<std::size_t>(next_ - First(series_));
  for (const Point& point : series_.Points(from, from + static_cast<std::size_t>(end - next_))) {
    if (std::isnan(point.value)) continue;
    ++count_;
    mean_ += (point.value - mean_) / static_cast<double>(count_);
  }
  next_ = end;
  return next_ < last;
}

std::optional<double> MeanBetween::Mean() const {
  if (count_ == 0) return {};
  return mean_;
}

QString CursorTable(Span times, PlotTimes kind, double timeStep, const std::vector<CursorRow>& rows) {
  QString table = "<table cellspacing=\"0\"><tr>" + Cell(QString(), "left");
  for (const QString& head : {QObject::tr("Cursor 1"), QObject::tr("Cursor 2"), QObject::tr("Difference"),
                              QObject::tr("Mean between")})
    table += Cell("<b>" + head + "</b>");
  table += "</tr>" + TimeRow(times, kind, timeStep);
  for (const CursorRow& row : rows) table += RowText(row);
  return table + "</table>";
}

double ReadingStep(const Span& span) {
  constexpr double parts = 5000;
  return std::pow(10, std::floor(std::log10(span.Size() / parts)));
}

}  // namespace quarlin
