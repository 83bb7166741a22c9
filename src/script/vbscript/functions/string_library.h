// SPDX-License-Identifier: GPL-3.0-or-later
// The string functions that stand in files of their own; string_functions.cpp has the table and the rest.
#pragma once

#include "script/vbscript/functions/library.h"

namespace quarlin::vbs {

// string_search.cpp
Value InStr(LibraryContext& context, Arguments arguments);
Value InStrRev(LibraryContext& context, Arguments arguments);
Value Replace(LibraryContext& context, Arguments arguments);

// string_bytes.cpp: a text is seen as the bytes of its UTF-16 code units, the lower one first. A unit of
// which only one byte is asked for keeps that byte as its lower one, so that AscB(MidB(s, n, 1)) is byte n.
Value InStrB(LibraryContext& context, Arguments arguments);
Value LeftB(LibraryContext& context, Arguments arguments);
Value LenB(LibraryContext& context, Arguments arguments);
Value MidB(LibraryContext& context, Arguments arguments);
Value RightB(LibraryContext& context, Arguments arguments);

// string_escape.cpp
Value Escape(LibraryContext& context, Arguments arguments);
Value Unescape(LibraryContext& context, Arguments arguments);

}  // namespace quarlin::vbs
