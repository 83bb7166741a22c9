// SPDX-License-Identifier: GPL-3.0-or-later
// What the program says to the user and waits for: message boxes in a window, lines on standard error
// without one, a prepared list in tests.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quarlin {

enum class SaveAnswer { Save, Discard, Cancel };

class Prompts {
 public:
  virtual ~Prompts() = default;

  // Shows a message with one OK button, in front of everything else, and returns when it was closed.
  // Yields, as all of these do: on return the link, the run and the end of the program must be looked at
  // again.
  virtual void ShowMessage(std::string_view text, std::string_view title) = 0;

  // A message box as scripts know it, with the buttons, the icon and the default of `style` (see
  // BoxStyle). Returns the number of the button.
  virtual int MsgBox(std::u16string_view text, std::int32_t style, std::u16string_view title) = 0;

  // Asks for a line of text; nothing when it was cancelled.
  virtual std::optional<std::u16string> InputBox(std::u16string_view prompt, std::u16string_view title,
                                                 std::u16string_view proposal) = 0;

  // A question with Yes and No.
  virtual bool Confirm(std::string_view question, std::string_view title) = 0;

  // What is to become of something that is about to be lost. Closing the box means Cancel.
  virtual SaveAnswer AskToSave(std::string_view question, std::string_view title) = 0;

  // Closes what is being shown, as if the user had; the program is about to end.
  virtual void Dismiss() = 0;
};

enum class BoxButton { Ok = 1, Cancel, Abort, Retry, Ignore, Yes, No };
enum class BoxIcon { None, Critical, Question, Exclamation, Information };

// The number that scripts give a message box, taken apart: its low four bits choose the buttons, the next
// the icon (16 to 64), and 256, 512 and 768 make the second, third and fourth button the default.
struct BoxStyle {
  std::array<BoxButton, 3> buttons;
  std::size_t count;
  BoxIcon icon;
  BoxButton defaultButton;

  // What closing the box without a button means.
  BoxButton EscapeButton() const;
};
BoxStyle BoxStyleOf(std::int32_t style);

inline constexpr std::int32_t stopIcon = 16;

}  // namespace quarlin
