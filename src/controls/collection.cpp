// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/collection.h"

#include <algorithm>

namespace quarlin {

void ControlCollection::Add(const ControlGroup& group) {
  for (Control* control : group.Members()) {
    control->ReportChangesTo(changes_);
    controls_.push_back(control);
  }
}

Control* ControlCollection::Find(std::string_view name, std::optional<int> index) const {
  const auto found = std::find_if(controls_.begin(), controls_.end(), [&](const Control* control) {
    return control->Name() == name && control->Index() == index;
  });
  return found == controls_.end() ? nullptr : *found;
}

}  // namespace quarlin
