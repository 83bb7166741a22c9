// SPDX-License-Identifier: GPL-3.0-or-later
#include "transmit/typing.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "base/text.h"

namespace quarlin {
namespace {

constexpr std::size_t shownOfPaste = 60;  // bytes in the question

// CR LF counts as one.
std::size_t LineEnds(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\n' || (text[i] == '\r' && text.substr(i, 2) != "\r\n")) ++count;
  }
  return count;
}

}  // namespace

// What cannot be sent is not thrown away: the view puts it into the command box.
bool Typing::MayType() {
  if (!parts_.controls.chkTerminal.Checked()) return false;
  if (parts_.link.CanPass()) return true;
  parts_.status.Say("not connected: what you type goes into the command box");
  return false;
}

bool Typing::Type(std::string_view keys) {
  if (!MayType()) return false;
  const std::string& terminator = parts_.sender.Frame.TxTerminator();
  for (const char key : keys) {
    if (key != '\r') {
      parts_.sender.Send(std::string(1, key), SendKind::Key);
    } else if (!terminator.empty()) {
      parts_.sender.Send(terminator, SendKind::Key);
    } else {
      parts_.status.Say("Enter sends nothing: there is no Tx terminator");
    }
  }
  return true;
}

bool Typing::Paste(const std::string& text) {
  if (!MayType()) return false;
  if (text.size() > longestPaste) {
    parts_.status.Say(
        fmt::format("{} bytes are too much to paste; save them and send the file", text.size()));
    return true;
  }
  const std::size_t lineEnds = LineEnds(text);
  if ((lineEnds > 0 || text.size() > askAbove) && !Confirmed(text, lineEnds)) return true;
  if (lineEnds > 0 || text.size() > askAbove) {
    parts_.files.SendPaste(text);  // looks at the link again
  } else {
    parts_.sender.Send(text, SendKind::Key);
  }
  return true;
}

bool Typing::Confirmed(std::string_view text, std::size_t lineEnds) {
  const std::size_t lines = lineEnds + (text.ends_with('\n') || text.ends_with('\r') ? 0 : 1);
  return parts_.prompts.Confirm(
      fmt::format("Send the clipboard to {}?\n\n{} line{}, {} bytes, beginning with\n{}",
                  parts_.link.Target().port, lines, lines == 1 ? "" : "s", text.size(),
                  CodedText(text, shownOfPaste)),
      "Paste");
}

}  // namespace quarlin
