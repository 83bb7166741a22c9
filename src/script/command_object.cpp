// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/command_object.h"

#include "script/form_object.h"
#include "script/script_text.h"
#include "script/values/arguments.h"
#include "script/values/conversions.h"

namespace quarlin {

using vbs::Arguments;
using vbs::Value;
using enum vbs::MemberKind;

vbs::ObjectRef MakeCommandObject(FrmCommand& panel, ScriptWaits& waits) {
  const auto show = [&panel, &waits](Arguments arguments) {
    const std::int32_t isModal = vbs::ChoiceOr(arguments, 0, 0, 0, 1);
    if (isModal == 1) {
      waits.ShowModal(panel);
    } else {
      panel.SetVisible(true);
    }
    return Value();
  };
  const auto hide = [&panel](Arguments) {
    panel.SetVisible(false);
    return Value();
  };
  std::vector<FormMember> members{
      {u"Name", Property, 0, 0, [](Arguments) { return Value::String(u"FrmCommand"); }},
      {u"Caption", Property, 0, 0, [&panel](Arguments) { return TextValue(panel.Caption()); },
       [&panel](const Value& value) { panel.SetCaption(BytesOfValue(value)); }},
      {u"Visible", Property, 0, 0, [&panel](Arguments) { return Value::Bool(panel.Visible()); },
       [&panel](const Value& value) { panel.SetVisible(vbs::ToBool(value)); }},
      {u"Show", Method, 0, 2, show},  // the second is a window that it belongs to
      {u"Hide", Method, 0, 0, hide},
      WindowStateMember(panel),
  };
  return vbs::ObjectRef(new FormObject(u"FrmCommand", panel.Collection(), std::move(members)));
}

}  // namespace quarlin
