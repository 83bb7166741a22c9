// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/values/heap.h"

#include "script/values/error.h"

namespace quarlin::vbs::heap {
namespace {

std::size_t limit = std::size_t{1} << 30;
std::size_t inUse = 0;

}  // namespace

void SetLimit(std::size_t bytes) {
  limit = bytes;
}

void Charge(std::size_t bytes) {
  if (bytes > limit || inUse > limit - bytes) throw ScriptError(outOfMemory);
  inUse += bytes;
}

void Discharge(std::size_t bytes) noexcept {
  inUse -= bytes;
}

}  // namespace quarlin::vbs::heap
