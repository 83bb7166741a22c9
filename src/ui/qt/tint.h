// SPDX-License-Identifier: GPL-3.0-or-later
// The controls' colours on the desktop's palette.
#pragma once

#include <QColor>
#include <QPalette>
#include <QWidget>
#include <optional>

#include "controls/control.h"

namespace quarlin {

QColor ColorOf(Color color);

// The ground with that share of the colour, from 0 to 1, laid over it.
QColor Mixed(const QColor& ground, const QColor& color, double share);

// The palette of a widget with these colours: laid over the desktop's as a tint, so that the text stays
// readable in light and dark, also while the widget is disabled.
QPalette Tinted(const QWidget& widget, std::optional<Color> back, std::optional<Color> fore);

// Gives faint texts, such as a field's "Find", the colour of its text, half transparent. Some desktops leave
// theirs black on a dark field. To be called at the start and when the desktop's palette has changed.
void KeepPlaceholdersReadable();

}  // namespace quarlin
