// SPDX-License-Identifier: GPL-3.0-or-later
// The settings of a serial line and the text in which they are given.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "base/clock.h"

namespace quarlin {

enum class Parity { None, Odd, Even, Mark, Space };
enum class StopBits { One, OneAndHalf, Two };
enum class FlowControl { None, RtsCts, XonXoff };

// "none", "RTS/CTS", "XON/XOFF".
std::string_view NameOf(FlowControl flow);

struct SerialSettings {
  std::uint32_t baud = 9600;
  Parity parity = Parity::None;
  int dataBits = 8;  // 5 to 8
  StopBits stopBits = StopBits::One;
  bool xonXoff = false;
  bool dsrFlow = false;       // send only while DSR is on
  bool ctsFlow = false;       // send only while CTS is on
  bool rtsToggle = false;     // RTS follows the traffic by itself
  std::optional<bool> dtr{};  // raise or drop at once; nothing leaves the line as it is
  std::optional<bool> rts{};
  bool dtrFlow = false;  // DTR follows the room in the input queue

  bool operator==(const SerialSettings&) const = default;
};

// Changes in `settings` what the text names. Two forms are known: "9600,n,8,1" (rate, parity, data bits,
// stop bits, and optionally a trailing ",x" for XON/XOFF or ",p" for RTS/CTS), and
// "baud=9600 parity=N data=8 stop=1" with xon=, odsr=, octs=, dtr=, rts= and to= (on, off; dtr=hs and
// rts=hs, tg as well), in any case and order. False, with `settings` unchanged, when the text is in
// neither form or names a value that no line has.
bool BuildCommDcb(std::string_view text, SerialSettings& settings);

// Adds the flow control to what the settings have already.
void AddFlowControl(FlowControl flow, SerialSettings& settings);

// True when a line that reads back as `taken` runs as `wanted`: the rate within 2 %, which is as far as
// a divisor may be off before characters break, everything else exactly.
bool RunsAs(const SerialSettings& taken, const SerialSettings& wanted);

// How long one character takes on the line.
Duration CharacterTime(const SerialSettings& settings);

}  // namespace quarlin
