// SPDX-License-Identifier: GPL-3.0-or-later
// Characters that are converted on receive, by the table Conversion.txt: for the eye only, or for all that
// looks at a string. What is logged, what the record of the run keeps, and what ends a string are the bytes
// of the wire.
#pragma once

#include <string>
#include <string_view>

#include "base/program_folder.h"
#include "controls/status_note.h"
#include "receive/conversion_table.h"
#include "receive/receive_controls.h"

namespace quarlin {

class CharacterConversion {
 public:
  static constexpr std::string_view fileName = "Conversion.txt";

  // Reads the table when the box is checked, and says what is wrong with it.
  CharacterConversion(ReceiveControls& controls, ProgramFolder folder, StatusNote& status);

  // The file has changed on the disk.
  void FileChanged();

  // What the display shows for these bytes; it holds until the next call.
  std::string_view ForDisplay(std::string_view bytes);

  // Converts `text` but for its last `terminator` bytes, if that is wanted for what looks at strings.
  void ForChecks(std::string& text, std::size_t terminator);

 private:
  std::string Read();

  ReceiveControls& controls_;
  ProgramFolder folder_;
  StatusNote& status_;
  ConversionTable table_;
  std::string room_;
};

}  // namespace quarlin
