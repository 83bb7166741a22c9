// SPDX-License-Identifier: GPL-3.0-or-later
// The part of the heap's count that one object holds: given back when the object dies.
#pragma once

#include <cstddef>

#include "script/values/heap.h"

namespace quarlin::vbs {

class HeapShare {
 public:
  // Error 7 when the limit would be passed; so for Resize, which then changes nothing.
  explicit HeapShare(std::size_t bytes = 0) : bytes_(bytes) { heap::Charge(bytes); }
  HeapShare(const HeapShare&) = delete;
  HeapShare& operator=(const HeapShare&) = delete;
  ~HeapShare() { heap::Discharge(bytes_); }

  std::size_t Bytes() const { return bytes_; }

  void Resize(std::size_t bytes) {
    if (bytes > bytes_) heap::Charge(bytes - bytes_);
    if (bytes < bytes_) heap::Discharge(bytes_ - bytes);
    bytes_ = bytes;
  }

 private:
  std::size_t bytes_;
};

}  // namespace quarlin::vbs
