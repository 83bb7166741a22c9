#include "testmodes/answer_faults.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/numbers.h"
#include "base/text.h"

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
  const std::optional<double> probability = NumberOf(words[0]);
  if (!probability || *probability < 0 || *probability > 1) return std::nullopt;
  return FaultRate{.probability = *probability};
}

bool IsLowerDigit(char character) {
  return character >= 'a' && character <= 'f';
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

// Steps by the golden ratio and mixes: each of the 2^64 states gives another number.
double FaultChance::Fraction() {
  std::uint64_t mixed = state_ += 0x9E3779B97F4A7C15;
  mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9;
  mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EB;
  mixed ^= mixed >> 31;
  return static_cast<double>(mixed >> 11) * 0x1p-53;
}

std::size_t FaultChance::Below(std::size_t count) {
  return static_cast<std::size_t>(Fraction() * static_cast<double>(count));
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
    chance_ = FaultChance(seed.value_or(0));
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
      return SpoilChecksum(answer);
    case Fault::Garble:
      return Garble(answer, terminator);
    case Fault::Truncate:
      return Truncate(answer);
    case Fault::Drop:
    case Fault::Double:
      break;
  }
  return true;
}

// The last two characters become another number of two hexadecimal digits, in the same case.
bool FaultPlan::SpoilChecksum(std::string& answer) {
  if (answer.size() < 2) return false;
  const std::size_t at = answer.size() - 2;
  const int high = HexDigitValue(answer[at]);
  const int low = HexDigitValue(answer[at + 1]);
  const int present = high < 0 || low < 0 ? 0 : high * 16 + low;
  const auto other = (static_cast<std::uint32_t>(present) + 1 + chance_.Below(255)) % 256;
  std::string digits = Hexadecimal(static_cast<std::uint32_t>(other), 2);
  if (IsLowerDigit(answer[at]) || IsLowerDigit(answer[at + 1])) {
    for (char& digit : digits) digit = digit >= 'A' ? static_cast<char>(digit - 'A' + 'a') : digit;
  }
  answer.replace(at, 2, digits);
  return true;
}

bool FaultPlan::Garble(std::string& answer, std::string_view terminator) {
  if (answer.empty()) return false;
  constexpr std::string_view visible =
      "!#$%&()*+-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz";
  char& victim = answer[chance_.Below(answer.size())];
  std::size_t other = chance_.Below(visible.size());
  while (visible[other] == victim || terminator.find(visible[other]) != std::string_view::npos) {
    other = (other + 1) % visible.size();
  }
  victim = visible[other];
  return true;
}

bool FaultPlan::Truncate(std::string& answer) {
  if (answer.empty()) return false;
  answer.resize(answer.size() - std::min(answer.size(), 1 + chance_.Below(3)));
  return true;
}

std::chrono::milliseconds FaultPlan::Delay() {
  double milliseconds = 0;
  if (Strikes(delay_.rate)) milliseconds += delay_.milliseconds;
  if (Strikes(jitter_.rate)) milliseconds += chance_.Fraction() * jitter_.milliseconds;
  return std::chrono::milliseconds(static_cast<std::int64_t>(milliseconds));
}

}  // namespace quarlin
