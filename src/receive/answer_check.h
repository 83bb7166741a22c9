// SPDX-License-Identifier: GPL-3.0-or-later
// What is asked of a complete string: its length, its text, its checksum.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "exchange/verdict.h"

namespace quarlin {

struct AnswerRules {
  std::int32_t length = 0;               // that a string must have; 0 for any
  std::optional<std::string_view> same;  // that it must equal
};

// The first objection to a string: its length, else its text.
std::optional<Finding> CheckAnswer(std::string_view text, const AnswerRules& rules);

// The objection to the checksum in the last characters of `text`, by the entry of the checksum list;
// `stripped` is the text without its terminator. See FindChecksumMismatch.
std::optional<Finding> CheckAnswerSum(std::string_view text, std::string_view stripped, int listIndex);

}  // namespace quarlin
