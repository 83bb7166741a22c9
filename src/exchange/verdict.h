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

// A verdict with what is behind it, such as "22 characters instead of 23"; empty where there is nothing to
// add.
struct Finding {
  Verdict verdict = Verdict::Answered;
  std::string detail;

  bool operator==(const Finding&) const = default;
};

}  // namespace quarlin
