// SPDX-License-Identifier: GPL-3.0-or-later
// What a program of ours makes of its process before anything else.
#pragma once

#include <string_view>

namespace quarlin {

// Lets a reader that has gone and a limit on the size of files be errors of the write that meets them, like a
// full disk. A standard stream that was closed becomes /dev/null: else the next file to be opened, a serial
// port perhaps, would have its number and get all that is printed.
void PrepareProcess();

// Ends the process at once with status 1, with nothing saved and no order kept, and the reason as one line on
// standard error. For any thread, when the program cannot come to its end by itself.
[[noreturn]] void Abandon(std::string_view why);

}  // namespace quarlin
