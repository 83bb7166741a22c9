// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/binder.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QComboBox>
#include <QCoreApplication>
#include <QEvent>
#include <QLabel>
#include <QMultiHash>

#include "ui/qt/widget_text.h"

namespace quarlin {

Binder::Binder(ControlCollection& controls, QWidget& window)
    : controls_(controls), window_(window), pacer_([this] { Frame(); }) {
  BindWidgetsOf(window_);
  controls_.Changes().Take();  // all of it is shown by now
  controls_.Changes().onFirst = [this] { pacer_.Request(); };
}

Binder::~Binder() {
  controls_.Changes().onFirst = nullptr;
}

void Binder::Include(QWidget& window) {
  BindWidgetsOf(window);
  connect(&window, &QObject::destroyed, this, [this, &window] { Forget(window); });
}

void Binder::Forget(const QWidget& window) {
  std::erase_if(bindings_, [&window](const auto& bound) { return bound.second.window == &window; });
}

void Binder::BindWidgetsOf(QWidget& window) {
  QMultiHash<QString, QWidget*> named;  // looked for once, not for each control
  for (QWidget* widget : window.findChildren<QWidget*>()) {
    const QString mirrored = widget->property("mirrors").toString();
    const QString name = mirrored.isEmpty() ? widget->objectName() : mirrored;
    if (!name.isEmpty()) named.insert(name, widget);
  }
  for (Control* control : controls_.All()) {
    for (QWidget* widget : named.values(WidgetName(*control))) Bind(*control, *widget);
  }
  window.installEventFilter(this);
}

void Binder::Bind(Control& control, QWidget& widget) {
  const UserSide user{[this](const std::function<void()>& action) {
                        CommitEdits();
                        action();
                      },
                      [this](const Control& edited, const QWidget& at) {
                        if (OnEdit) OnEdit(edited, BytesOf(CaptionBeside(at)));
                      }};
  auto binding = MakeBinding(control, widget, user);
  if (!binding) return;
  if (qobject_cast<QComboBox*>(&widget) != nullptr || qobject_cast<QAbstractSlider*>(&widget) != nullptr) {
    widget.setFocusPolicy(Qt::StrongFocus);
    widget.installEventFilter(this);
  }
  binding->Show();
  bindings_.emplace(&control, Bound{widget.window(), std::move(binding)});
}

QString Binder::CaptionBeside(const QWidget& widget) const {
  const auto* button = qobject_cast<const QAbstractButton*>(&widget);
  if (button != nullptr && !button->text().isEmpty()) return WithoutMnemonic(button->text());
  if (!widget.accessibleName().isEmpty()) return widget.accessibleName();
  for (const QLabel* label : widget.window()->findChildren<QLabel*>()) {
    if (label->buddy() == &widget) return WithoutMnemonic(label->text());
  }
  return widget.objectName();
}

void Binder::CommitEdits() {
  for (const auto& [control, bound] : bindings_) bound.binding->Commit();
}

void Binder::Frame() {
  for (const Control* control : controls_.Changes().Take()) {
    const auto [first, end] = bindings_.equal_range(control);
    for (auto bound = first; bound != end; ++bound) bound->second.binding->Show();
  }
  // Painted here and now, so that the pacer knows what it costs.
  QCoreApplication::sendPostedEvents(&window_, QEvent::UpdateRequest);
}

bool Binder::eventFilter(QObject* object, QEvent* event) {
  if (static_cast<QWidget*>(object)->isWindow()) {
    // The desktop went from light to dark, or back: the tints are mixed anew.
    if (event->type() == QEvent::PaletteChange) {
      for (const auto& [control, bound] : bindings_) bound.binding->Show();
    }
    return false;
  }
  // The wheel over a box that is not in use scrolls the panel around it and changes no setting.
  if (event->type() != QEvent::Wheel || static_cast<QWidget*>(object)->hasFocus()) return false;
  event->ignore();
  return true;
}

}  // namespace quarlin
