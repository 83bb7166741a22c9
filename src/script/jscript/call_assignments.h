// SPDX-License-Identifier: GPL-3.0-or-later
// Assignments to a call, which the language has for members of host objects and the toolkit's engine refuses:
//
//   d.Item("k") = 1      becomes      d.Item.$entry("k").$value = 1
//
// where $entry gives an object that remembers the call, and reading or writing its $value makes it. So `+=`,
// `++` and chains work as for any other target. Nothing else of the text is touched, and no line is moved.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quarlin::jscript {

struct Insertion {
  std::size_t at;  // in the text as it was
  std::u16string_view text;
};

// In the order of the text.
std::vector<Insertion> CallAssignments(std::u16string_view source);

std::u16string WithInsertions(std::u16string_view source, const std::vector<Insertion>& insertions);

// Where in a line as it was a column of the same line with its insertions lies. `line` is what begins at
// `begin` of the text.
int OriginalColumn(int column, std::size_t begin, std::size_t length,
                   const std::vector<Insertion>& insertions);

}  // namespace quarlin::jscript
