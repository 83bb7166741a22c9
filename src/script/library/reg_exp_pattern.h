// SPDX-License-Identifier: GPL-3.0-or-later
// The dialect of patterns that scripts write, put into the words of the library that searches.
//
//   . ^ $ | ( ) (?: ) (?= ) (?! ) [ ] [^ ]   * + ? {n} {n,} {n,m} and each of them with ? behind it
//   \d \D \w \W \s \S (ASCII only) \b \B   \f \n \r \t \v \cX \xHH \uHHHH \0 to \377   \1 and on
//
// Everything that the searching library knows beyond these is refused or stands for itself.
#pragma once

#include <string>
#include <string_view>

namespace quarlin::vbs {

// Where trying one way after the other can multiply, every way holds a callout "(?C)", so that the search
// can be watched. A pattern with a single choice needs none: from one place it takes no longer than the text.
struct SearchPattern {
  std::u16string text;
  bool unicode = false;  // case is ignored for letters beyond ASCII too: to be searched with all of Unicode
};

// Errors: 5017 for what the dialect does not have, 5018 for a quantifier with nothing to repeat, 5019 and
// 5020 for a bracket that is not closed, 5021 for a range that runs backwards.
SearchPattern TranslatePattern(std::u16string_view pattern, bool ignoreCase);

}  // namespace quarlin::vbs
