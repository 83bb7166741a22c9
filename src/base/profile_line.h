// SPDX-License-Identifier: GPL-3.0-or-later
// One line of a file in initialisation-file syntax, taken apart; profile_file.h describes the syntax.
#pragma once

#include <string>
#include <string_view>

namespace quarlin {

struct ProfileLine {
  enum class Kind { Other, Section, Entry };  // other: blank, a comment, or neither of the two

  Kind kind = Kind::Other;
  std::string_view name;   // of the section, or the key
  std::string_view value;  // of an entry, without the quotes around it
};

ProfileLine ReadProfileLine(std::string_view line);

// Takes the first line, without its end, off `text`. The LF of a CR LF makes an empty line of its own, which
// means nothing to a reader.
std::string_view TakeProfileLine(std::string_view& text);

// The value as a line holds it, so that reading gives the same again: in quotes where blanks or quotes at its
// ends would be dropped. It has no line end in it.
std::string QuotedProfileValue(std::string_view value);

}  // namespace quarlin
