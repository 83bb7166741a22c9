// SPDX-License-Identifier: GPL-3.0-or-later
// The bytes that a device has received and nobody has taken yet, in order; at most 64 KiB.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <span>
#include <vector>

namespace quarlin {

class InputQueue {
 public:
  static constexpr std::size_t capacity = std::size_t{64} * 1024;

  std::size_t Size() const { return end_ - begin_; }
  bool Full() const { return Size() == capacity; }

  // Where new bytes go, in one piece; tell Grew how many were put there.
  std::span<char> Room() {
    const std::size_t free = capacity - Size();
    if (buffer_.size() - end_ < free) MoveToFront();
    return {buffer_.data() + end_, free};
  }

  void Grew(std::size_t count) { end_ += count; }

  // Takes up to `size` of the oldest bytes; how many it were.
  std::size_t Take(char* target, std::size_t size) {
    const std::size_t count = std::min(size, Size());
    std::copy_n(buffer_.data() + begin_, count, target);
    begin_ += count;
    if (begin_ == end_) Clear();
    return count;
  }

  void Clear() { begin_ = end_ = 0; }

 private:
  void MoveToFront() {
    std::memmove(buffer_.data(), buffer_.data() + begin_, Size());
    end_ -= begin_;
    begin_ = 0;
  }

  // Twice the capacity: the rest is moved only when at least as many bytes have been taken before it.
  std::vector<char> buffer_ = std::vector<char>(2 * capacity);
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
};

}  // namespace quarlin
