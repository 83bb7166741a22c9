// SPDX-License-Identifier: GPL-3.0-or-later
// What can be said of an exchange.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace quarlin {

enum class Verdict : std::uint8_t {
  Answered,       // the answer came and was accepted
  TimeOut,        // it did not come in time
  NotEqual,       // it is not the expected string
  WrongLength,    // it has not the expected length
  WrongChecksum,  // its checksum is not that of its text
  Err,            // it holds "ERR" and was thrown away
  NotSent,        // the request did not leave, or not whole
  Unsolicited     // nobody had asked for the answer
};
inline constexpr std::array allVerdicts{Verdict::Answered,    Verdict::TimeOut,       Verdict::NotEqual,
                                        Verdict::WrongLength, Verdict::WrongChecksum, Verdict::Err,
                                        Verdict::NotSent,     Verdict::Unsolicited};
inline constexpr std::size_t verdictKinds = allVerdicts.size();

// In words, as results and tables show it: "answered", "time-out", "not equal", "wrong length", "wrong
// checksum", "ERR", "not sent", "unsolicited".
std::string_view VerdictName(Verdict verdict);

// All but Answered and Unsolicited.
bool IsFailure(Verdict verdict);

// Its two texts, what was expected and what came, are bytes that can be laid side by side.
bool ComparesBytes(Verdict verdict);

// A verdict with what is behind it.
struct Finding {
  Verdict verdict = Verdict::Answered;
  std::string detail{};  // in one line, such as "22 characters instead of 23"; empty where nothing is to add

  // What was to come, and what came in its place: bytes of the wire where ComparesBytes, else words. Empty
  // where the verdict says it all.
  std::string expected{};
  std::string got{};

  bool operator==(const Finding&) const = default;
};

}  // namespace quarlin
