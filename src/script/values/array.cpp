// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/values/array.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "script/values/heap.h"

namespace quarlin::vbs {
namespace {

constexpr std::size_t mostDimensions = 60;

// How many items the bounds enclose. Error 9 for a bound below -1, 7 for more than memory can hold.
std::size_t ItemCount(std::span<const std::int32_t> upperBounds) {
  if (upperBounds.empty()) return 0;
  if (upperBounds.size() > mostDimensions) throw ScriptError(subscriptOutOfRange);
  constexpr std::size_t most = std::numeric_limits<std::int32_t>::max();
  std::size_t count = 1;
  for (const std::int32_t bound : upperBounds) {
    if (bound < -1) throw ScriptError(subscriptOutOfRange);
    count *= static_cast<std::size_t>(bound + std::int64_t{1});
    if (count > most) throw ScriptError(outOfMemory);
  }
  return count;
}

std::size_t BytesOf(std::size_t items) {
  return items * sizeof(Value);
}

}  // namespace

ArrayBody::ArrayBody(std::vector<std::int32_t> bounds, std::vector<Value> items, bool fixed)
    : bounds_(std::move(bounds)), items_(std::move(items)), charged_(BytesOf(items_.size())), fixed_(fixed) {}

ArrayBody::~ArrayBody() {
  heap::Discharge(charged_);
}

ArrayRef ArrayBody::Make(std::span<const std::int32_t> upperBounds, bool fixed) {
  const std::size_t count = ItemCount(upperBounds);
  heap::Charge(BytesOf(count));
  return new ArrayBody({upperBounds.begin(), upperBounds.end()}, std::vector<Value>(count), fixed);
}

ArrayRef ArrayBody::Of(std::vector<Value> items) {
  heap::Charge(BytesOf(items.size()));
  const auto bound = static_cast<std::int32_t>(items.size()) - 1;
  return new ArrayBody({bound}, std::move(items), false);
}

// An array within an array is shared until one of the two is written.
ArrayRef ArrayBody::Copy(bool fixed) const {
  heap::Charge(BytesOf(items_.size()));
  return new ArrayBody(bounds_, items_, fixed);
}

Value& ArrayBody::At(std::span<const std::int32_t> indices) {
  if (indices.size() != bounds_.size() || bounds_.empty()) throw ScriptError(subscriptOutOfRange);
  std::size_t place = 0;
  std::size_t step = 1;
  for (std::size_t dimension = 0; dimension < indices.size(); ++dimension) {
    const std::int32_t index = indices[dimension];
    if (index < 0 || index > bounds_[dimension]) throw ScriptError(subscriptOutOfRange);
    place += static_cast<std::size_t>(index) * step;
    step *= static_cast<std::size_t>(bounds_[dimension]) + 1;
  }
  return items_[place];
}

void ArrayBody::Preserve(std::span<const std::int32_t> upperBounds) {
  if (!bounds_.empty() && (upperBounds.size() != bounds_.size() ||
                           !std::equal(bounds_.begin(), bounds_.end() - 1, upperBounds.begin()))) {
    throw ScriptError(subscriptOutOfRange);
  }
  const std::size_t count = ItemCount(upperBounds);
  const std::size_t bytes = BytesOf(count);
  if (bytes > charged_) heap::Charge(bytes - charged_);
  try {
    // Grown by halves beyond the need, so that adding item after item stays linear.
    if (count > items_.capacity()) items_.reserve(std::max(count, items_.capacity() + items_.capacity() / 2));
    items_.resize(count);
  } catch (...) {
    if (bytes > charged_) heap::Discharge(bytes - charged_);
    throw;
  }
  if (bytes < charged_) heap::Discharge(charged_ - bytes);
  charged_ = bytes;
  bounds_.assign(upperBounds.begin(), upperBounds.end());
}

}  // namespace quarlin::vbs
