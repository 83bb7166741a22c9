// SPDX-License-Identifier: GPL-3.0-or-later
// The memory that scripts take, counted so that one which never stops collecting gets error 7 instead of
// taking the machine with it. The count is the process's, as its memory is.
#pragma once

#include <cstddef>

namespace quarlin::vbs::heap {

// The most that all values, objects and code together may take; 1 GiB unless it was changed.
void SetLimit(std::size_t bytes);
std::size_t Limit();
std::size_t InUse();

// Counts memory that is about to be taken. Throws ScriptError 7 when the limit would be passed, and then
// counts nothing.
void Charge(std::size_t bytes);
void Discharge(std::size_t bytes) noexcept;

// What every object on the heap takes beside itself.
inline constexpr std::size_t overhead = 16;

// A base for what a script can make: its own memory is counted as it comes and goes. A little of the limit
// is left for it when what it holds has taken all the rest: who clears a table makes an object for that.
struct Counts {
  static void* operator new(std::size_t bytes);
  static void operator delete(void* memory, std::size_t bytes) noexcept;
};

}  // namespace quarlin::vbs::heap
