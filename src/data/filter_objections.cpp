// SPDX-License-Identifier: GPL-3.0-or-later
#include <fmt/format.h>

#include <cmath>
#include <limits>

#include "data/filter.h"

namespace quarlin {
namespace {

constexpr int mostWidth = 100'001;
constexpr int mostOrder = 8;
constexpr double mostRipple = 20;

bool IsAbove0(double value) {
  return value > 0 && std::isfinite(value);
}

// What was typed and is no number arrives as NaN, or as the least integer.
std::string Shown(double value) {
  return std::isnan(value) ? "no number" : fmt::format("{}", value);
}

std::string Shown(int value) {
  return value == std::numeric_limits<int>::min() ? "no whole number" : fmt::format("{}", value);
}

std::string AboveZero(std::string_view what, double value, std::string_view unit = " Hz") {
  return fmt::format("{} must be above 0{}; it is {}.", what, unit, Shown(value));
}

using Sentence = std::optional<std::string>;

Sentence ObjectionToWidth(const FilterSettings& settings) {
  if (settings.width < 1 || settings.width > mostWidth) {
    return fmt::format("The width must be from 1 to {} values; it is {}.", mostWidth, Shown(settings.width));
  }
  if (settings.kind == FilterKind::Median && settings.width % 2 == 0) {
    return fmt::format("The width of a median must be odd, so that one value is in the middle; it is {}.",
                       Shown(settings.width));
  }
  return std::nullopt;
}

Sentence ObjectionToAlpha(const FilterSettings& settings) {
  if (settings.alpha > 0 && settings.alpha <= 1) return std::nullopt;
  return fmt::format("Alpha must be above 0 and at most 1; it is {}.", Shown(settings.alpha));
}

Sentence ObjectionToOrder(const FilterSettings& settings) {
  if (settings.order >= 1 && settings.order <= mostOrder) return std::nullopt;
  return fmt::format("The order must be from 1 to {}; it is {}.", mostOrder, Shown(settings.order));
}

// A digital filter knows no frequency from half the rate on: it sees it as a lower one.
Sentence ObjectionToFrequency(std::string_view what, double frequency, double rate) {
  if (!IsAbove0(frequency)) return AboveZero(what, frequency);
  if (frequency < rate / 2) return std::nullopt;
  return fmt::format("{} must be below half the rate, {} Hz; it is {}.", what, rate / 2, Shown(frequency));
}

Sentence ObjectionToRipple(const FilterSettings& settings) {
  if (settings.ripple > 0 && settings.ripple <= mostRipple) return std::nullopt;
  return fmt::format("The ripple must be above 0 and at most {} dB; it is {}.", mostRipple,
                     Shown(settings.ripple));
}

Sentence ObjectionToField(const FilterSettings& settings, FilterField field) {
  switch (field) {
    case FilterField::Width:
      return ObjectionToWidth(settings);
    case FilterField::Alpha:
      return ObjectionToAlpha(settings);
    case FilterField::Order:
      return ObjectionToOrder(settings);
    case FilterField::Cutoff:
      return ObjectionToFrequency("The cut-off", settings.cutoff, settings.rate);
    case FilterField::Ripple:
      return ObjectionToRipple(settings);
    case FilterField::Frequency:
      return ObjectionToFrequency("The frequency", settings.frequency, settings.rate);
    case FilterField::Q:
      return IsAbove0(settings.q) ? std::nullopt : Sentence(AboveZero("Q", settings.q, ""));
    case FilterField::Rate:
      return IsAbove0(settings.rate) ? std::nullopt : Sentence(AboveZero("The rate", settings.rate));
  }
  return std::nullopt;
}

// The rate comes first, since the frequencies are held against it.
constexpr FilterField fields[] = {FilterField::Rate,      FilterField::Width,  FilterField::Alpha,
                                  FilterField::Order,     FilterField::Cutoff, FilterField::Ripple,
                                  FilterField::Frequency, FilterField::Q};

}  // namespace

bool Reads(FilterKind kind, FilterField field) {
  switch (kind) {
    case FilterKind::None:
      return false;
    case FilterKind::MovingAverage:
    case FilterKind::Median:
      return field == FilterField::Width || field == FilterField::Rate;
    case FilterKind::Exponential:
      return field == FilterField::Alpha || field == FilterField::Rate;
    case FilterKind::Chebyshev:
      if (field == FilterField::Ripple) return true;
      [[fallthrough]];
    case FilterKind::Butterworth:
      return field == FilterField::Order || field == FilterField::Cutoff || field == FilterField::Rate;
    case FilterKind::Notch:
      return field == FilterField::Frequency || field == FilterField::Q || field == FilterField::Rate;
  }
  return false;
}

std::optional<FilterObjection> ObjectionTo(const FilterSettings& settings) {
  for (const FilterField field : fields) {
    if (!Reads(settings.kind, field)) continue;
    if (const Sentence sentence = ObjectionToField(settings, field)) return FilterObjection{field, *sentence};
  }
  return std::nullopt;
}

}  // namespace quarlin
