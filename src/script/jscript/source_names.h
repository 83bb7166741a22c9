// SPDX-License-Identifier: GPL-3.0-or-later
// Names in the text of a script, found without a full parse.
#pragma once

#include <set>
#include <string>
#include <string_view>

namespace quarlin::jscript {

using Names = std::set<std::u16string, std::less<>>;

// Everything that is spelled like a name, also in texts and comments, because a text may go to eval.
Names NamesIn(std::u16string_view source);

// What the top level declares by var, let, const, class or function. A regular expression behind a closing
// brace or parenthesis is taken for a division, which may miss or invent a name behind it.
Names DeclaredNames(std::u16string_view source);

}  // namespace quarlin::jscript
