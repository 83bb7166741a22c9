// SPDX-License-Identifier: GPL-3.0-or-later
// What an edit button writes into a file of the program folder that is not there yet: a few entries that work
// as they stand. But for the dialog table these files know no comments, so the entries have to speak for
// themselves.
#pragma once

#include <string_view>

namespace quarlin::firstfiles {

inline constexpr std::string_view commands =
    "READ\n"
    "TARE\n"
    "{02}READ{03}\n"
    "READ[CHECKSUMSYS]\n"
    "SET [COUNTER]\n";

// The number of an answer such as "ST,GS,+00012.346 kg", the beginning of any other, codes, time and text.
inline constexpr std::string_view parserFormats =
    "CCCCCCRRRRRRRRRR\n"
    "RRRRRRRR\n"
    "EEEEEEEEEEEEEEEE\n"
    "T RRRRRRRRRRRRRRRRRRRRR\n";

inline constexpr std::string_view sequence =
    "TARE\n"
    "READ\n"
    "READ\n"
    "SN\n";

// Code or range of codes, and the text for it.
inline constexpr std::string_view conversion =
    "002\t<STX>\n"
    "003\t<ETX>\n"
    "&H06\t<ACK>\n"
    "&H15\t<NAK>\n"
    "128-159\t.\n";

// Name, command, whether it waits, time-out, key, how often it is repeated.
inline constexpr std::string_view quickSends =
    "Read\tREAD\t1\t1000\t\t5000\n"
    "Tare\tTARE\t0\t1000\t\t0\n"
    "Serial number\tSN\t1\t1000\tCtrl+F2\t0\n";

}  // namespace quarlin::firstfiles
