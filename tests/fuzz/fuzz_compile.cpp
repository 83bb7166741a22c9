// SPDX-License-Identifier: GPL-3.0-or-later
// Any text either compiles or is refused with an error of the language.

#include <cstddef>
#include <cstdint>
#include <string>

#include "script/vbscript/machine/engine.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::u16string source(data, data + size);
  try {
    quarlin::vbs::Engine::Check(source);
  } catch (const quarlin::vbs::ScriptError&) {
  }
  return 0;
}
