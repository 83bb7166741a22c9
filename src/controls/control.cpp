// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/control.h"

#include <utility>

namespace quarlin {

void RepaintList::Add(Control& control) {
  if (control.queued_) return;
  control.queued_ = true;
  changed_.push_back(&control);
  if (changed_.size() == 1) onFirst();
}

std::vector<Control*> RepaintList::Take() {
  for (Control* control : changed_) control->queued_ = false;
  return std::exchange(changed_, {});
}

Control::Control(ControlGroup& group, ControlKind kind, std::string_view name, std::optional<int> index)
    : kind_(kind), name_(name), index_(index) {
  group.members_.push_back(this);
}

void Control::Changed() {
  if (repaint_ != nullptr) repaint_->Add(*this);
}

void Control::SetEnabled(bool enabled) {
  if (enabled_ == enabled) return;
  enabled_ = enabled;
  EnabledChanged();
  Changed();
}

void Control::SetVisible(bool visible) {
  if (std::exchange(visible_, visible) != visible) Changed();
}

void Control::SetToolTipText(std::string_view text) {
  if (toolTipText_ == text) return;
  toolTipText_ = text;
  Changed();
}

void Control::SetBackColor(std::optional<Color> color) {
  if (std::exchange(backColor_, color) != color) Changed();
}

void Control::SetForeColor(std::optional<Color> color) {
  if (std::exchange(foreColor_, color) != color) Changed();
}

void Control::SetPlace(const Placement& place) {
  if (std::exchange(place_, place) != place) Changed();
}

void Control::SetLook(const Looks& look) {
  if (look_ == look) return;
  look_ = look;
  Changed();
}

void Control::ForgetLooks() {
  SetEnabled(true);
  SetVisible(true);
  SetToolTipText("");
  SetBackColor(std::nullopt);
  SetForeColor(std::nullopt);
  SetPlace({});
  SetLook({});
  SetTag("");
}

void Control::SetFocus() {
  focusWish_ = true;
  Changed();
}

}  // namespace quarlin
