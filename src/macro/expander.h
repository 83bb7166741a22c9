// SPDX-License-Identifier: GPL-3.0-or-later
// The macro language of the strings to send: counters, random values, character codes, checksums. The
// table of the macros and their order is in docs/macros.md.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "macro/macro_controls.h"

namespace quarlin {

// Lives for the whole run of the program.
struct ExpanderState {
  std::int32_t MainCounter = 0;
  bool CounterWrapped = false;  // MainCounter passed its maximum and was reloaded
  std::int16_t Cnt1 = 0;
  std::int16_t Cnt2 = 0;
  std::int16_t Cnt3 = 0;
  std::int16_t LastRnd1 = 0;  // [CHRND] leaves its code here too
  std::int16_t LastRnd2 = 0;
  std::int16_t LastRnd3 = 0;
  std::string LastChecksum;
  bool ExpandBusy = false;   // an expansion is on the stack
  bool CounterStop = false;  // a string used a counter beyond its maximum while chkStopCounter is on
};

// Replaces the first occurrence; true if there was one. An empty search text occurs nowhere.
bool ReplaceFirst(std::string& text, std::string_view search, std::string_view replacement);

// Replaces until none is left; true if there was one. Never ends where the replacement contains the
// search text; no macro's does.
bool ReplaceAll(std::string& text, std::string_view search, std::string_view replacement);

// Only the "{nn}" pass: "{41}" gives "A", "{{" gives "{", anything else in braces stays.
std::string ExpandHexCodes(std::string_view text);

class Expander {
 public:
  // Whether the line being sent advances MainCounter: always, except in sequence mode, where only the
  // first line of the file does.
  using AdvancesCounter = std::function<bool()>;

  // `random` gives uniform numbers in [0, 1).
  Expander(MacroControls& controls, AdvancesCounter advancesCounter, std::function<double()> random);

  ExpanderState State;

  // Expands in place and returns the expanded text. What is no macro, or a malformed one, stays as it
  // is; a step that cannot be done is skipped. Does not yield.
  const std::string& ExpandMacros(std::string& text);

 private:
  MacroControls& controls_;
  AdvancesCounter advancesCounter_;
  std::function<double()> random_;
};

}  // namespace quarlin
