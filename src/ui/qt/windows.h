// SPDX-License-Identifier: GPL-3.0-or-later
// The windows beside the main one: which view shows which form, in one table.
#pragma once

#include <QWidget>
#include <memory>
#include <vector>

#include "controls/form.h"
#include "ui/qt/form_window.h"

namespace quarlin {

class Windows {
 public:
  // Shows the forms from now on, each in a window that is made when it is needed first. The forms and the
  // main window outlive this object.
  Windows(const std::vector<Form*>& forms, QWidget& mainWindow);
  ~Windows();
  Windows(const Windows&) = delete;
  Windows& operator=(const Windows&) = delete;

  // Told about each window that has been made, before it is shown; `showsMain`: controls of the main window
  // stand in it, too.
  Hook<void(QWidget& window, bool showsMain)> OnMade;

 private:
  struct WindowRow;
  static const WindowRow rows[];
  struct Shown {
    Form* form;
    const WindowRow* row;
    std::unique_ptr<FormWindow> window;
  };

  void Follow(Form& form);
  void ShowState(Shown& shown);
  FormWindow& WindowOf(Shown& shown);

  QWidget& mainWindow_;
  std::vector<std::unique_ptr<Shown>> shown_;
};

}  // namespace quarlin
