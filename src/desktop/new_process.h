// SPDX-License-Identifier: GPL-3.0-or-later
// What a new process does between fork and exec, where only plain system calls are safe, and how its parent
// hears that it came to nothing.
#pragma once

#include <string>
#include <system_error>
#include <vector>

#include "base/file_handle.h"

namespace quarlin {

// Both ends stay ours: a program that is started inherits neither.
struct Pipe {
  FileHandle readEnd;
  FileHandle writeEnd;
};

// Ends that are negative when there is none to be had; errno tells why.
Pipe MakePipe();

// The words as exec takes them, which point into `words`.
std::vector<char*> ArgumentsOf(std::vector<std::string>& words);

// Becomes the program words[0], in `folder`, with the signals as a program expects them and none of our
// descriptors: it reads nothing, and what it prints goes to `output`, or nowhere when that is negative.
[[noreturn]] void BecomeProgram(char* const* words, const char* folder, int output, int report);

// Writes errno to the report and ends the process.
[[noreturn]] void FailToStart(int report);

// The parent's: waits until the process has become its program, which closes the report, or has failed. Our
// own writing end must be closed by then.
std::error_code StartFailure(int report);

}  // namespace quarlin
