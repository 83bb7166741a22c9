// SPDX-License-Identifier: GPL-3.0-or-later
#include "curves/filtered_curves.h"

#include <algorithm>

namespace quarlin {

void FilteredCurves::Set(std::vector<Series> raw) {
  curves_.clear();
  otherUnits_.assign(raw.size(), "");
  for (Series& series : raw) {
    curves_.push_back(std::make_unique<Curve>());
    curves_.back()->raw = std::move(series);
    Refilter(*curves_.back());
  }
}

bool FilteredCurves::Append(std::size_t curve, Point point) {
  Curve& grown = *curves_[curve];
  if (grown.filter) grown.filtered.Append({point.time, grown.filter->Step(point.value)});
  return grown.raw.Append(point);
}

void FilteredCurves::SetUnit(std::size_t curve, std::string_view unit) {
  Curve& told = *curves_[curve];
  const bool sure = told.raw.unit.empty() || unit == told.raw.unit || unit == otherUnits_[curve];
  otherUnits_[curve] = sure ? "" : unit;
  if (!sure || unit == told.raw.unit) return;
  told.raw.unit = unit;
  told.filtered.unit = unit;
}

void FilteredCurves::SetFilter(const FilterChoice& choice) {
  const bool same = choice.settings == choice_.settings && choice.bothWays == choice_.bothWays;
  if (same && choice.Usable() == choice_.Usable()) return;
  choice_ = choice;
  for (const auto& curve : curves_) Refilter(*curve);
}

bool FilteredCurves::Empty() const {
  return std::ranges::all_of(curves_, [](const auto& curve) { return curve->raw.Size() == 0; });
}

void FilteredCurves::Refilter(Curve& curve) const {
  curve.filtered.Clear();
  curve.filtered.name = curve.raw.name;
  curve.filtered.unit = curve.raw.unit;
  curve.filter = choice_.Usable() ? MakeFilter(choice_.settings) : nullptr;
  if (!curve.filter) return;
  if (!choice_.bothWays) {
    for (std::size_t i = 0; i < curve.raw.Size(); ++i) {
      const Point point = curve.raw.At(i);
      curve.filtered.Append({point.time, curve.filter->Step(point.value)});
    }
    return;
  }
  std::vector<Point> points = curve.raw.Points(0, curve.raw.Size());
  std::vector<double> values;
  values.reserve(points.size());
  for (const Point& point : points) values.push_back(point.value);
  values = Filtered(choice_.settings, values, true);
  for (std::size_t i = 0; i < points.size(); ++i) curve.filtered.Append({points[i].time, values[i]});
}

}  // namespace quarlin
