// SPDX-License-Identifier: GPL-3.0-or-later
// Elements of arrays and default members of objects, picked by arguments in parentheses.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "script/values/array.h"
#include "script/values/dispatch.h"

namespace quarlin::vbs {

// Reading is IndexValue, in dispatch.h.

// Indices as numbers. To be made before the array is touched: an object among them runs its default
// property, which may change or free the array.
class IndexNumbers {
 public:
  explicit IndexNumbers(Arguments indices);
  std::span<const std::int32_t> Span() const { return {numbers_.data(), count_}; }

 private:
  std::array<std::int32_t, 60> numbers_;
  std::size_t count_;
};

void PutIndexed(Value& target, Arguments indices, const Value& value, PutKind kind,
                std::u16string_view name = {});

// What Let stores: the plain value; an array of its own size for good loses that.
Value LetValue(const Value& value);

}  // namespace quarlin::vbs
