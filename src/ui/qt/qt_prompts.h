// SPDX-License-Identifier: GPL-3.0-or-later
// Message boxes in a window.
#pragma once

#include <QMessageBox>
#include <QPointer>
#include <QWidget>

#include "controls/prompts.h"

namespace quarlin {

class QtPrompts : public Prompts {
 public:
  // The window that the boxes belong to; without one they stand alone.
  void SetWindow(QWidget* window) { window_ = window; }

  void ShowMessage(std::string_view text, std::string_view title) override;
  int MsgBox(std::u16string_view text, std::int32_t style, std::u16string_view title) override;
  std::optional<std::u16string> InputBox(std::u16string_view prompt, std::u16string_view title,
                                         std::u16string_view proposal) override;
  bool Confirm(std::string_view question, std::string_view title) override;
  SaveAnswer AskToSave(std::string_view question, std::string_view title) override;
  void Dismiss() override;

 private:
  QWidget* Parent() const;
  QMessageBox* MakeBox(const QString& text, const QString& title) const;
  void Run(QDialog& box);

  QPointer<QWidget> window_;
  QPointer<QDialog> box_;  // while one is shown
};

}  // namespace quarlin
