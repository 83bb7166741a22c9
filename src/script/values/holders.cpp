// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/values/holders.h"

namespace quarlin::vbs {

Holder::Holder(Holders* list) : list_(list) {
  if (list_ == nullptr) return;
  next_ = list_->first_;
  if (next_ != nullptr) next_->previous_ = this;
  list_->first_ = this;
}

Holder::~Holder() {
  if (next_ != nullptr) next_->previous_ = previous_;
  if (previous_ != nullptr) {
    previous_->next_ = next_;
  } else if (list_ != nullptr) {
    list_->first_ = next_;
  }
}

// One after the other is taken out of the list, since letting go may end any of the others.
void Holders::LetAllGo() {
  while (first_ != nullptr) {
    Holder* holder = first_;
    first_ = holder->next_;
    if (first_ != nullptr) first_->previous_ = nullptr;
    holder->next_ = nullptr;
    holder->list_ = nullptr;
    holder->KeepAlive();
    holder->LetGo();
    holder->Release();
  }
}

}  // namespace quarlin::vbs
