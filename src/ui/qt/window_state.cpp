// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/window_state.h"

#include <QEvent>

namespace quarlin {

void FollowState(Form& form, QWidget& window) {
  if (!form.TakeStateWish()) return;
  Qt::WindowStates states = window.windowState();
  states.setFlag(Qt::WindowMinimized, form.State() == WindowState::Minimized);
  if (form.State() != WindowState::Minimized) {  // it comes back as it was
    states.setFlag(Qt::WindowMaximized, form.State() == WindowState::Maximized);
  }
  window.setWindowState(states);
}

void NoteState(Form& form, const QWidget& window, const QEvent& change) {
  if (change.type() != QEvent::WindowStateChange) return;
  form.NoteState(window.isMinimized()   ? WindowState::Minimized
                 : window.isMaximized() ? WindowState::Maximized
                                        : WindowState::Normal);
}

}  // namespace quarlin
