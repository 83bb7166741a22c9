// Starts other programs for the user.
#pragma once

#include <filesystem>

namespace quarlin {

class Shell {
 public:
  virtual ~Shell() = default;

  // Opens a text file in the user's editor, or with the desktop's default program where none is known.
  // Does not wait; false when nothing could be started.
  virtual bool OpenText(const std::filesystem::path& file) = 0;
};

}  // namespace quarlin
