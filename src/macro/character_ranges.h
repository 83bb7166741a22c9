// SPDX-License-Identifier: GPL-3.0-or-later
// The macro "[ASCxxx-yyy]": a run of characters by their codes.
#pragma once

#include <string>

namespace quarlin {

// Replaces every range by the characters with the codes xxx to yyy, one range after the other. Ranges
// that run backwards or end beyond code 255 stay; codes below 0 give nothing. A range that is put
// together only by the text of an earlier one is left for the next pass.
void ExpandCharacterRanges(std::string& text);

}  // namespace quarlin
