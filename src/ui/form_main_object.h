// SPDX-License-Identifier: GPL-3.0-or-later
// The main window as scripts see it, "FormMain": the methods and properties that docs/scripts.md lists, and
// every control by name.
#pragma once

#include <functional>

#include "link/link.h"
#include "script/values/dispatch.h"

namespace quarlin {

class FrmMain;

// `linkChanged` is told when a script has opened or closed the link. All of it outlives the object.
vbs::ObjectRef MakeFormMainObject(FrmMain& frm, Link& link, const std::function<void()>& linkChanged);

}  // namespace quarlin
