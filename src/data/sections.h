// SPDX-License-Identifier: GPL-3.0-or-later
// Low-pass and notch as a chain of sections of second and first order.
//
// A section is kept as two integrators by the trapezoidal rule in a loop, not as the five coefficients of its
// difference equation: both are the same equation, by the bilinear transform, but where the cut-off is low
// the coefficients differ from 2 and 1 by what a double hardly holds, and their rounding moves the poles. The
// integrators see the small numbers themselves: the cut-off may be a millionth of the rate.
#pragma once

#include <vector>

#include "data/filter.h"
#include "data/started_filter.h"

namespace quarlin {

// With u = tan(pi f / rate) / corner as the frequency, the section's gain is, of the
//   first order   1 / (1 + ju)
//   second order  1 / (1 - u^2 + j damping u)
//   notch         (1 - u^2) / (1 - u^2 + j damping u)
struct SectionDesign {
  enum class Kind { First, Second, Notch };
  Kind kind;
  double corner;   // pre-warped: tan(pi f / rate)
  double damping;  // 1 / Q

  double GainAt(double warped) const;  // `warped` is tan(pi f / rate)
  double Delay() const;                // at 0 Hz, in values
};

// Those of the low-pass kinds and the notch, the best damped one first; empty for other kinds.
std::vector<SectionDesign> SectionsOf(const FilterSettings& settings);

class SectionChain : public StartedFilter {
 public:
  explicit SectionChain(const std::vector<SectionDesign>& designs);

 private:
  struct Section {
    SectionDesign::Kind kind;
    double corner;
    double damping;
    double feedback;   // damping + corner
    double loop;       // what closes the loop without a delay
    double inner = 0;  // the integrators' states; a first-order section has the outer one only
    double outer = 0;

    explicit Section(const SectionDesign& design);
    double Step(double value);
  };

  void Start(double first) override;
  double Next(double value) override;
  void MoveOffset(double offset);

  std::vector<Section> sections_;
  double offset_ = 0;  // only what differs from it passes the sections: a large one costs no digits
};

}  // namespace quarlin
