// What the transmit cycle and the receive loop tell each other about the answer to a request.
#pragma once

#include <cstdint>

namespace quarlin {

struct HandOver {
  bool WaitingAnswer = false;     // a request is on its way and has no answer yet
  bool AnswerTimedOut = false;    // its time is up; the receive loop makes an error of it
  std::int16_t TimeoutCount = 0;  // time-outs in a row
  std::int32_t RequestsLeft = 0;  // of a limited run
};

}  // namespace quarlin
