// SPDX-License-Identifier: GPL-3.0-or-later
// Which number of a text is meant: the n-th one, what a named group of an expression matched, or a column.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "data/number_text.h"

namespace quarlin {

// What `rule` says:
struct NumberRule {
  enum class Kind { Nth, Group, Column };
  Kind kind = Kind::Nth;
  int place = 1;             // Nth, Column: from 1
  std::string expression{};  // Group: a regular expression of PCRE2; the group "value", or the first, or all
  std::string name{};        // of the curve; empty: one is made from the rule
  DecimalSign decimal = DecimalSign::Either;
};

// The curve's name: the rule's own, or "Number", "Number 2", "Column 2", the expression.
std::string NameOf(const NumberRule& rule);

// What is said where it finds none: "no number", "no number in column 3".
std::string MissingBy(const NumberRule& rule);

// A rule that is ready to be used.
class NumberReader {
 public:
  // Throws std::invalid_argument with a sentence for the user: place below 1, an expression that is none.
  explicit NumberReader(const NumberRule& rule);
  ~NumberReader();
  NumberReader(NumberReader&&) noexcept;
  NumberReader& operator=(NumberReader&&) noexcept;

  // `separator` of columns: ';', ',', tab or blank. Where it is the comma, no number goes across one outside
  // quotes. Nothing where there is no such number, also where an expression would take too long to match;
  // once that was so of a hundred texts one after the other, it is not tried any more.
  std::optional<ReadNumber> Read(std::string_view text, char separator = ';') const;

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace quarlin
