// SPDX-License-Identifier: GPL-3.0-or-later
// The arrays of the language: lower bound 0, up to 60 dimensions, the first index running fastest.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "script/values/value.h"

namespace quarlin::vbs {

class ArrayBody final : public Counted {
 public:
  // Upper bounds, each -1 or more (error 9 otherwise). No bounds at all: "Dim a()", not yet sized.
  // Error 7 when it would be too large.
  static ArrayRef Make(std::span<const std::int32_t> upperBounds, bool fixed = false);
  static ArrayRef Of(std::vector<Value> items);  // one dimension
  ArrayRef Copy(bool fixed) const;

  std::size_t Dimensions() const { return bounds_.size(); }
  std::int32_t UpperBound(std::size_t dimension) const { return bounds_[dimension]; }  // dimension from 0
  bool Fixed() const { return fixed_; }                                                // ReDim is error 10

  // Error 9 for a wrong number of indices or one out of range.
  Value& At(std::span<const std::int32_t> indices);

  // Changes the last bound and keeps the items; error 9 when anything else would change.
  void Preserve(std::span<const std::int32_t> upperBounds);

  // For those who look for circles of objects, and empty beside that: see holders.cpp.
  struct Scan {
    std::uint32_t explained = 0;
    bool suspected = false;
  };
  Scan& ScanState() { return scan_; }

  std::vector<Value>& Items() { return items_; }
  const std::vector<Value>& Items() const { return items_; }

 private:
  ArrayBody(std::vector<std::int32_t> bounds, std::vector<Value> items, bool fixed);
  ~ArrayBody() override;

  std::vector<std::int32_t> bounds_;
  std::vector<Value> items_;
  std::size_t charged_ = 0;
  Scan scan_;
  bool fixed_;
};

}  // namespace quarlin::vbs
