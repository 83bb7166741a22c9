// SPDX-License-Identifier: GPL-3.0-or-later
// A value as a debugger shows it: a line of a tree, which is opened piece by piece.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "script/values/value.h"

namespace quarlin {

struct ShownValue {
  std::u16string name;
  std::u16string text;  // of a bounded length: a long text is cut, with its length behind it
  std::u16string type;  // the word of TypeName; empty for what could not be read
  bool opens = false;   // there are, or may be, parts in it
  vbs::Value value;     // to be let go of as soon as the script goes on
};

ShownValue Show(std::u16string name, vbs::Value value);

// What could not be read, with the reason in its place.
ShownValue ShowFailure(std::u16string name, std::u16string_view why);

inline constexpr std::size_t shownAtOnce = 100;

struct ShownParts {
  std::vector<ShownValue> rows;
  bool more = false;  // there are some behind them
};

// The parts of a value from number `first` on, shownAtOnce of them: elements, fields, properties, items.
// Reading a property of the program's or the library's objects is harmless; procedures of the script's own
// classes are not run.
ShownParts PartsOf(const vbs::Value& value, std::size_t first = 0);

// The beginning of a text as one line, with quotation marks around it and signs for what cannot be seen.
std::u16string QuotedText(std::u16string_view text, std::size_t most);

}  // namespace quarlin
