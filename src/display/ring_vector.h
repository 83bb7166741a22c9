// SPDX-License-Identifier: GPL-3.0-or-later
// A queue in one piece of memory that doubles as it fills, up to a fixed number of items: no allocation
// for each item, and never more than the limit.
#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace quarlin {

template <typename Item>
class RingVector {
 public:
  explicit RingVector(std::size_t limit) : limit_(limit) {}

  std::size_t Size() const { return size_; }
  bool Empty() const { return size_ == 0; }
  bool Full() const { return size_ == limit_; }

  Item& operator[](std::size_t index) { return items_[Slot(index)]; }
  const Item& operator[](std::size_t index) const { return items_[Slot(index)]; }
  Item& Front() { return (*this)[0]; }
  Item& Back() { return (*this)[size_ - 1]; }

  // Requires that it is not full.
  void PushBack(const Item& item) {
    if (size_ == items_.size()) Grow();
    ++size_;
    Back() = item;
  }

  // Requires that it is not empty.
  void PopFront() {
    first_ = Slot(1);
    --size_;
  }

  // Gives the memory back as well.
  void Clear() {
    items_ = std::vector<Item>();
    first_ = 0;
    size_ = 0;
  }

 private:
  std::size_t Slot(std::size_t index) const {
    const std::size_t slot = first_ + index;
    return slot < items_.size() ? slot : slot - items_.size();
  }

  void Grow() {
    std::vector<Item> larger(std::min(limit_, std::max<std::size_t>(64, 2 * items_.size())));
    for (std::size_t i = 0; i < size_; ++i) larger[i] = (*this)[i];
    items_ = std::move(larger);
    first_ = 0;
  }

  std::size_t limit_;
  std::vector<Item> items_;
  std::size_t first_ = 0;
  std::size_t size_ = 0;
};

}  // namespace quarlin
