// Which number of a text is meant: the n-th one, what a named group of an expression matched, or a column.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace quarlin {

// Blanks, point or comma as decimal sign, exponents, a unit directly behind or after blanks. Nothing where
// `text` does not begin with a number. "1,234.5" is 1234.5: of two different signs the last is the decimal
// one.
struct ReadNumber {
  double value;
  std::string_view unit;  // what stands behind it up to the next blank or separator; may be empty
};

// What `rule` says:
struct NumberRule {
  enum class Kind { Nth, Group, Column };
  Kind kind = Kind::Nth;
  int place = 1;           // Nth, Column: from 1
  std::string expression;  // Group: a regular expression of PCRE2; the group "value" or the first one
  std::string name;        // of the curve; empty: one is made from the rule
};

// A rule that is ready to be used.
class NumberReader {
 public:
  // Throws std::invalid_argument with a sentence for the user: place below 1, an expression that is none.
  explicit NumberReader(const NumberRule& rule);
  ~NumberReader();
  NumberReader(NumberReader&&) noexcept;
  NumberReader& operator=(NumberReader&&) noexcept;

  // `separator` of columns: ';', ',', tab or blank. Nothing where there is no such number.
  std::optional<ReadNumber> Read(std::string_view text, char separator = ';') const;

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace quarlin
