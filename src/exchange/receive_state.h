// The string being received, between the first byte and the last check.
#pragma once

#include <cstdint>
#include <string>

namespace quarlin {

struct ReceiveState {
  std::string RxPending;               // received, not yet taken by the receive loop
  std::string RxBuffer;                // the string being assembled
  std::int16_t RxIdleTicks = 0;        // ticks of the receive loop since data last arrived
  std::string RxTerminator;            // empty: a string is complete by its length
  std::int16_t RxMinChars = 0;         // that length
  double LastStampTime = 0;            // seconds since midnight of the last date and time line
  double LastRxTime = 0;               // seconds since midnight of the last "TIME :" line
  std::uint32_t LastCompleteTick = 0;  // millisecond tick of the last complete string
};

}  // namespace quarlin
