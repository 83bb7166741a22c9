// SPDX-License-Identifier: GPL-3.0-or-later
// Shows text files to the user in a program that is not ours.
#pragma once

#include <filesystem>

namespace quarlin {

class TextOpener {
 public:
  virtual ~TextOpener() = default;

  // Opens a text file in the user's editor, or with the desktop's default program where none is known.
  // Does not wait; false when nothing could be started.
  virtual bool OpenText(const std::filesystem::path& file) = 0;
};

}  // namespace quarlin
