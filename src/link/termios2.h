// SPDX-License-Identifier: GPL-3.0-or-later
// The line settings as the kernel keeps them, where a rate is any number of bits per second. Its header
// clashes with the C library's, so whoever includes that one comes here for settings.
#pragma once

#include <system_error>

#include "link/device.h"

namespace quarlin {

// Bytes pass unchanged both ways, the modem lines are ignored, no flow control is on, and a read of an
// empty line says so instead of looking like its end. Rate and format stay.
std::error_code MakeRaw(int descriptor);

CurrentSettings ReadSettings(int descriptor);

// Sets rate, format and flow control at once; "not supported" for what no line here can do. The driver may
// take something else without a word: read the settings back. CTS flow is always two-way, so `rtsToggle`
// goes with `ctsFlow`.
std::error_code WriteSettings(int descriptor, const SerialSettings& settings);

}  // namespace quarlin
