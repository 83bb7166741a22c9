// SPDX-License-Identifier: GPL-3.0-or-later
// The bar above a script's text: finds, and replaces what it finds.
#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QWidget>

#include "ui/editor/text_finder.h"

namespace quarlin {

class ScriptView;

class FindBar : public QWidget {
  Q_OBJECT

 public:
  // Hidden at first. The view outlives it.
  explicit FindBar(ScriptView& view, QWidget* parent = nullptr);

  // Shows it with the keyboard in it, and with what is selected as the text to find.
  void Open(bool withReplacement);

  void FindNext();
  void FindPrevious();

 protected:
  void keyPressEvent(QKeyEvent* event) override;  // Escape closes it

 private:
  QWidget* MakeFindRow();
  QWidget* MakeReplaceRow();
  TextFinder Finder() const;
  void Select(const FoundText& found);
  FoundText Selection() const;
  void ShowFound(const std::optional<FoundText>& found);
  void LookAgain();
  void Replace();
  void ReplaceAll();
  void Close();

  ScriptView& view_;
  QLineEdit* find_;
  QLineEdit* with_;
  QCheckBox* case_;
  QCheckBox* word_;
  QCheckBox* expression_;
  QLabel* note_;
  QWidget* replaceRow_;
};

}  // namespace quarlin
