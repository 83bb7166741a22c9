// SPDX-License-Identifier: GPL-3.0-or-later
// Which settings the user has changed since they were last loaded or saved. What the program or a script
// writes is nobody's edit, and a setting that has its old value again is none any more.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "controls/collection.h"

namespace quarlin {

class EditedSettings {
 public:
  // As things stand, nothing is edited.
  explicit EditedSettings(const ControlCollection& controls);

  // Changing `moved`, which has no value of its own in the configuration, changes `setting`.
  void Moves(const Control& moved, const Control& setting) { movedBy_[&moved] = &setting; }

  // The user is about to change the control; `caption` is what she reads beside it.
  void AboutToEdit(const Control& control, std::string_view caption);

  // All has been loaded or saved.
  void Settle();

  // Of the settings that are edited as things stand, in the order of their first edit.
  std::vector<std::string> Captions() const;

 private:
  struct Edit {
    const Control* control;
    std::string caption;
    std::string before;
  };

  bool Stands(const Edit& edit) const;

  const ControlCollection& controls_;
  std::unordered_map<const Control*, const Control*> movedBy_;
  std::unordered_map<const Control*, std::string> settled_;
  std::vector<Edit> edits_;  // one for a control at most
};

// The question before edited settings are lost: what would be saved where, and up to five captions.
std::string SaveQuestion(std::string_view fileName, const std::vector<std::string>& captions);

}  // namespace quarlin
