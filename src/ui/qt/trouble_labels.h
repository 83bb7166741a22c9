// SPDX-License-Identifier: GPL-3.0-or-later
// Labels that say what is wrong with a field.
#pragma once

#include <QLabel>
#include <initializer_list>

namespace quarlin {

// Shows them in a red that can be read on the colours of `window`, which has them, also when those change.
void ShowAsTrouble(QWidget& window, std::initializer_list<QLabel*> labels);

}  // namespace quarlin
