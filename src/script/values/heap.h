// SPDX-License-Identifier: GPL-3.0-or-later
// The memory that script values take, counted so that a script which never stops collecting gets error 7
// instead of taking the machine with it. The count is the process's, as its memory is.
#pragma once

#include <cstddef>

namespace quarlin::vbs::heap {

// The most that all values together may take; 1 GiB unless it was changed.
void SetLimit(std::size_t bytes);

// Counts memory that is about to be taken. Throws ScriptError 7 when the limit would be passed, and then
// counts nothing.
void Charge(std::size_t bytes);
void Discharge(std::size_t bytes) noexcept;

}  // namespace quarlin::vbs::heap
