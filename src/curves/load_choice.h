// SPDX-License-Identifier: GPL-3.0-or-later
// What a user has chosen for numbers that are to be loaded, as fields.
#pragma once

#include <string>

#include "data/table_reader.h"

namespace quarlin {

struct LoadChoice {
  NumberRule::Kind kind = NumberRule::Kind::Nth;
  std::string which = "1";  // places with commas between them, or an expression
  DecimalSign decimal = DecimalSign::Either;
  char separator = 0;  // as in TableSettings
  TableSettings::Time time = TableSettings::Time::Row;
  std::string rate = "10";       // Hz
  std::string timeColumn = "1";  // from 1
};

// What comes of it, or the sentences that stand beside its fields.
struct LoadSettings {
  TableSettings table;
  std::string numberTrouble;
  std::string timeTrouble;

  bool Usable() const { return numberTrouble.empty() && timeTrouble.empty(); }
};
LoadSettings SettingsOf(const LoadChoice& choice);

// The way back, for settings that are proposed; what they do not tell stays as it is in `choice`.
LoadChoice ChoiceOf(const TableSettings& settings, LoadChoice choice);

}  // namespace quarlin
