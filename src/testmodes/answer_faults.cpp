// SPDX-License-Identifier: GPL-3.0-or-later
#include "testmodes/answer_faults.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/numbers.h"
#include "base/text.h"
#include "faults/answer_changes.h"

namespace quarlin {
namespace {

struct FaultNames {
  Fault fault;
  std::string_view name;  // in the table
  std::string_view word;  // in the display
};

constexpr std::array<FaultNames, faultKinds> faultNames{{
    {Fault::Drop, "drop", "dropped"},
    {Fault::Checksum, "checksum", "checksum altered"},
    {Fault::Garble, "garble", "garbled"},
    {Fault::Truncate, "truncate", "truncated"},
    {Fault::Double, "double", "doubled"},
}};

constexpr std::uint32_t longestPause = 3'600'000;  // ms

std::vector<std::string_view> SplitAt(std::string_view text, std::string_view separators) {
  std::vector<std::string_view> parts;
  while (true) {
    const std::size_t end = text.find_first_of(separators);
    if (end != 0 && !text.empty()) parts.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return parts;
    text.remove_prefix(end + 1);
  }
}

std::optional<std::uint32_t> WholeNumber(std::string_view text, double least, double greatest) {
  const std::optional<double> number = NumberOf(text);
  if (!number || *number < least || *number > greatest || *number != std::floor(*number)) return std::nullopt;
  return static_cast<std::uint32_t>(*number);
}

// "0.1" or "every 5".
std::optional<FaultRate> ReadRate(const std::vector<std::string_view>& words) {
  if (words.size() == 2 && EqualsIgnoringCase(words[0], "every")) {
    const auto every = WholeNumber(words[1], 1, 1e9);
    return every ? std::optional(FaultRate{.every = *every}) : std::nullopt;
  }
  if (words.size() != 1) return std::nullopt;
  const std::optional<double> probability = ReadProbability(words[0]);
  return probability ? std::optional(FaultRate{.probability = *probability}) : std::nullopt;
}

}  // namespace

std::string_view FaultWord(Fault fault) {
  return faultNames[static_cast<std::size_t>(fault)].word;
}

std::string FaultCounts::Sum() const {
  std::string sum;
  const auto add = [&sum](std::uint64_t count, std::string_view word) {
    if (count > 0) sum += fmt::format("{}{} {}", sum.empty() ? "" : ", ", count, word);
  };
  for (const FaultNames& names : faultNames) add(Of(names.fault), names.word);
  add(delayed, "delayed");
  add(discarded, "thrown away");
  return sum;
}

bool FaultyAnswer::Has(Fault fault) const {
  return std::find(faults.begin(), faults.end(), fault) != faults.end();
}

std::optional<FaultPlan> FaultPlan::Read(std::string_view entry) {
  FaultPlan plan;
  for (const std::string_view item : SplitAt(entry, ",")) {
    if (!plan.ReadItem(item)) return std::nullopt;
  }
  return plan;
}

bool FaultPlan::ReadItem(std::string_view item) {
  std::vector<std::string_view> words = SplitAt(item, " \t");
  if (words.empty()) return true;  // a comma too many
  if (words.size() == 1) return false;
  const std::string_view name = words.front();
  words.erase(words.begin());
  for (const FaultNames& names : faultNames) {
    if (!EqualsIgnoringCase(name, names.name)) continue;
    const auto rate = ReadRate(words);
    rates_[static_cast<std::size_t>(names.fault)] = rate.value_or(FaultRate{});
    return rate.has_value();
  }
  if (EqualsIgnoringCase(name, "seed")) {
    const auto seed = WholeNumber(words.front(), 0, 4294967295.0);
    chance_ = SmallChance(seed.value_or(0));
    return seed.has_value() && words.size() == 1;
  }
  if (!EqualsIgnoringCase(name, "delay") && !EqualsIgnoringCase(name, "jitter")) return false;
  const auto milliseconds = WholeNumber(words.front(), 0, longestPause);
  words.erase(words.begin());
  const auto rate = words.empty() ? FaultRate{.probability = 1} : ReadRate(words);
  if (!milliseconds || !rate) return false;
  (EqualsIgnoringCase(name, "delay") ? delay_ : jitter_) = {*milliseconds, *rate};
  return true;
}

FaultyAnswer FaultPlan::Apply(std::string answer, std::string_view terminator) {
  FaultyAnswer result;
  result.text = std::move(answer);
  // All of them count this request, also where the answer is dropped, so that "every 5" stays every 5.
  for (const FaultNames& names : faultNames) {
    if (!Strikes(rates_[static_cast<std::size_t>(names.fault)]) || result.Has(Fault::Drop)) continue;
    if (Change(names.fault, result.text, terminator)) result.faults.push_back(names.fault);
  }
  result.delay = Delay();
  return result;
}

bool FaultPlan::Strikes(FaultRate& rate) {
  if (rate.every == 0) return rate.probability > 0 && chance_.Fraction() < rate.probability;
  rate.requests = (rate.requests + 1) % rate.every;
  return rate.requests == 0;
}

// False when the answer has nothing that this fault could change.
bool FaultPlan::Change(Fault fault, std::string& answer, std::string_view terminator) {
  switch (fault) {
    case Fault::Checksum:
      return SpoilChecksum(answer, 2, chance_);
    case Fault::Garble:
      return Garble(answer, terminator, chance_);
    case Fault::Truncate:
      return Truncate(answer, 0, chance_);
    case Fault::Drop:
    case Fault::Double:
      break;
  }
  return true;
}

std::chrono::milliseconds FaultPlan::Delay() {
  double milliseconds = 0;
  if (Strikes(delay_.rate)) milliseconds += delay_.milliseconds;
  if (Strikes(jitter_.rate)) milliseconds += chance_.Fraction() * jitter_.milliseconds;
  return std::chrono::milliseconds(static_cast<std::int64_t>(milliseconds));
}

}  // namespace quarlin
