// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <bit>
#include <cmath>
#include <complex>
#include <numbers>

#include "data/compensated_sum.h"
#include "data/statistics.h"

namespace quarlin {
namespace {

constexpr std::size_t fewestValues = 8;
constexpr std::size_t mostValues = std::size_t{1} << 20;

using Complex = std::complex<double>;

bool IsGap(const Point& point) {
  return !std::isfinite(point.value);
}

// Without the gaps at both ends, at most the last 2^20.
std::span<const Point> Usable(std::span<const Point> points) {
  while (!points.empty() && IsGap(points.back())) points = points.first(points.size() - 1);
  if (points.size() > mostValues) points = points.last(mostValues);
  while (!points.empty() && IsGap(points.front())) points = points.subspan(1);
  return points;
}

std::vector<double> Bridged(std::span<const Point> points) {
  std::vector<double> values;
  values.reserve(points.size());
  std::size_t last = 0;  // the one before the gap
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (IsGap(points[i])) continue;
    for (std::size_t gap = last + 1; gap < i; ++gap) {
      const double part = static_cast<double>(gap - last) / static_cast<double>(i - last);
      values.push_back(std::lerp(points[last].value, points[i].value, part));
    }
    values.push_back(points[i].value);
    last = i;
  }
  return values;
}

void TakeOutTheMean(std::vector<double>& values) {
  CompensatedSum sum;
  for (const double value : values) sum.Add(value);
  const double mean = sum.MeanOver(static_cast<double>(values.size()));
  for (double& value : values) value -= mean;
}

// Brings each value to the place whose binary digits are those of its own in reverse.
void Reorder(std::vector<Complex>& values) {
  std::size_t reversed = 0;
  for (std::size_t i = 1; i < values.size(); ++i) {
    std::size_t digit = values.size() / 2;
    for (; (reversed & digit) != 0; digit /= 2) reversed ^= digit;
    reversed ^= digit;
    if (i < reversed) std::swap(values[i], values[reversed]);
  }
}

// The discrete Fourier transform in place; the size is a power of two. Every turn comes from the table, since
// turns that are multiplied up lose digits.
void Transform(std::vector<Complex>& values) {
  const std::size_t size = values.size();
  std::vector<Complex> turns(size / 2);
  for (std::size_t i = 0; i < turns.size(); ++i) {
    turns[i] = std::polar(1.0, -2 * std::numbers::pi * static_cast<double>(i) / static_cast<double>(size));
  }
  Reorder(values);
  for (std::size_t half = 1; half < size; half *= 2) {
    for (std::size_t begin = 0; begin < size; begin += 2 * half) {
      for (std::size_t i = begin; i < begin + half; ++i) {
        const Complex turn = turns[(i - begin) * (size / 2 / half)];
        const Complex& far = values[i + half];
        // Written out: the operator also asks for infinities.
        const Complex turned(far.real() * turn.real() - far.imag() * turn.imag(),
                             far.real() * turn.imag() + far.imag() * turn.real());
        values[i + half] = values[i] - turned;
        values[i] += turned;
      }
    }
  }
}

double Hann(std::size_t place, std::size_t count) {
  return 0.5 - 0.5 * std::cos(2 * std::numbers::pi * static_cast<double>(place) / static_cast<double>(count));
}

}  // namespace

Spectrum SpectrumOf(std::span<const Point> points, double rate) {
  std::vector<double> values = Bridged(Usable(points));
  if (values.size() < fewestValues) return {};
  TakeOutTheMean(values);
  std::vector<Complex> lines(std::bit_ceil(values.size()));
  for (std::size_t i = 0; i < values.size(); ++i) lines[i] = values[i] * Hann(i, values.size());
  Transform(lines);
  // The window lets half of each value pass, and a sine shares its amplitude with the negative frequency.
  const double oneSided = 4 / static_cast<double>(values.size());
  Spectrum spectrum{rate / static_cast<double>(lines.size()), {}};
  for (std::size_t i = 0; i <= lines.size() / 2; ++i) {
    spectrum.amplitudes.push_back(std::abs(lines[i]) * oneSided);
  }
  spectrum.amplitudes.front() /= 2;
  spectrum.amplitudes.back() /= 2;
  return spectrum;
}

}  // namespace quarlin
