// SPDX-License-Identifier: GPL-3.0-or-later
// Digital filters as instruments have them, in double precision: moving average, median, exponential,
// Butterworth and Chebyshev low-pass (bilinear transform with pre-warping, second-order sections), notch.
//
// Each starts as if the first value had stood before it for ever.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace quarlin {

enum class FilterKind { None, MovingAverage, Median, Exponential, Butterworth, Chebyshev, Notch };

struct FilterSettings {
  FilterKind kind = FilterKind::None;
  int width = 5;          // moving average, median: values; odd for the median; 1 to 100001
  double alpha = 0.1;     // exponential: weight of the new value, above 0 up to 1
  int order = 2;          // low-pass: 1 to 8
  double cutoff = 1;      // Hz; Butterworth: -3 dB; Chebyshev: the edge of the ripple
  double ripple = 0.5;    // Chebyshev: dB, above 0 up to 20; the gain at 0 Hz is 1
  double frequency = 50;  // notch: Hz
  double q = 10;          // notch: frequency / width at -3 dB, above 0
  double rate = 100;      // of the values, Hz; for moving average, median and exponential only for what is
                          // said in seconds

  bool operator==(const FilterSettings&) const = default;
};

enum class FilterField { Width, Alpha, Order, Cutoff, Ripple, Frequency, Q, Rate };

// Whether a filter of `kind` reads `field`. The rate is read by all of them.
bool Reads(FilterKind kind, FilterField field);

// Why `settings` make no filter, as a sentence to stand beside the field; nothing where they do. Only what
// the kind reads is looked at. What was no number comes as NaN, or as the least integer there is.
struct FilterObjection {
  FilterField field;
  std::string sentence;
};
std::optional<FilterObjection> ObjectionTo(const FilterSettings& settings);

// One way, value by value, as an instrument does it while it measures. A gap (NaN, and what is not finite)
// passes as it is and leaves the state as it was.
class Filter {
 public:
  virtual ~Filter() = default;
  virtual double Step(double value) = 0;
  virtual void Reset() = 0;  // the next value stands before itself for ever
};

// Requires settings without an objection.
std::unique_ptr<Filter> MakeFilter(const FilterSettings& settings);

// The whole of `values`: one way, or both ways, forth and back, so that nothing is shifted. The way back
// starts as the way forth does: as if its first value, the last of the way forth, had stood for ever.
std::vector<double> Filtered(const FilterSettings& settings, std::span<const double> values, bool zeroPhase);

}  // namespace quarlin
