// SPDX-License-Identifier: GPL-3.0-or-later
// The bar above a script's text: finds, colours all that it finds while it is open, and replaces it.
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

  // Where nothing to find was given yet, they open it.
  void FindNext();
  void FindPrevious();

  // The text is not any more what it was. While it is open, it counts and colours anew.
  void TextChanged();

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
  void MarkAll(const TextFinder& finder, const QString& text);
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
  bool told_ = false;  // the last change was its own, and what it says of it stays
};

}  // namespace quarlin
