// SPDX-License-Identifier: GPL-3.0-or-later
// One line of help for each name of VBScript and of the program's objects.
#pragma once

#include <string_view>

namespace quarlin {

// "Mid(text, start[, length]): a part of the text"; empty for a name that is not known. Capitals make no
// difference. `owner` is what the name is a member of: an object's name, "Err", "Control" for what controls
// have, empty for what stands alone.
std::string_view HelpLine(std::string_view owner, std::string_view name);

// The same without VBScript's own names.
std::string_view ProgramHelpLine(std::string_view owner, std::string_view name);

}  // namespace quarlin
