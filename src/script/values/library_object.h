// SPDX-License-Identifier: GPL-3.0-or-later
// What the members of the library objects need again and again, beside the helpers of the functions.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "script/values/arguments.h"
#include "script/values/conversions.h"
#include "script/values/dispatch.h"

namespace quarlin::vbs {

inline std::u16string TextArgument(Arguments arguments, std::size_t index) {
  return ToText(arguments[index]);
}

// Counts and sizes: a Long, or a Double where it is too large for one.
inline Value CountValue(std::size_t count) {
  const auto whole = static_cast<std::int64_t>(count);
  if (whole == static_cast<std::int32_t>(whole)) return Value::Long(static_cast<std::int32_t>(whole));
  return Value::Double(static_cast<double>(whole));
}

template <class Object, class... Parts>
Value NewObject(Parts&&... parts) {
  return Value::Object(ObjectRef(new Object(std::forward<Parts>(parts)...)));
}

}  // namespace quarlin::vbs
