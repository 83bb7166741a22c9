// SPDX-License-Identifier: GPL-3.0-or-later
// What a new script begins with.
#pragma once

#include <string_view>

#include "script/edit/edited_text.h"

namespace quarlin {

// The six procedures that the program calls, in "VBScript" or "JScript"; it runs and changes nothing.
EditedText ScriptTemplate(std::string_view language);

}  // namespace quarlin
