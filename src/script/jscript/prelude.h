// SPDX-License-Identifier: GPL-3.0-or-later
// The part of the language's surroundings that is written in the language itself.
#pragma once

#include <string>

namespace quarlin::jscript {

// An expression: a function of (bridge, global object) that prepares the global object and returns what the
// engine calls: makeFacade, show, hide, run, procedures, and the names builtIns.
std::u16string Prelude();

}  // namespace quarlin::jscript
