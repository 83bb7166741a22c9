// SPDX-License-Identifier: GPL-3.0-or-later
#include "display/display_controls.h"

namespace quarlin {

void DisplayText::Append(std::string_view text, TextKind kind, Color color) {
  if (text.empty()) return;
  ring_.Append(text, kind, color, loop_.Local());
  Changed();
  OnAppend(text, color);
}

void DisplayText::Clear() {
  ring_.Clear();
  Changed();
}

}  // namespace quarlin
