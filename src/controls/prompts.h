// What the program says to the user and waits for: message boxes in a window, lines on standard error
// without one, a prepared list in tests.
#pragma once

#include <string_view>

namespace quarlin {

class Prompts {
 public:
  virtual ~Prompts() = default;

  // Shows a message with one OK button, in front of everything else, and returns when it was closed.
  // Yields: on return the link, the run and the end of the program must be looked at again.
  virtual void ShowMessage(std::string_view text, std::string_view title) = 0;

  // Closes what is being shown, as if the user had; the program is about to end.
  virtual void Dismiss() = 0;
};

}  // namespace quarlin
