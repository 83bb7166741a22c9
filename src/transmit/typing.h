// SPDX-License-Identifier: GPL-3.0-or-later
// What is typed and pasted into the display: it goes to the line while "Terminal" is checked.
#pragma once

#include <string>
#include <string_view>

#include "base/hook.h"
#include "controls/prompts.h"
#include "controls/status_note.h"
#include "exchange/sender.h"
#include "link/link_controls.h"
#include "transmit/file_sender.h"

namespace quarlin {

struct TypingParts {
  LinkControls& controls;
  Link& link;
  Sender& sender;
  FileSender& files;
  Prompts& prompts;
  StatusNote& status;
};

class Typing {
 public:
  static constexpr std::size_t askAbove = 1024;                       // bytes of a paste
  static constexpr std::size_t longestPaste = std::size_t{16} << 20;  // a file can be longer

  explicit Typing(TypingParts parts) : parts_(parts) {}

  // The keyboard is on the line: "Terminal" is checked, and data can pass.
  bool OnLine() const { return parts_.controls.chkTerminal.Checked() && parts_.link.CanPass(); }

  // Sends the keys, each in a write of its own, "\r" as the transmit terminator. False where the keyboard is
  // not on the line: they belong into the command box then. Yields.
  bool Type(std::string_view keys);

  // Sends a text of the clipboard, after a question where it is long or has line ends. False as above.
  // Yields.
  bool Paste(const std::string& text);

 private:
  bool MayType();
  bool Confirmed(std::string_view text, std::size_t lineEnds);

  TypingParts parts_;
};

}  // namespace quarlin
