// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/item_numbers.h"

namespace quarlin {

std::int32_t ItemNumbers::At(int index) const {
  const auto place = static_cast<std::size_t>(index);
  return index >= 0 && place < numbers_.size() ? numbers_[place] : 0;
}

void ItemNumbers::Set(int index, std::int32_t number) {
  const auto place = static_cast<std::size_t>(index);
  if (place >= numbers_.size()) numbers_.resize(place + 1);
  numbers_[place] = number;
}

void ItemNumbers::Inserted(int index) {
  newest_ = index;
  if (static_cast<std::size_t>(index) < numbers_.size()) numbers_.insert(numbers_.begin() + index, 0);
}

void ItemNumbers::Removed(int index) {
  newest_ = -1;
  if (static_cast<std::size_t>(index) < numbers_.size()) numbers_.erase(numbers_.begin() + index);
}

void ItemNumbers::Cleared() {
  numbers_.clear();
  newest_ = -1;
}

}  // namespace quarlin
