// SPDX-License-Identifier: GPL-3.0-or-later
// The calculator on the screen: its four views side by side with the form, and a button for each checksum.
#pragma once

#include <array>
#include <memory>

#include "calculator/frm_calculator.h"
#include "ui/qt/form_window.h"

namespace quarlin {

class ByteEdit;
namespace Ui {
class CalculatorWindow;
}

class CalculatorWindow : public FormWindow {
  Q_OBJECT

 public:
  explicit CalculatorWindow(FrmCalculator& form);
  ~CalculatorWindow() override;

 protected:
  void changeEvent(QEvent* event) override;
  void reject() override;  // Escape closes it

 private:
  void MakeSumButtons();
  void WireViews();
  void ShowMarks();
  ByteEdit& Edit(ByteView view);

  FrmCalculator& form_;
  std::unique_ptr<Ui::CalculatorWindow> ui_;
};

}  // namespace quarlin
