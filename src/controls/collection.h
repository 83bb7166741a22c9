// SPDX-License-Identifier: GPL-3.0-or-later
// Every control of a window by name and index, in one fixed order: what the configuration file, the
// scripts and the view walk.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "controls/control.h"

namespace quarlin {

class ControlCollection {
 public:
  // Adds the group's controls behind those already there. The group must outlive the collection.
  void Add(const ControlGroup& group);

  const std::vector<Control*>& All() const { return controls_; }

  // By exact name, and by index within a control array; nullptr when there is none.
  Control* Find(std::string_view name, std::optional<int> index = std::nullopt) const;

  RepaintList& Changes() { return changes_; }

 private:
  std::vector<Control*> controls_;
  RepaintList changes_;
};

}  // namespace quarlin
