// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/number_rule.h"

#include <fmt/format.h>

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

#include <array>
#include <stdexcept>

#include "data/cells.h"

namespace quarlin {
namespace {

template <auto Free>
struct Freed {
  template <typename T>
  void operator()(T* object) const {
    Free(object);
  }
};
using Code = std::unique_ptr<pcre2_code, Freed<pcre2_code_free>>;
using MatchData = std::unique_ptr<pcre2_match_data, Freed<pcre2_match_data_free>>;
using MatchContext = std::unique_ptr<pcre2_match_context, Freed<pcre2_match_context_free>>;

// Steps of one match: some milliseconds, which no sensible expression needs for a row.
constexpr std::uint32_t mostSteps = 100'000;

// One text after the other that takes them all: the expression is no use, and thousands more would stop the
// program.
constexpr int mostExhausting = 100;

Code Compiled(const std::string& expression) {
  if (expression.empty())
    throw std::invalid_argument("An expression is missing, such as \"net *([-+0-9.]+)\".");
  int error = 0;
  PCRE2_SIZE place = 0;
  Code code(pcre2_compile(reinterpret_cast<PCRE2_SPTR>(expression.data()), expression.size(), 0, &error,
                          &place, nullptr));
  if (!code) {
    std::array<PCRE2_UCHAR, 256> words{};
    pcre2_get_error_message(error, words.data(), words.size());
    throw std::invalid_argument(fmt::format("The expression cannot be understood at its character {}: {}.",
                                            place + 1, reinterpret_cast<const char*>(words.data())));
  }
  pcre2_jit_compile(code.get(), PCRE2_JIT_COMPLETE);  // where there is none, matching is slower, and the same
  return code;
}

// The group that is meant: "value", else the first, else 0, which is all that was matched.
std::size_t GroupOf(const pcre2_code* code) {
  const int named = pcre2_substring_number_from_name(code, reinterpret_cast<PCRE2_SPTR>("value"));
  if (named > 0) return static_cast<std::size_t>(named);
  std::uint32_t groups = 0;
  pcre2_pattern_info(code, PCRE2_INFO_CAPTURECOUNT, &groups);
  return groups > 0 ? 1 : 0;
}

class Expression {
 public:
  explicit Expression(const std::string& expression)
      : code_(Compiled(expression)),
        data_(pcre2_match_data_create_from_pattern(code_.get(), nullptr)),
        context_(pcre2_match_context_create(nullptr)),
        group_(GroupOf(code_.get())) {
    pcre2_set_match_limit(context_.get(), mostSteps);
  }

  std::optional<std::string_view> Find(std::string_view text) {
    if (exhausting_ == mostExhausting) return std::nullopt;
    const int count = pcre2_match(code_.get(), reinterpret_cast<PCRE2_SPTR>(text.data()), text.size(), 0, 0,
                                  data_.get(), context_.get());
    exhausting_ = count == PCRE2_ERROR_MATCHLIMIT ? exhausting_ + 1 : 0;
    if (count <= static_cast<int>(group_)) return std::nullopt;
    const PCRE2_SIZE* places = pcre2_get_ovector_pointer(data_.get());
    const PCRE2_SIZE begin = places[group_ * 2];
    const PCRE2_SIZE end = places[group_ * 2 + 1];
    if (begin == PCRE2_UNSET || end < begin) return std::nullopt;
    return text.substr(begin, end - begin);
  }

 private:
  Code code_;
  MatchData data_;
  MatchContext context_;
  std::size_t group_;
  int exhausting_ = 0;  // texts, up to the last one
};

std::optional<ReadNumber> NthIn(NumberScanner numbers, int& left) {
  while (auto number = numbers.Next()) {
    if (--left == 0) return number;
  }
  return std::nullopt;
}

std::optional<ReadNumber> Nth(std::string_view text, int place, char separator, DecimalSign sign) {
  if (separator != ',') return NthIn(NumberScanner(text, sign), place);
  Cells cells(text, separator);
  while (const auto cell = cells.Next()) {
    if (auto number = NthIn(NumberScanner(*cell, sign), place)) return number;
  }
  return std::nullopt;
}

}  // namespace

std::string NameOf(const NumberRule& rule) {
  if (!rule.name.empty()) return rule.name;
  if (rule.kind == NumberRule::Kind::Group) return rule.expression;
  if (rule.kind == NumberRule::Kind::Column) return fmt::format("Column {}", rule.place);
  return rule.place == 1 ? "Number" : fmt::format("Number {}", rule.place);
}

std::string MissingBy(const NumberRule& rule) {
  switch (rule.kind) {
    case NumberRule::Kind::Group:
      return "no number by the expression";
    case NumberRule::Kind::Column:
      return fmt::format("no number in column {}", rule.place);
    case NumberRule::Kind::Nth:
      break;
  }
  return rule.place == 1 ? "no number" : fmt::format("no number {}", rule.place);
}

struct NumberReader::Parts {
  explicit Parts(const NumberRule& rule) : kind(rule.kind), place(rule.place), decimal(rule.decimal) {
    if (kind == NumberRule::Kind::Group) {
      expression = std::make_unique<Expression>(rule.expression);
    } else if (place < 1) {
      throw std::invalid_argument(kind == NumberRule::Kind::Nth ? "Numbers are counted from 1."
                                                                : "Columns are counted from 1.");
    }
  }

  NumberRule::Kind kind;
  int place;
  DecimalSign decimal;
  std::unique_ptr<Expression> expression;
};

NumberReader::NumberReader(const NumberRule& rule) : parts_(std::make_unique<Parts>(rule)) {}
NumberReader::~NumberReader() = default;
NumberReader::NumberReader(NumberReader&&) noexcept = default;
NumberReader& NumberReader::operator=(NumberReader&&) noexcept = default;

std::optional<ReadNumber> NumberReader::Read(std::string_view text, char separator) const {
  if (parts_->kind == NumberRule::Kind::Nth) return Nth(text, parts_->place, separator, parts_->decimal);
  const auto part = parts_->kind == NumberRule::Kind::Group ? parts_->expression->Find(text)
                                                            : CellAt(text, parts_->place, separator);
  return part ? LeadingNumber(*part, parts_->decimal) : std::nullopt;
}

}  // namespace quarlin
