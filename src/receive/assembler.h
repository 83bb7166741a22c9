// SPDX-License-Identifier: GPL-3.0-or-later
// From bytes to strings: gathers what arrives and decides when a string is complete. A string is not cut at
// its terminator: all that came until the tick in which it is found belongs to it.
//
// An "ERR" answer is thrown away as soon as it is recognised, and what still comes of it as well: up to and
// including the next terminator with what came in that tick, or until the line has been quiet for a while.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/clock.h"

namespace quarlin {

struct AssemblyState {
  std::string RxPending;        // received, not yet taken by the receive loop
  std::string RxBuffer;         // the string being assembled
  std::string RxTerminator;     // empty: a string is complete by its length
  std::int16_t RxMinChars = 0;  // that length
};

// What one tick made of its arrival.
enum class Assembly {
  Nothing,     // nothing came
  Beginning,   // the string is not complete
  Complete,    // RxBuffer holds a complete string
  Overlong,    // so it does, because it has grown to the limit
  Discarded,   // all that came was the rest of a string that is thrown away,
  DiscardEnds  // and its end
};

class Assembler {
 public:
  static constexpr std::size_t limit = std::size_t{1} << 20;  // of one string, and of what is pending

  const AssemblyState& State() const { return state_; }

  // `minChars` counts where there is no terminator. Another rule than before throws away what is being
  // assembled; true if it is one.
  bool SetRule(std::string terminator, std::int16_t minChars);

  // Where new bytes are put: RxPending. They came at `now`.
  void Pend(std::string_view bytes, Instant now);
  bool HasPending() const { return !state_.RxPending.empty(); }

  // Takes RxPending into the string.
  Assembly Take();

  // Whether the string holds "ERR". Only what was taken last is looked at, and what may have begun before it.
  bool HoldsError() const;

  // When the first byte of the string came.
  Instant FirstByte() const { return firstByte_; }

  // The string is given up or has been handled. RxPending stays.
  void Clear();

  // Nothing that came before counts any more.
  void ClearAll();

  // The string is thrown away, and what still comes of it, until EndDiscard or its terminator. One that is
  // complete has no rest, nor has one where every arrival is complete in itself.
  void Discard(bool complete);

  // Throws an unfinished string away; when its last byte is younger than `quiet`, its rest as well.
  void DiscardUnfinished(Instant now, Duration quiet);
  bool Discarding() const { return discarding_; }
  Instant LastByte() const { return lastByte_; }
  void EndDiscard();

  // `text` without the terminator at its end, where it has one and is longer than it.
  std::string_view StripRxTerminator(std::string_view text) const;

 private:
  Assembly TakeDiscarded();
  std::size_t BeginningOfTerminator() const;
  bool EveryArrivalIsComplete() const { return state_.RxTerminator.empty() && state_.RxMinChars <= 1; }

  AssemblyState state_;
  std::size_t taken_ = 0;     // bytes by which the last tick made the string longer
  std::string discardedEnd_;  // as much of what was thrown away as may be the beginning of a terminator
  bool discarding_ = false;
  Instant firstByte_{};
  Instant pendingSince_{};
  Instant lastByte_{};
};

// For how long a line must be quiet before nothing more of an answer is expected: 50 ms, or the time of four
// characters, the longer.
Duration QuietTime(Duration characterTime);

}  // namespace quarlin
