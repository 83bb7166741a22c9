// SPDX-License-Identifier: GPL-3.0-or-later
// The calculator: one text of bytes in four views that follow each other, and its checksums.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "base/hook.h"
#include "calculator/byte_views.h"
#include "calculator/number_format.h"
#include "controls/controls.h"
#include "controls/form.h"
#include "macro/checksum.h"

namespace quarlin {

struct CalculatorControls : ControlGroup {
  explicit CalculatorControls(EventLoop& loop);

  // What is wrong with what was typed into a view, in the order of ByteView; empty when nothing is.
  Label lblTextTrouble{*this, "lblTextTrouble"};
  Label lblHexTrouble{*this, "lblHexTrouble"};
  Label lblDecimalTrouble{*this, "lblDecimalTrouble"};
  Label lblBinaryTrouble{*this, "lblBinaryTrouble"};
  Label lblLength{*this, "lblLength"};  // "9 characters, 2 selected: 3 to 4"
  CommandButton cmdTakeTraffic{*this, "cmdTakeTraffic", "From the traffic"};
  CommandButton cmdInsertText{*this, "cmdInsertText", "Insert text"};
  ControlArray<CommandButton, checksumCount> cmdSum;  // in the order of ChecksumStyle
  Label lblSum{*this, "lblSum"};                      // "CRC-8 of all 9 characters"
  ComboBox cboSumForm{*this, "cboSumForm"};           // in the order of ChecksumForm
  TextBox txtSumDecimal{*this, "txtSumDecimal"};      // the sum as a number
  TextBox txtSumHex{*this, "txtSumHex"};              // the same in hexadecimal
  TextBox txtSumText{*this, "txtSumText"};            // as it goes out, with codes in braces
  TextBox txtSumMacro{*this, "txtSumMacro"};          // the macro that writes it
  CommandButton cmdInsertSum{*this, "cmdInsertSum", "Insert sum"};
  CommandButton cmdInsertMacro{*this, "cmdInsertMacro", "Insert macro"};
};

class FrmCalculator : public Form {
 public:
  static constexpr std::size_t mostBytes = 65'536;

  // `numbers` outlives it.
  FrmCalculator(EventLoop& loop, NumberControls& numbers);

  CalculatorControls controls;

  struct {
    Hook<void(std::string_view text)> insert;  // into the command
    Hook<std::string()> takeTraffic;           // the bytes that are selected in the traffic; empty for none
    Hook<void(std::string_view line)> note;    // tells the user, outside this window
  } Hooks;

  const std::string& Bytes() const { return bytes_; }

  // The user typed into a view, all of whose text this is. What cannot be read, or is more than mostBytes,
  // changes nothing but the trouble beside that view.
  void Type(ByteView view, std::u16string_view text);

  // The user selected these characters in a view, or put the cursor there.
  void Mark(ByteView view, Stretch characters);

  // What a view shows unless the user has typed it; the characters that are marked in it, empty at the cursor
  // where none are. Nothing is known about a view whose text cannot be read.
  const std::string& Text(ByteView view) const { return At(view).text; }
  std::optional<Stretch> Marked(ByteView view) const;

  // The characters that the trouble beside the view is about; may be empty.
  Stretch TroubleAt(ByteView view) const { return At(view).troubleAt; }

  // The view's: the text of a view was written anew; what is marked, or in trouble, has changed.
  Hook<void(ByteView view)> OnWritten;
  Hook<void()> OnMarked;

 private:
  struct Shown {
    std::string text;
    BytePlaces places;  // of the text before it, where it cannot be read
    bool readable = true;
    Stretch troubleAt = {};
  };

  Shown& At(ByteView view) { return shown_.at(static_cast<std::size_t>(view)); }
  const Shown& At(ByteView view) const { return shown_.at(static_cast<std::size_t>(view)); }
  Label& TroubleLabel(ByteView view);
  void Trouble(ByteView view, std::string_view sentence, Stretch at);
  void Take(std::string bytes);
  void Write(ByteView view);
  void WriteNumbersAnew();
  const NumberFormat& Format();
  std::string_view Summed() const;
  void ShowLength();
  void ShowSum();
  void TakeTraffic();

  NumberControls& numbers_;
  std::string bytes_;
  std::array<Shown, byteViews.size()> shown_;
  Stretch marked_;  // bytes
  ChecksumStyle chosen_ = ChecksumStyle::Archive;
};

}  // namespace quarlin
