// SPDX-License-Identifier: GPL-3.0-or-later
// The words of JScript, of its library, and of what the program adds to it, each with a line of help.
#pragma once

#include <span>
#include <string_view>

namespace quarlin {

struct JscriptWord {
  std::string_view owner;  // "Math"; "." for what texts, lists, dates and patterns have; empty: stands alone
  std::string_view name;   // as the language writes it: capitals count
  std::string_view help;   // "Math.abs(number): without its sign"
};

std::span<const JscriptWord> JscriptWords();

}  // namespace quarlin
