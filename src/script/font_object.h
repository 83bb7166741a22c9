// SPDX-License-Identifier: GPL-3.0-or-later
// The lettering of a control in scripts: `TextIO(0).Font.Bold = True`, which is `TextIO(0).FontBold = True`.
#pragma once

#include <span>

#include "controls/control.h"
#include "script/values/dispatch.h"

namespace quarlin {

class FontObject : public vbs::TableObject<FontObject> {
 public:
  explicit FontObject(Control& control) : control_(control) {}

  static std::span<const vbs::Member<FontObject>> Members();
  std::u16string_view TypeName() const override { return u"Font"; }

  Control& Owner() { return control_; }

 private:
  Control& control_;
};

}  // namespace quarlin
