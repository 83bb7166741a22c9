// The checksum macros: those that insert a checksum, those that only keep it, and those that insert what
// was kept.
#pragma once

#include <string>

namespace quarlin {

// Expands the first of each kind, one kind after the other; a checksum covers all text left of its macro
// as the kinds before it left it. `lastChecksum` is the kept one. While it is empty, the macros that
// write its character code stay in the text.
void ExpandChecksums(std::string& text, std::string& lastChecksum);

}  // namespace quarlin
