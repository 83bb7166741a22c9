// SPDX-License-Identifier: GPL-3.0-or-later
// The objects that scripts of both languages can make.
#pragma once

#include <string_view>

#include "script/values/dispatch.h"
#include "script/values/holders.h"
#include "script/values/services.h"

namespace quarlin::vbs {

// The object of a program identifier: "Scripting.Dictionary", "Scripting.FileSystemObject",
// "VBScript.RegExp" and "Excel.Application", without regard to case. Error 429, which names it, for any
// other. `holders` is the engine's list for objects that hold values, null where it keeps none.
ObjectRef CreateLibraryObject(Services& services, Holders* holders, std::u16string_view programId);

}  // namespace quarlin::vbs
