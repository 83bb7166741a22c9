// SPDX-License-Identifier: GPL-3.0-or-later
// The script languages of the program.
#pragma once

#include "script/script_engine.h"

namespace quarlin {

std::unique_ptr<ScriptEngine> MakeEngine(std::string_view language, vbs::Services& services);

}  // namespace quarlin
