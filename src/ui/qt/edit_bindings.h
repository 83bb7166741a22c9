// SPDX-License-Identifier: GPL-3.0-or-later
// The bindings of what can be typed into. A typed text takes effect on Enter or when the box is left; in
// a combo box for which the form says "immediate", with every key.
#pragma once

#include <QComboBox>
#include <QLineEdit>
#include <cstdint>
#include <optional>

#include "controls/controls.h"
#include "ui/qt/bindings.h"

namespace quarlin {

// On a page that is not shown it waits: what changes with every string that comes is laid out when somebody
// can see it.
class TextBoxBinding : public Binding {
 public:
  TextBoxBinding(TextBox& control, QLineEdit& widget, const UserSide& user);
  void Commit() override;

 private:
  void ShowValue() override;
  void ShowBorder(const Looks& look) override { widget_.setFrame(look.borderStyle != 0); }
  void ShowLimits();
  void ShowSelection();
  void NoteSelection();

  TextBox& control_;
  QLineEdit& widget_;
  UserSide user_;
  bool formReadOnly_;
  int formMaxLength_;
  bool waits_ = false;
};

class ComboBoxBinding : public Binding {
 public:
  ComboBoxBinding(ComboBox& control, QComboBox& widget, const UserSide& user);
  void Commit() override;

 private:
  void ShowValue() override;
  void Fill();
  void FillRows();
  void ShowDescriptions();
  bool UserTypes() const;

  ComboBox& control_;
  QComboBox& widget_;
  UserSide user_;
  std::optional<std::uint64_t> shownList_;  // revision of the list that the widget holds
};

}  // namespace quarlin
