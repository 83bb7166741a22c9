// Adds text to the received-text display, and errors to the error list as well.
#pragma once

#include <string_view>

#include "display/display_controls.h"

namespace quarlin {

class LineBuilder {
 public:
  LineBuilder(EventLoop& loop, DisplayControls& controls) : loop_(loop), controls_(controls) {}

  // Returns the text that was added.
  std::string_view Append(std::string_view text, Color color);

  // Adds the line in red with a line end behind it, and enters it in the error list, which keeps the last
  // 100 entries. The entry's tool tip is the date and time and then `detail`.
  void AppendError(std::string_view line, std::string_view detail);

 private:
  EventLoop& loop_;
  DisplayControls& controls_;
};

}  // namespace quarlin
