// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/command_object.h"

#include "script/form_object.h"
#include "script/script_text.h"
#include "script/values/conversions.h"

namespace quarlin {

using vbs::Arguments;
using vbs::Value;
using enum vbs::MemberKind;

vbs::ObjectRef MakeCommandObject(FrmCommand& panel) {
  const auto setVisible = [&panel](bool visible) {
    return [&panel, visible](Arguments) {
      panel.SetVisible(visible);
      return Value();
    };
  };
  std::vector<FormMember> members{
      {u"Name", Property, 0, 0, [](Arguments) { return Value::String(u"FrmCommand"); }},
      {u"Caption", Property, 0, 0, [&panel](Arguments) { return TextValue(panel.Caption()); },
       [&panel](const Value& value) { panel.SetCaption(BytesOfValue(value)); }},
      {u"Visible", Property, 0, 0, [&panel](Arguments) { return Value::Bool(panel.Visible()); },
       [&panel](const Value& value) { panel.SetVisible(vbs::ToBool(value)); }},
      {u"Show", Method, 0, 0, setVisible(true)},
      {u"Hide", Method, 0, 0, setVisible(false)},
  };
  return vbs::ObjectRef(new FormObject(u"FrmCommand", panel.Collection(), std::move(members)));
}

}  // namespace quarlin
