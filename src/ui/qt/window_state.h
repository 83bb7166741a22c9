// SPDX-License-Identifier: GPL-3.0-or-later
// Minimized, maximized or as it is placed: between a form and its window.
#pragma once

#include <QWidget>

#include "controls/form.h"

namespace quarlin {

// Brings the window into the state that somebody has set at the form since the last call.
void FollowState(Form& form, QWidget& window);

// To be told of every change of the window.
void NoteState(Form& form, const QWidget& window, const QEvent& change);

}  // namespace quarlin
