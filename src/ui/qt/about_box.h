// SPDX-License-Identifier: GPL-3.0-or-later
// Version, licence and the libraries of the program.
#pragma once

class QMessageBox;
class QWidget;

namespace quarlin {

// A box over `window` that deletes itself when it is closed.
QMessageBox* MakeAboutBox(QWidget& window);

}  // namespace quarlin
