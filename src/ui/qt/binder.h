// SPDX-License-Identifier: GPL-3.0-or-later
// Ties the controls of a collection to the widgets of a form by name, both ways.
#pragma once

#include <QObject>
#include <QWidget>
#include <memory>
#include <string_view>
#include <unordered_map>

#include "base/hook.h"
#include "controls/collection.h"
#include "ui/qt/bindings.h"
#include "ui/qt/frame_pacer.h"

namespace quarlin {

class Binder : public QObject {
  Q_OBJECT

 public:
  // A control without a widget of its name and kind is left out. Further widgets of a control, such as a
  // setting that is wanted on two pages, have its name in the property "mirrors". Collection and window
  // outlive the binder, which is the only one to look at the collection's changes.
  Binder(ControlCollection& controls, QWidget& window);
  ~Binder() override;

  // Binds the widgets of another window as well, which may go before the binder.
  void Include(QWidget& window);

  // Told just before what the user did goes to the control, with what she reads beside it.
  Hook<void(const Control& control, std::string_view caption)> OnEdit;

  // Everything typed so far takes effect. Buttons do so by themselves; menus have to ask for it.
  void CommitEdits();

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void BindWidgetsOf(QWidget& window);
  void Bind(Control& control, QWidget& widget);
  void Forget(const QWidget& window);
  void Frame();
  QString CaptionBeside(const QWidget& widget) const;

  ControlCollection& controls_;
  QWidget& window_;
  struct Bound {
    const QWidget* window;
    std::unique_ptr<Binding> binding;
  };
  std::unordered_multimap<const Control*, Bound> bindings_;
  FramePacer pacer_;
};

}  // namespace quarlin
