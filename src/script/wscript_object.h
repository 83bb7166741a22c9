// SPDX-License-Identifier: GPL-3.0-or-later
// "WScript": what scripts that are started on a command line find there.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "script/values/dispatch.h"

namespace quarlin {

class ScriptHost;

// Where it writes, and what it was given.
struct ScriptConsole {
  std::function<void(std::u16string_view text)> out;
  std::function<void(std::u16string_view text)> error;
  std::u16string_view lineEnd = u"\r\n";
  std::vector<std::u16string> arguments{};
};

// The host outlives the object.
vbs::ObjectRef MakeWScriptObject(ScriptHost& host);

}  // namespace quarlin
