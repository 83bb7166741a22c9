// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/plot/axis_tickers.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace quarlin {

namespace {

constexpr double minute = 60;
constexpr double hour = 3600;
constexpr double day = 24 * hour;
constexpr std::array<double, 16> clockSteps{
    1,          2,           5,           10,          15,   30,       minute,   2 * minute,
    5 * minute, 10 * minute, 15 * minute, 30 * minute, hour, 3 * hour, 6 * hour, 12 * hour};

bool IsClock(PlotTimes times, const Span& range) {
  return times == PlotTimes::Seconds && (range.Size() >= 3 * minute || range.to >= hour);
}

bool HasHours(const Span& range) {
  return range.to >= hour || range.from <= -hour;
}

// Decimals that `step` needs to be written in full: 0 for 2, 1 for 2.5, 2 for 0.25.
int DecimalsOf(double step) {
  constexpr int most = 15;
  int decimals = 0;
  for (double shifted = step; decimals < most; ++decimals, shifted *= 10)
    if (shifted > 0.5 && std::abs(shifted - std::round(shifted)) < 1e-6 * shifted) break;
  return decimals;
}

QString ClockText(double time, bool hours, double step) {
  const int decimals = DecimalsOf(std::min(step, 1.0));
  const double unit = std::pow(10, -decimals);
  double rest = std::round(std::abs(time) / unit) * unit;
  const double wholeHours = hours ? std::floor(rest / hour) : 0;
  rest -= wholeHours * hour;
  const double minutes = std::floor(rest / minute);
  const QString seconds = QString::number(rest - minutes * minute, 'f', decimals)
                              .rightJustified(decimals > 0 ? decimals + 3 : 2, '0');
  const QString sign = time < 0 && std::abs(time) > unit / 2 ? "-" : "";
  if (!hours) return sign + QString("%1:%2").arg(minutes, 0, 'f', 0).arg(seconds);
  return sign + QString("%1:%2:%3")
                    .arg(wholeHours, 0, 'f', 0)
                    .arg(static_cast<int>(minutes), 2, 10, QChar('0'))
                    .arg(seconds);
}

}  // namespace

QString ReadingText(double value, double step) {
  constexpr double fewestDigits = 1e-6;
  constexpr double mostDigits = 1e10;
  if (std::abs(value) < step * 1e-6) value = 0;
  if (step >= fewestDigits && std::abs(value) < mostDigits)
    return QString::number(value, 'f', DecimalsOf(step));
  if (value == 0) return "0";
  const double digits = std::ceil(std::log10(std::abs(value) / step)) + 1;
  return QString::number(value, 'g', static_cast<int>(std::clamp(digits, 2.0, 16.0)));
}

QString TimeText(double time, PlotTimes times, const Span& range, double step) {
  if (!IsClock(times, range)) return ReadingText(time, step);
  return ClockText(time, HasHours(range), step);
}

QString TimeUnit(PlotTimes times, const Span& range) {
  if (times == PlotTimes::Rows) return {};
  if (!IsClock(times, range)) return "s";
  return HasHours(range) ? "h:min:s" : "min:s";
}

double ValueTicker::getTickStep(const QCPRange& range) {
  step_ = QCPAxisTicker::getTickStep(range);
  return step_;
}

QString ValueTicker::getTickLabel(double tick, const QLocale&, QChar, int) {
  return ReadingText(tick, step_);
}

double TimeTicker::getTickStep(const QCPRange& range) {
  range_ = {range.lower, range.upper};
  ValueTicker::getTickStep(range);
  if (times_ == PlotTimes::Rows) step_ = std::max(step_, 1.0);
  if (!IsClock(times_, range_) || step_ < 1) return step_;
  const double wanted = range.size() / mTickCount;
  const auto step = std::lower_bound(clockSteps.begin(), clockSteps.end(), wanted * 0.8);
  step_ = step != clockSteps.end() ? *step : std::max(1.0, cleanMantissa(wanted / day)) * day;
  return step_;
}

QString TimeTicker::getTickLabel(double tick, const QLocale&, QChar, int) {
  return TimeText(tick, times_, range_, step_);
}

}  // namespace quarlin
