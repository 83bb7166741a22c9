// SPDX-License-Identifier: GPL-3.0-or-later
// How far the lines of a VBScript are indented: by the blocks that the interpreter's own words begin and end.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace quarlin {

// What a line does to the blocks around it. "For i = 1 To 3 : Next" does nothing to them.
struct LineShape {
  int opens = 0;          // blocks that go on behind it
  int closes = 0;         // blocks from above that end in it
  bool isBranch = false;  // Else, ElseIf or Case: ends a part of a block and begins the next
  bool isCase = false;
  bool isSelect = false;  // the last block that it opens is a Select Case

  bool IndentsNext() const { return opens > 0; }
};
LineShape ShapeOf(std::u16string_view line);

// The line, from 0, where the block begins that this one ends or branches; nothing where it does neither.
using LineAt = std::function<std::u16string(int line)>;
std::optional<int> OpenerOf(int line, const LineAt& lineAt);

}  // namespace quarlin
