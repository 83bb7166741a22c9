// SPDX-License-Identifier: GPL-3.0-or-later
#include "macro/expander.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <utility>

#include "base/numbers.h"
#include "base/scope_flag.h"
#include "macro/character_ranges.h"
#include "macro/checksum_macros.h"

namespace quarlin {
namespace {

// Replaces the first occurrence until none is left, each by a fresh text from `next`.
bool ReplaceEach(std::string& text, std::string_view search, const std::function<std::string()>& next) {
  if (search.empty()) return false;
  std::size_t at = text.find(search);
  if (at == std::string::npos) return false;
  do {
    text.replace(at, search.size(), next());
    // The new text can complete an occurrence with what stands left of it, but none further left.
    at = text.find(search, at - std::min(at, search.size() - 1));
  } while (at != std::string::npos);
  return true;
}

std::string Character(int code) {
  return {static_cast<char>(code)};
}

// The main counter in one of its forms; nothing when it cannot be written so.
using CounterText = std::optional<std::string>;

struct CounterForm {
  std::string_view macro;
  CounterText (*write)(std::int32_t value, int digits);
};

// A mistyped number of digits must neither hang the program nor eat its memory.
constexpr int mostDigits = 1000;

CounterText HexCounter(std::int32_t value, int digits) {
  if (digits < 0) return std::nullopt;
  const std::size_t kept = static_cast<std::size_t>(std::min(digits, mostDigits));
  std::string text = Hexadecimal(static_cast<std::uint32_t>(value));
  if (text.size() > kept) text.erase(0, text.size() - kept);
  return text.insert(0, kept - text.size(), '0');
}

CounterText DecimalCounter(std::int32_t value, int digits) {
  if (digits < 0) return std::nullopt;
  return PaddedDecimal(value, std::min(digits, mostDigits));
}

CounterText CharacterCounter(std::int32_t value, int) {
  if (value < 0 || value > 255) return std::nullopt;
  return Character(value);
}

constexpr std::array<CounterForm, 3> counterForms{{
    {"[COUNTERHEX]", HexCounter},
    {"[COUNTER]", DecimalCounter},
    {"[COUNTERASC]", CharacterCounter},
}};

struct SmallCounter {
  std::string_view next;
  std::string_view current;
  std::string_view clear;
  std::int16_t ExpanderState::*value;
  int digits;
  int last;  // followed by 1
};

constexpr std::array<SmallCounter, 3> smallCounters{{
    {"[CNT1]", "[CCNT1]", "[ZCNT1]", &ExpanderState::Cnt1, 1, 9},
    {"[CNT2]", "[CCNT2]", "[ZCNT2]", &ExpanderState::Cnt2, 2, 99},
    {"[CNT3]", "[CCNT3]", "[ZCNT3]", &ExpanderState::Cnt3, 3, 999},
}};

struct RandomNumber {
  std::string_view next;
  std::string_view last;
  std::int16_t ExpanderState::*value;
  int digits;
  int greatest;
};

constexpr std::array<RandomNumber, 3> randomNumbers{{
    {"[RND1]", "[CRND1]", &ExpanderState::LastRnd1, 1, 9},
    {"[RND2]", "[CRND2]", &ExpanderState::LastRnd2, 2, 99},
    {"[RND3]", "[CRND3]", &ExpanderState::LastRnd3, 3, 999},
}};

// One walk through all macros in their order.
class Pass {
 public:
  Pass(std::string& text, ExpanderState& state, MacroControls& controls,
       const Expander::AdvancesCounter& advancesCounter, const std::function<double()>& random)
      : text_(text), state_(state), controls_(controls), advancesCounter_(advancesCounter), random_(random) {}

  void Run() {
    if (Holds('^')) WriteLineEnds();
    if (Holds('{')) text_ = ExpandHexCodes(text_);
    // All that follows begins with a bracket, and nothing brings one into a text that has none.
    const bool bracketed = Holds('[');
    const bool counted = bracketed && WriteMainCounter();
    controls_.lblCounter.SetInteger(state_.MainCounter);
    if (counted && advancesCounter_()) AdvanceMainCounter();
    if (!bracketed) return;
    WriteSmallCounters();
    ExpandCharacterRanges(text_);
    WriteRandomValues();
    ExpandChecksums(text_, state_.LastChecksum);
  }

