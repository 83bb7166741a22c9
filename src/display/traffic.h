// SPDX-License-Identifier: GPL-3.0-or-later
// The one way of everything that is shown: what went out and what came in goes to the received-text display
// and to the logs, errors to the display and to the error list.
#pragma once

#include <cstdint>
#include <string_view>

#include "display/display_controls.h"
#include "display/traffic_logs.h"

namespace quarlin {

class Traffic {
 public:
  // `logs` outlives this object.
  Traffic(EventLoop& loop, DisplayControls& controls, TrafficLogs& logs)
      : loop_(loop), controls_(controls), logs_(logs) {}

  // Bytes of the wire, in their order: to LOG.TXT, and to the display in black and in blue.
  void Received(std::string_view bytes) { Received(bytes, bytes); }
  void Sent(std::string_view bytes);

  // What went out by hand, byte for byte: keys, pastes, files. To LOG.TXT, and to the display with "Local
  // echo".
  void SentByHand(std::string_view bytes);

  // Received bytes for which the display shows something else.
  void Received(std::string_view bytes, std::string_view shown);

  // The line break that "Append Row" puts behind them. Received ones have it in the log, too.
  void AppendReceivedRow();
  void AppendSentRow();

  // The display's line in which the text begins that was sent last; kept for a row of a table that leads
  // there.
  std::uint64_t SentLine() const { return controls_.txtric.Ring().LastSentLine(); }

  // The date and time behind "-->": as a line of its own in LOG.TXT, or on the display in front of what is
  // sent.
  void StampLog();
  void StampEcho();

  // What the parser made of a string, for LOGPAR.TXT.
  void Parsed(std::string_view text);

  // Text of the program's own on the display.
  void Append(std::string_view text, Color color);

  // Adds the line in red with a line end behind it, and enters it in the error list, which keeps the last 100
  // entries. The entry's tool tip is "03/02/26 01:01:01 No. 17: DETAIL": the time, the number of the exchange
  // in the record of its run, 0 for none, and `detail`, where there is one.
  void AppendError(std::string_view line, std::string_view detail, std::uint64_t number = 0);

  // Where the display will show what comes next; see DisplayText.
  std::uint64_t NextLine() const { return controls_.txtric.NextLine(); }

  void Flush() { logs_.Flush(); }

 private:
  EventLoop& loop_;
  DisplayControls& controls_;
  TrafficLogs& logs_;
};

}  // namespace quarlin
