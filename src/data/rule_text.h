// SPDX-License-Identifier: GPL-3.0-or-later
// The rules as a user writes them into one field.
#pragma once

#include <string_view>
#include <vector>

#include "data/number_rule.h"
#include "data/table_reader.h"

namespace quarlin {

// For numbers and columns their places from 1, with commas between them, a curve each; for a group the
// expression. Throws std::invalid_argument with a sentence for the user: no place, too many of them. An
// expression is looked at by NumberReader.
std::vector<NumberRule> RulesIn(NumberRule::Kind kind, std::string_view text,
                                DecimalSign decimal = DecimalSign::Either);

}  // namespace quarlin
