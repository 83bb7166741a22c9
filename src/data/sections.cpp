// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/sections.h"

#include <cmath>
#include <complex>
#include <numbers>

namespace quarlin {
namespace {

using Kind = SectionDesign::Kind;

// What has died away is 0: numbers that a processor can only just hold cost it a hundred times the time.
constexpr double leastState = 1e-290;

// An offset so many times as large as a value costs it digits: where a device says "9.9E37" before it
// measures.
constexpr double mostAbove = 1e6;

double WithoutRemains(double state) {
  return std::abs(state) < leastState ? 0 : state;
}

double Warped(double frequency, double rate) {
  return std::tan(std::numbers::pi * frequency / rate);
}

// The poles of a low-pass lie on an ellipse, mirrored at the real axis; of a Butterworth on the unit circle.
struct Ellipse {
  double realAxis = 1;
  double imaginaryAxis = 1;
};

Ellipse ChebyshevEllipse(int order, double ripple) {
  const double excess = std::sqrt(std::expm1(ripple * std::numbers::ln10 / 10));
  const double size = std::asinh(1 / excess) / order;
  return {std::sinh(size), std::cosh(size)};
}

// The gain is 1 at 0 Hz, section by section. So the gain of a Chebyshev low-pass of even order is 1 at the
// edge of its ripple, too, and higher in between; that of one of odd order is 1 at most.
std::vector<SectionDesign> LowPass(int order, double corner, const Ellipse& ellipse) {
  std::vector<SectionDesign> sections;
  if (order % 2 == 1) sections.push_back({Kind::First, corner * ellipse.realAxis, 0});
  for (int pair = order / 2; pair >= 1; --pair) {
    const double angle = (2 * pair - 1) * std::numbers::pi / (2 * order);
    const double real = ellipse.realAxis * std::sin(angle);
    const double size = std::hypot(real, ellipse.imaginaryAxis * std::cos(angle));
    sections.push_back({Kind::Second, corner * size, 2 * real / size});
  }
  return sections;
}

}  // namespace

double SectionDesign::GainAt(double warped) const {
  const double u = warped / corner;
  switch (kind) {
    case Kind::First:
      return 1 / std::hypot(1, u);
    case Kind::Second:
      return 1 / std::hypot(1 - u * u, damping * u);
    case Kind::Notch:
      // Divided by u, so that nothing overflows at half the rate.
      return u == 0 ? 1 : std::abs(1 / u - u) / std::hypot(1 / u - u, damping);
  }
  return 1;
}

double SectionDesign::Delay() const {
  return (kind == Kind::First ? 1 : damping) / (2 * corner);
}

std::vector<SectionDesign> SectionsOf(const FilterSettings& settings) {
  switch (settings.kind) {
    case FilterKind::Butterworth:
      return LowPass(settings.order, Warped(settings.cutoff, settings.rate), {});
    case FilterKind::Chebyshev:
      return LowPass(settings.order, Warped(settings.cutoff, settings.rate),
                     ChebyshevEllipse(settings.order, settings.ripple));
    case FilterKind::Notch:
      return {{Kind::Notch, Warped(settings.frequency, settings.rate), 1 / settings.q}};
    default:
      return {};
  }
}

SectionChain::Section::Section(const SectionDesign& design)
    : kind(design.kind),
      corner(design.corner),
      damping(design.damping),
      feedback(damping + corner),
      loop(1 / (1 + (kind == Kind::First ? corner : corner * feedback))) {}

double SectionChain::Section::Step(double value) {
  if (kind == Kind::First) {
    const double half = corner * loop * (value - outer);
    const double result = outer + half;
    outer = WithoutRemains(outer + 2 * half);
    return result;
  }
  const double halfInner = corner * loop * (value - outer - feedback * inner);
  const double band = inner + halfInner;
  inner = WithoutRemains(inner + 2 * halfInner);
  const double halfOuter = corner * band;
  const double low = outer + halfOuter;
  outer = WithoutRemains(outer + 2 * halfOuter);
  return kind == Kind::Notch ? value - damping * band : low;
}

SectionChain::SectionChain(const std::vector<SectionDesign>& designs)
    : sections_(designs.begin(), designs.end()) {}

void SectionChain::Start(double first) {
  offset_ = first;
  for (Section& section : sections_) section.inner = section.outer = 0;
}

// The same filter seen from another offset: its answer moves by as much.
void SectionChain::MoveOffset(double offset) {
  for (Section& section : sections_) section.outer -= offset - offset_;
  offset_ = offset;
}

double SectionChain::Next(double value) {
  if (std::abs(offset_) > mostAbove * std::abs(value)) MoveOffset(value);
  value -= offset_;
  for (Section& section : sections_) value = section.Step(value);
  return offset_ + value;
}

}  // namespace quarlin
