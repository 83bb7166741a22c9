// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/form.h"

namespace quarlin {

void Form::SetCaption(std::string_view caption) {
  caption_ = caption;
  OnChanged();
}

void Form::SetVisible(bool visible) {
  visible_ = visible;
  OnChanged();
}

void Form::SetTopMost(bool topMost) {
  topMost_ = topMost;
  OnChanged();
}

void Form::SetState(WindowState state) {
  state_ = state;
  stateWish_ = true;
  OnChanged();
}

void Form::ShowModal() {
  visible_ = true;
  OnModal();
  visible_ = false;
}

void Form::Close() {
  if (OnClose) {
    OnClose();
  } else {
    SetVisible(false);
  }
}

}  // namespace quarlin
