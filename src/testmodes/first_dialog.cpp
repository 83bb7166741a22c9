// SPDX-License-Identifier: GPL-3.0-or-later
#include "testmodes/dialog.h"

namespace quarlin {

std::string CommentedFirstDialog() {
  return R"(; Dialog.txt: the answers that this program gives when it plays the instrument.
;
; It is read again at every request, so a change counts as soon as this file is saved. A line that begins
; with a semicolon is a comment.
;
; request = answer
;
; The request stands without its terminator, capitals or not. A character that cannot be typed is written
; as its code: {02} for STX, {0D} for CR. A request that holds "=", or begins with "[" or ";", is written in
; codes altogether: {41}{3D}{3F} for A=?.
;
; The answer may hold macros, among them {nn} for a character and checksums over what stands left of them.
; The terminator of the transmit side is added to it.

[COMMAND]
READ = 12.5 kg
SN = SN 004711

; A request between STX and ETX, answered in the same way with a checksum:
{02}READ{03} = {02}12.5 kg[CHECKSUMSYS]{03}

; Several answers to one request, given in turn: the first one above, the next ones here. More follow in
; COMMAND3, COMMAND4 and so on.
;
;[COMMAND2]
;READ = 12.6 kg

; A bad instrument, to see what the other side makes of it. The faults stand behind the request that they
; are for, "*" being all others. A number from 0 to 1 is a chance, "every 5" is each fifth answer, times are
; in milliseconds. Further faults: double 0.1, checksum 0.1 (the last two characters), jitter 50.
;
;[FAULTS]
;READ = delay 200, garble 0.05
;* = drop every 10, truncate 0.02, seed 7
)";
}

}  // namespace quarlin
