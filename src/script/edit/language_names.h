// SPDX-License-Identifier: GPL-3.0-or-later
// The names that a script finds when it begins, as the interpreter itself has them. All are ASCII.
#pragma once

#include <string>
#include <vector>

namespace quarlin {

// Of VBScript, in small letters.
std::vector<std::string> KeywordNames();

// Functions and constants of VBScript's library, as the library writes them.
std::vector<std::string> FunctionNames();
std::vector<std::string> ConstantNames();

}  // namespace quarlin
