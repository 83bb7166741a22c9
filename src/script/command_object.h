// SPDX-License-Identifier: GPL-3.0-or-later
// The command panel as scripts see it.
#pragma once

#include "script/frm_command.h"
#include "script/script_waits.h"
#include "script/values/dispatch.h"

namespace quarlin {

// Panel and waits outlive the object.
vbs::ObjectRef MakeCommandObject(FrmCommand& panel, ScriptWaits& waits);

}  // namespace quarlin
