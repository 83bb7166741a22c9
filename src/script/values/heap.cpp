// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/values/heap.h"

#include <new>

#include "script/values/effort.h"
#include "script/values/error.h"

namespace quarlin::vbs::heap {
namespace {

std::size_t limit = std::size_t{1} << 30;
std::size_t inUse = 0;

}  // namespace

void SetLimit(std::size_t bytes) {
  limit = bytes;
}

std::size_t Limit() {
  return limit;
}

std::size_t InUse() {
  return inUse;
}

namespace {

// Memory is written when it was taken, and looked through before it is given back.
void Take(std::size_t bytes, std::size_t most) {
  if (bytes > most || inUse > most - bytes) throw ScriptError(outOfMemory);
  inUse += bytes;
  effort::Touch(bytes);
}

}  // namespace

void Charge(std::size_t bytes) {
  constexpr std::size_t shareForObjects = 64;
  Take(bytes, limit - limit / shareForObjects);
}

void Discharge(std::size_t bytes) noexcept {
  inUse -= bytes;
  effort::Touch(bytes);
}

void* Counts::operator new(std::size_t bytes) {
  Take(bytes + overhead, limit);
  try {
    return ::operator new(bytes);
  } catch (...) {
    Discharge(bytes + overhead);
    throw;
  }
}

void Counts::operator delete(void* memory, std::size_t bytes) noexcept {
  ::operator delete(memory);
  Discharge(bytes + overhead);
}

}  // namespace quarlin::vbs::heap
