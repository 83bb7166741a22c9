// SPDX-License-Identifier: GPL-3.0-or-later
// The configuration file: the settings of a window as records of fixed length, found by the controls'
// names. A control that is added to the window is saved and loaded without a change here.
//
// A record has 122 bytes, one for each character, and nothing lies between records:
//
//   0-19     the control's name
//   20-119   its value as text
//   120-121  its index in decimal digits, blank outside a control array
//
// Each field is cut or padded with blanks on the right. The value is the text of a text box or combo box,
// 0, 1 or 2 for a check box, 0 or 1 for an option button; other controls have no record.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "controls/collection.h"

namespace quarlin {

// How a save went.
struct SavedConfig {
  std::error_code error;
  std::vector<std::string>
      cut;  // the controls whose value was longer than its field: "txtparser", "txtCounter(3)"

  // For the status bar: "config.cfg saved; txtparser was cut at 100 characters".
  std::string Text(std::string_view fileName) const;
};

// Writes one record for each control that has a value, in the collection's order, from the start of the
// file. The file is created if need be and never gets shorter: records of an earlier, longer save stay
// behind the new ones, and are loaded again. After an error the file is as it was (see OverwriteFile).
SavedConfig SaveConfig(const ControlCollection& controls, const std::filesystem::path& file);

// Applies the records in order; one without an index goes to every control of its name. A control whose
// value changes by it runs its handler. A record that names no control, or whose value is none for the
// control, is passed over, and so is the rest at the end that is no whole record.
// Switching scripting on is left to the end, when all that a script may look at has been loaded.
// Returns false, and changes nothing, when there is no file that can be read.
bool LoadConfig(ControlCollection& controls, const std::filesystem::path& file);

// What is wrong with the content of a file that is to be a configuration of these controls, "it is empty" for
// one; empty for nothing. Records of controls that are not there are those of another version and no fault,
// as long as there are others.
std::string ConfigFault(const ControlCollection& controls, std::string_view content);

}  // namespace quarlin
