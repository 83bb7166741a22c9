// SPDX-License-Identifier: GPL-3.0-or-later
// The exchange of a request for its answer: what is waited for, until when, and what becomes of it. Whatever
// a run decides by, it asks here; nobody else changes it, and what happens goes into the RunRecord.
//
//   RequestSent ──► waiting ──► BeginString, Fault…, Accept, EndString   an answer came
//                          ├──► Fault(TimeOut)                           none came in time
//                          ├──► ErrSeen … ErrEnded                       "ERR" came
//                          └──► EndWait                                  the run or the link ended
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/hook.h"
#include "controls/event_loop.h"
#include "exchange/request_count.h"
#include "exchange/run_controls.h"
#include "exchange/run_record.h"

namespace quarlin {

struct ExchangeState {
  bool WaitingAnswer = false;     // a request of the run is on its way and has no answer yet
  bool AnswerTimedOut = false;    // its time is up; the receive loop makes an error of it
  bool AnswerPending = false;     // an answer has come since the last send; lets a cycle send on request
  std::int16_t TimeoutCount = 0;  // time-outs in a row
};

struct ExchangeHooks {
  Hook<void()> waitEnded;      // the cycle may send again
  Hook<void()> takeArrivals;   // has the receive loop handle what has arrived
  Hook<void()> reportTimeOut;  // AnswerTimedOut was set: has the receive loop look at it
  Hook<void()> runRecorded;    // the run has ended, and every verdict on its exchanges is in the record
};

class Exchange {
 public:
  Exchange(EventLoop& loop, RunControls& controls, RunRecord& record);

  ExchangeHooks Hooks;

  const ExchangeState& State() const { return state_; }
  RequestCount& Requests() { return requests_; }
  RunRecord& Record() { return record_; }
  const RunRecord& Record() const { return record_; }

  // A run, from Start to Stop. `completed`: it ended because no request was left.
  void BeginRun();
  void EndRun(bool completed);
  bool Running() const { return running_; }

  // Counts the runs, so that what began in one can see that another has begun.
  std::uint32_t Run() const { return run_; }

  // A running run sends nothing before the answer has come.
  bool MustWait() const { return controls_.WaitsForAnswer() && state_.WaitingAnswer; }

  // How long the answer has been waited for.
  Duration Waited() const { return loop_.Now() - waitingSince_; }

  // Sending. Any text that goes out, also a script's, takes the answer that "Send on request" waits for.
  void TextSent() { state_.AnswerPending = false; }

  // Some of a text has left; and whether any has since the run began.
  void BytesLeft() { anyLeft_ = true; }
  bool AnyLeft() const { return anyLeft_; }

  // A request has left. One of the run is waited for, as long as the run lasts and until the time of
  // txtAnswerTime is up. `displayLine`, here and below, is where the display shows the request.
  void RequestSent(std::string_view request, bool ofRun, std::optional<std::uint64_t> displayLine = {});

  // A request did not leave, or only its beginning: nothing is waited for. Without a failure it was called
  // off. Returns its number in the record.
  std::uint64_t RequestNotSent(std::string_view request, std::string_view failure,
                               std::optional<std::uint64_t> displayLine = {});

  // The last request was sent by hand and is waited for: while no run waits, the next answer is its own, and
  // not that of an older one. Returns its number.
  std::uint64_t AwaitByHand() { return awaitedByHand_ = record_.LastNumber(); }

  // Nobody waits for that answer any more. Another request that is waited for by now stays so, here and
  // below.
  void EndWaitByHand(std::uint64_t number);

  // Its time is up: the record says so, and what comes now is late.
  void TimeOutByHand(std::uint64_t number, Finding finding);

  // Any other text did not leave. Returns the number under which the record tells so.
  std::uint64_t TextNotSent(std::string_view text, std::string_view failure);

  // Receiving. A complete string has come, of which the first byte came at `firstByte`; until EndString, what
  // is said belongs to it. True when it is the answer to a request whose time was up.
  bool BeginString(std::string_view text, Instant firstByte);
  void EndString();

  // The string passed the checks of length and equality; `parsed` is what the parser made of it. The wait
  // ends.
  void Accept(std::string_view parsed);

  // Something is wrong: with the string being handled, else with the answer that is waited for, else by
  // itself. The wait ends. Returns the number of the exchange in the record.
  std::uint64_t Fault(Finding finding);

  // Takes AnswerTimedOut: true when the time-out is to be reported now.
  bool TakeTimeOut();

  // One more time-out in a row.
  std::int16_t CountTimeOut();

  // "ERR" was found and thrown away. Its answer has come, so no time-out follows; but the wait goes on until
  // the rest of it has come as well, and ErrEnded tells so.
  void ErrSeen(std::string_view text, Instant firstByte);
  void ErrEnded();

  // Nobody waits for the answer any more: the run was stopped, or the link went.
  void EndWait();

  // A new opening of the link: no answer has come on it.
  void LinkOpening() { state_.AnswerPending = false; }

 private:
  struct Arrived {
    std::uint64_t number;
    bool late;
  };

  std::uint64_t TakeRequestOfAnswer();
  Arrived AnswerHasCome(std::string_view text, Instant firstByte);
  void AnswerTimeIsUp();
  void ClearWait();
  void EndRecord();

  EventLoop& loop_;
  RunControls& controls_;
  RunRecord& record_;
  RequestCount requests_;
  ExchangeState state_;
  bool running_ = false;
  std::uint32_t run_ = 0;
  bool anyLeft_ = false;
  bool late_ = false;          // the last request was given up; what comes now is late
  bool runEndsAfter_ = false;  // the run ended while its last string was being handled
  std::uint64_t awaited_ = 0;  // numbers in the record, 0 for none: the request that is waited for,
  std::uint64_t awaitedByHand_ = 0;
  std::uint64_t handled_ = 0;    // the string between BeginString and EndString,
  std::uint64_t errAnswer_ = 0;  // the answer with "ERR" whose rest is still to come
  Instant waitingSince_{};
  Alarm answerAlarm_;
};

}  // namespace quarlin
