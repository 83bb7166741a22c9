// SPDX-License-Identifier: GPL-3.0-or-later
// Err: what went wrong last, and the way to raise an error.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "script/values/dispatch.h"

namespace quarlin::vbs {

class ErrObject : public TableObject<ErrObject> {
 public:
  static std::span<const Member<ErrObject>> Members();
  std::u16string_view TypeName() const override { return u"Object"; }

  void Take(const ScriptError& error);
  void Clear();

  // Err.Raise: never returns.
  [[noreturn]] void Raise(Arguments arguments);

  std::int32_t Number = 0;
  std::u16string Description;
  std::u16string Source;
  std::u16string HelpFile;
  std::int32_t HelpContext = 0;
};

}  // namespace quarlin::vbs
