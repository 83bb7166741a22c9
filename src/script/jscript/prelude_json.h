// SPDX-License-Identifier: GPL-3.0-or-later
// The part of the prelude that reads and writes long JSON, which the engine does without a look at its stack
// or at an interruption.
#pragma once

#include <string_view>

namespace quarlin::jscript {

// Statements of the prelude's function, behind those of LongLists.
std::u16string_view LongJson();

}  // namespace quarlin::jscript
