// SPDX-License-Identifier: GPL-3.0-or-later
// A file that is dropped on a window.
#pragma once

#include <QString>
#include <functional>

class QWidget;

namespace quarlin {

// From now on `window` accepts one file of this machine at a time, and `take` gets its path. Several files at
// once and what is no file are refused while they are still over the window. Lives as long as the window.
void TakeDroppedFiles(QWidget& window, std::function<void(const QString& file)> take);

}  // namespace quarlin
