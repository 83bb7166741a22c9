// SPDX-License-Identifier: GPL-3.0-or-later
#include "curves/load_choice.h"

#include <cmath>
#include <stdexcept>

#include "base/numbers.h"
#include "data/rule_text.h"

namespace quarlin {
namespace {

std::vector<NumberRule> RulesOf(const LoadChoice& choice, std::string& trouble) {
  try {
    auto rules = RulesIn(choice.kind, choice.which, choice.decimal);
    for (const NumberRule& rule : rules) NumberReader{rule};
    return rules;
  } catch (const std::invalid_argument& objection) {
    trouble = objection.what();
    return {NumberRule{}};
  }
}

void SetRate(LoadSettings& settings, std::string_view text) {
  const auto rate = NumberOf(text);
  if (!rate || !(*rate > 0) || std::isinf(*rate)) {
    settings.timeTrouble = "The rate is a number of rows a second, above 0.";
  } else {
    settings.table.rate = *rate;
  }
}

void SetTimeColumn(LoadSettings& settings, std::string_view text) {
  const auto column = NumberOf(text);
  if (!column || *column < 1 || *column > 10'000 || *column != std::floor(*column)) {
    settings.timeTrouble = "The column is a whole number; 1 is the first.";
  } else {
    settings.table.timeColumn = static_cast<int>(*column);
  }
}

}  // namespace

LoadSettings SettingsOf(const LoadChoice& choice) {
  LoadSettings settings;
  settings.table.rules = RulesOf(choice, settings.numberTrouble);
  settings.table.time = choice.time;
  settings.table.separator = choice.separator;
  if (choice.time == TableSettings::Time::Rate) SetRate(settings, choice.rate);
  if (choice.time == TableSettings::Time::Column) SetTimeColumn(settings, choice.timeColumn);
  return settings;
}

LoadChoice ChoiceOf(const TableSettings& settings, LoadChoice choice) {
  choice.kind = settings.rules.front().kind;
  choice.which.clear();
  for (const NumberRule& rule : settings.rules) {
    choice.which += (choice.which.empty() ? "" : ",") + std::to_string(rule.place);
  }
  if (choice.kind == NumberRule::Kind::Group) choice.which = settings.rules.front().expression;
  choice.time = settings.time;
  if (settings.time == TableSettings::Time::Column) choice.timeColumn = std::to_string(settings.timeColumn);
  return choice;
}

}  // namespace quarlin
