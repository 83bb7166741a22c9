// SPDX-License-Identifier: GPL-3.0-or-later
// Opens text files with the desktop's programs.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "base/program_folder.h"
#include "desktop/text_opener.h"

namespace quarlin {

class DesktopTextOpener : public TextOpener {
 public:
  // Looks for the editor once, here.
  explicit DesktopTextOpener(const Environment& environment);

  // In the editor, else with the desktop's opener. The program lives on without us and knows none of our
  // descriptors; its working folder is the file's.
  bool OpenText(const std::filesystem::path& file) override;

  // The editor's program, or "".
  std::string EditorPath() const { return editor_ ? editor_->front() : ""; }

 private:
  std::optional<std::vector<std::string>> editor_;
  std::optional<std::vector<std::string>> opener_;
};

}  // namespace quarlin
