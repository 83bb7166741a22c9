// SPDX-License-Identifier: GPL-3.0-or-later
// Every text that the program sends goes through here: expanded and framed as its kind wants it, handed to
// the link, and when the link has told its end, logged, shown, counted, and entered in the record.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "base/hook.h"
#include "display/traffic.h"
#include "exchange/counters.h"
#include "exchange/exchange.h"
#include "exchange/framing.h"
#include "link/link.h"
#include "macro/expander.h"

namespace quarlin {

// Who sends. What differs between them is in one table, in sender.cpp.
enum class SendKind {
  Cycle,   // a request of the running cycle
  ByHand,  // a request of the Send button
  Answer,  // the dialog test plays the instrument
  Task,    // a script's periodic text
  Key,     // typed or pasted while the keyboard is on the line
  File     // a piece of a file that goes out as it is
};

struct SenderParts {
  Link& link;
  Expander& expander;
  Exchange& exchange;
  Traffic& traffic;
  RunControls& run;
  FramingControls& framing;
  Counters& counters;
};

struct SenderHooks {
  Hook<void()> leaving;  // something goes out: the lamps are bright
};

class Sender {
 public:
  explicit Sender(SenderParts parts);

  SenderHooks Hooks;
  Framing Frame;

  struct Expansion {
    std::string text;
    bool pastMaximum = false;  // it used a counter beyond its maximum, where that is to stop the cycle
  };
  Expansion Expand(std::string command);

  // Sends the bytes as they are. `ended`, where given, is told once, behind everything that this object does:
  // what the link took has been logged and shown, a failure stands in the error list. A request of a run
  // that another has followed by then is no longer counted. Yields; may return before the end, which another
  // text may have to wait for.
  void Send(std::string bytes, SendKind kind, std::function<void(const SendOutcome&)> ended = {});

  // Of a stream (see Link::BeginStream) what the link takes now: it is logged and shown like any other text.
  Transfer SendSome(std::string_view bytes, SendKind kind);

  // The end of a text that somebody sent without this object, as scripts do: a failure is shown and counted.
  void TellEnd(const SendOutcome& outcome);

  // Bytes that were told as sent have been lost on their way: counted and listed, in these words.
  void TellLost(std::string_view what);

 private:
  void Ended(const SendOutcome& outcome, SendKind kind, std::uint32_t run);
  void Show(std::string_view taken, SendKind kind);
  std::uint64_t CountRequest(const SendOutcome& outcome, SendKind kind, std::uint64_t displayLine);
  void ShowFailure(const SendOutcome& outcome, std::uint64_t number);

  SenderParts parts_;
};

}  // namespace quarlin
