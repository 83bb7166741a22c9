// SPDX-License-Identifier: GPL-3.0-or-later
// What quarlin-script does with scripts without running them.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string_view>

#include "script/options.h"
#include "script/script_runner.h"

namespace quarlin::script_tool {

enum Status { done = 0, scriptError = 1, wrongUsage = 2 };

void PrintText(std::FILE* stream, std::string_view utf8);

// To standard error, "error NUMBER line N column C DESCRIPTION" as the last line.
void ReportError(const std::filesystem::path& file, const vbs::ScriptError& error);

// Each gives the exit status. Warnings go to standard error, or with --json to standard output.
int CheckScript(const Options& options, const std::filesystem::path& file, ScriptRunner& runner);
int TakeInventory(const Options& options, const std::filesystem::path& folder, ScriptRunner& runner);

}  // namespace quarlin::script_tool
