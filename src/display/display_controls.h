// SPDX-License-Identifier: GPL-3.0-or-later
// The received-text display, the error list and the switches of the logs.
#pragma once

#include "base/hook.h"
#include "controls/controls.h"
#include "display/text_ring.h"

namespace quarlin {

// The control behind the display: a ring of lines that tells the view when it grew.
class DisplayText : public Control {
 public:
  DisplayText(ControlGroup& group, std::string_view name)
      : Control(group, ControlKind::RichTextBox, name), loop_(group.Loop()) {}

  const TextRing& Ring() const { return ring_; }
  void Append(std::string_view text, TextKind kind, Color color);
  void Clear();

  // The number that the ring gives to the line in which the next text of another direction begins, so what
  // is about to be shown can be found again by it.
  std::uint64_t NextLine() const { return ring_.EndLine(); }

  // What a script has marked of the text, counted from the first line that is kept; the colour in which it
  // adds to it.
  Marked marked;
  Color scriptColor = colors::black;

  // Gives what the user has marked.
  Hook<std::string()> OnTakeSelection;

  // Also told what is added; for a program without a window, which prints it.
  Hook<void(std::string_view text, Color color)> OnAppend;

 private:
  EventLoop& loop_;
  TextRing ring_;
};

struct DisplayControls : ControlGroup {
  explicit DisplayControls(EventLoop& loop) : ControlGroup(loop) {
    chkEcho.SetChecked(true);  // few instruments send back what they get
  }
  DisplayText txtric{*this, "txtric"};
  ListBox lstError{*this, "lstError"};
  CheckBox chkLog{*this, "chkLog", "Log"};               // LOG.TXT
  CheckBox chkEcho{*this, "chkEcho", "Local echo"};      // typed keys, pastes and files are shown
  CheckBox chkLogPar{*this, "chkLogPar", "Log parser"};  // LOGPAR.TXT
  TextBox txtLogName{*this, "txtLogName", "LOG.TXT"};    // with macros, see LogName
  CheckBox chkLogNew{*this, "chkLogNew", "New file at each start"};
  CheckBox chkLogDay{*this, "chkLogDay", "New file each day"};
  TextBox txtLogSize{*this, "txtLogSize", "0"};                      // KiB of a file; 0 for any
  TextBox txtLogKeep{*this, "txtLogKeep", "0"};                      // files; 0 for all
  CheckBox chkLogRows{*this, "chkLogRows", "Times and directions"};  // rows; else byte for byte
  Label lblLogFile{*this, "lblLogFile"};                             // the present file
  ComboBox ComboFont{*this, "ComboFont"};                            // without a window the list stays empty
  Label lblfontsize{*this, "lblfontsize"};                           // points
};

}  // namespace quarlin
