// Message boxes in a window.
#pragma once

#include <QPointer>
#include <QWidget>

#include "controls/prompts.h"

namespace quarlin {

class QtPrompts : public Prompts {
 public:
  // The window that the boxes belong to; without one they stand alone.
  void SetWindow(QWidget* window) { window_ = window; }

  void ShowMessage(std::string_view text, std::string_view title) override;
  void Dismiss() override;

 private:
  QPointer<QWidget> window_;
  QPointer<QWidget> box_;  // while one is shown
};

}  // namespace quarlin