 private:
  bool Holds(char character) const { return text_.find(character) != std::string::npos; }

  void WriteLineEnds() {
    ReplaceAll(text_, "^r", "\r");
    ReplaceAll(text_, "^p", "\r\n");
  }

  bool WriteMainCounter();
  void AdvanceMainCounter();
  void WriteSmallCounters();
  void WriteRandomValues();
  int RandomUpTo(int greatest) { return static_cast<int>(random_() * greatest) + 1; }

  std::string& text_;
  ExpanderState& state_;
  MacroControls& controls_;
  const Expander::AdvancesCounter& advancesCounter_;
  const std::function<double()>& random_;
};

// True when the counter was written, in any form.
bool Pass::WriteMainCounter() {
  bool written = false;
  for (const CounterForm& form : counterForms) {
    if (text_.find(form.macro) == std::string::npos) continue;
    if (controls_.chkStopCounter.Checked() && state_.MainCounter > controls_.txtMax.Integer()) {
      state_.CounterStop = true;
    }
    const CounterText text = form.write(state_.MainCounter, controls_.txtcfr.Integer());
    if (text && ReplaceAll(text_, form.macro, *text)) written = true;
  }
  return written;
}

// A sum that leaves the 32 bits is not made.
void Pass::AdvanceMainCounter() {
  using Limits = std::numeric_limits<std::int32_t>;
  const std::int64_t sum = std::int64_t{state_.MainCounter} + controls_.txtStep.Integer();
  if (sum >= Limits::min() && sum <= Limits::max()) state_.MainCounter = static_cast<std::int32_t>(sum);
  if (state_.MainCounter <= controls_.txtMax.Integer() || controls_.chkStopCounter.Checked()) return;
  state_.MainCounter = controls_.txtmin.Integer();
  state_.CounterWrapped = true;
}

void Pass::WriteSmallCounters() {
  for (const SmallCounter& counter : smallCounters) {
    ReplaceEach(text_, counter.next, [&] {
      const int next = state_.*counter.value + 1;
      state_.*counter.value = static_cast<std::int16_t>(next > counter.last ? 1 : next);
      return PaddedDecimal(state_.*counter.value, counter.digits);
    });
  }
  for (const SmallCounter& counter : smallCounters) {
    ReplaceEach(text_, counter.current, [&] { return PaddedDecimal(state_.*counter.value, counter.digits); });
  }
  for (const SmallCounter& counter : smallCounters) {
    if (ReplaceFirst(text_, counter.clear, "")) state_.*counter.value = 0;
  }
}

void Pass::WriteRandomValues() {
  ReplaceEach(text_, "[CHRND]", [&] {
    state_.LastRnd1 = static_cast<std::int16_t>(RandomUpTo(255));
    return Character(state_.LastRnd1);
  });
  for (const RandomNumber& number : randomNumbers) {
    ReplaceEach(text_, number.next, [&] {
      state_.*number.value = static_cast<std::int16_t>(RandomUpTo(number.greatest));
      return PaddedDecimal(state_.*number.value, number.digits);
    });
  }
  for (const RandomNumber& number : randomNumbers) {
    ReplaceEach(text_, number.last, [&] { return PaddedDecimal(state_.*number.value, number.digits); });
  }
}

}  // namespace

bool ReplaceFirst(std::string& text, std::string_view search, std::string_view replacement) {
  const std::size_t at = search.empty() ? std::string::npos : text.find(search);
  if (at == std::string::npos) return false;
  text.replace(at, search.size(), replacement);
  return true;
}

bool ReplaceAll(std::string& text, std::string_view search, std::string_view replacement) {
  return ReplaceEach(text, search, [&] { return std::string(replacement); });
}

Expander::Expander(MacroControls& controls, AdvancesCounter advancesCounter, std::function<double()> random)
    : controls_(controls), advancesCounter_(std::move(advancesCounter)), random_(std::move(random)) {}

const std::string& Expander::ExpandMacros(std::string& text) {
  const ScopeFlag busy(State.ExpandBusy);
  Pass pass(text, State, controls_, advancesCounter_, random_);
  std::string before;
  do {
    if (controls_.chkmulti.Checked()) before = text;
    pass.Run();
  } while (controls_.chkmulti.Checked() && text != before);
  return text;
}

}  // namespace quarlin
