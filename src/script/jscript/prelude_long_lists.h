// SPDX-License-Identifier: GPL-3.0-or-later
// The part of the prelude that keeps functions over long lists and texts from being uninterruptible.
#pragma once

#include <string_view>

namespace quarlin::jscript {

// Statements of the prelude's function, behind all that prepares the language and in front of its result.
std::u16string_view LongLists();

}  // namespace quarlin::jscript
