// SPDX-License-Identifier: GPL-3.0-or-later
// The program's icon, drawn at the sizes that desktops ask for.
#pragma once

#include <QIcon>

namespace quarlin {

QIcon WindowIcon();

}  // namespace quarlin
