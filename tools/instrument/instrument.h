// SPDX-License-Identifier: GPL-3.0-or-later
// The simulated instrument without its line: bytes go in, bytes come out, each at its time. It knows neither
// a clock nor a port; whoever carries its bytes hands in the time, which never goes back.
//
// A carrier's turn:  Receive(what arrived, now)  ->  write some of Output(now)  ->  Sent(that many)
//                    ->  wait for input (if WantsInput), for room (if Output is not empty) or until NextDue.
//
// One output is one piece: an answer, a part of a split one, or a weight of the stream.
//
// A client that does not read holds the instrument up but does not make it grow: no new answers become output
// while older output is unsent, and no input is wanted while many answers wait.
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

#include "base/clock.h"
#include "instrument/answer_maker.h"
#include "instrument/counters.h"
#include "instrument/random.h"
#include "instrument/scale.h"
#include "instrument/settings.h"

namespace quarlin::instrument {

class Instrument {
 public:
  Instrument(const Settings& settings, Instant start);

  // Takes all of `bytes`; each line in them that is complete is handled as a request that ended at `now`.
  // Lines end with CR, LF or CR LF; empty lines are none. Nothing is handled once the count is reached.
  void Receive(std::string_view bytes, Instant now);

  // False while so much waits to be sent, or when the count is reached.
  bool WantsInput() const;

  // The next piece that should be on the wire by `now`, or what is left of it; empty when there is none.
  // Valid until the next call.
  std::string_view Output(Instant now);

  bool HasUnsentOutput() const { return !output_.empty(); }

  // The first `bytes` of the output are on the wire.
  void Sent(std::size_t bytes);

  // The client has gone, and with it what it had asked and not yet got, and the line it had begun.
  void ForgetClient();

  // When there will be output again; nothing when only a request can cause it, or while output is unsent.
  std::optional<Instant> NextDue() const;

  // The count is reached and everything is sent.
  bool Finished() const;

  const Counters& Totals() const { return counters_; }

 private:
  struct Piece {
    std::string text;
    Instant due;                 // for a later piece set when the one before it has gone out
    Duration gap{0};             // of a later piece to the one before it
    bool first = true;           // the answer begins with it
    bool last = true;            // the answer ends with it
    std::optional<Fault> fault;  // of the whole answer
  };

  bool CountReached() const;
  std::optional<Instant> NextWaiting() const;
  void TakeByte(char byte, Instant now);
  void HandleRequest(std::string_view request, Instant now);
  void Enqueue(Answer answer, Instant now);
  void SendPiece(Instant now);
  void SendStreamed(Instant now);

  Settings settings_;
  Scale scale_;
  AnswerMaker maker_;
  Random timing_;
  std::string line_;
  std::deque<Piece> waiting_;
  bool insideAnswer_ = false;  // a split answer is begun; nothing may come between its pieces
  std::optional<Instant> streamDue_;
  std::string output_;  // a piece that is due, as far as it is not yet on the wire
  Counters counters_;
};

}  // namespace quarlin::instrument
