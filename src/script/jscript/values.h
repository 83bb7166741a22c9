// SPDX-License-Identifier: GPL-3.0-or-later
// Values on their way between a script and its host.
//
//   script               host
//   whole number         Long where it fits 32 bits, else Double, as is any other number
//   undefined, null      Empty, Null; Nothing comes back as null
//   Date                 Date, in local time
//   array                Array of one dimension; one of several comes back as its items in a row, the first
//                        index running fastest, and keeps its bounds for VBArray only
//   any other object     an object whose default member is its text; it comes back as itself
#pragma once

#include <QJSValue>

#include "script/jscript/host_objects.h"
#include "script/values/value.h"

namespace quarlin::jscript {

QJSValue ToScript(QJSEngine& engine, HostObjects& objects, const vbs::Value& value);

// Errors 7 and 28 for an array that is too large or too deep; those of a member that is read on the way.
vbs::Value ToHost(const QJSValue& value);

}  // namespace quarlin::jscript
