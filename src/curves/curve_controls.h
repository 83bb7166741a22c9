// SPDX-License-Identifier: GPL-3.0-or-later
// Which numbers of the answers become curves, and the filter that they go through.
#pragma once

#include "controls/controls.h"

namespace quarlin {

struct CurveControls : ControlGroup {
  using ControlGroup::ControlGroup;
  ComboBox cboCurveSource{*this, "cboCurveSource", {"Answers", "Parser output"}, "Answers"};
  ComboBox cboCurveRule{*this, "cboCurveRule", {"Number", "Column", "Expression"}, "Number"};

  // Places from 1, with commas between them, a curve each; or an expression.
  TextBox txtCurveRule{*this, "txtCurveRule", "1"};

  // In the order of FilterKind.
  ComboBox cboFilter{*this,
                     "cboFilter",
                     {"None", "Moving average", "Median", "Exponential", "Butterworth", "Chebyshev", "Notch"},
                     "None"};
  TextBox txtFilterWidth{*this, "txtFilterWidth", "5"};
  TextBox txtFilterAlpha{*this, "txtFilterAlpha", "0.1"};
  TextBox txtFilterOrder{*this, "txtFilterOrder", "2"};
  TextBox txtFilterCutoff{*this, "txtFilterCutoff", "1"};
  TextBox txtFilterRipple{*this, "txtFilterRipple", "0.5"};
  TextBox txtFilterFrequency{*this, "txtFilterFrequency", "50"};
  TextBox txtFilterQ{*this, "txtFilterQ", "10"};
  TextBox txtFilterRate{*this, "txtFilterRate", "10"};
  CheckBox chkZeroPhase{*this, "chkZeroPhase", "Both ways, without delay"};

  Label lblFiltered{*this, "lblFiltered"};  // the last live value behind the filter; empty: none
};

}  // namespace quarlin
