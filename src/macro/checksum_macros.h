// SPDX-License-Identifier: GPL-3.0-or-later
// The checksum macros: those that insert a protocol's checksum, those that only keep it, those that insert
// what was kept, and last those that insert a sum that is known everywhere, in the form their ending asks
// for.
#pragma once

#include <string>

#include "macro/checksum.h"

namespace quarlin {

// The macro that inserts the checksum. A protocol's has one form, whatever is asked for.
std::string ChecksumMacro(const Checksum& checksum, ChecksumForm form);

// Expands the first of each kind, one kind after the other; a checksum covers all text left of its macro
// as the kinds before it left it. `lastChecksum` is the kept one. While it is empty, the macros that
// write its character code stay in the text.
void ExpandChecksums(std::string& text, std::string& lastChecksum);

}  // namespace quarlin
