// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/form_main_object.h"

#include <utility>

#include "curves/frm_plot.h"
#include "script/form_object.h"
#include "script/script_host.h"
#include "script/script_text.h"
#include "script/values/conversions.h"
#include "ui/frm_main.h"

namespace quarlin {
namespace {

using vbs::Arguments;
using vbs::Value;
using enum vbs::MemberKind;
using Members = std::vector<FormMember>;

bool IsGiven(Arguments arguments, std::size_t index) {
  return index < arguments.size() && !arguments[index].IsMissing();
}

void AddWindowMembers(Members& members, FrmMain& frm) {
  const auto stop = [&frm](Arguments arguments) {
    const std::string title = IsGiven(arguments, 1) ? BytesOfValue(arguments[1]) : "Quarlin";
    frm.StopWithMessage(BytesOfValue(arguments[0]), title);
    return Value();
  };
  members.push_back({u"Name", Property, 0, 0, [](Arguments) { return Value::String(u"frmMain"); }});
  members.push_back({u"Caption", Property, 0, 0, [&frm](Arguments) { return TextValue(frm.Caption()); },
                     [&frm](const Value& value) { frm.SetCaption(BytesOfValue(value)); }});
  members.push_back(WindowStateMember(frm));
  members.push_back({u"SignalError", Method, 1, 1, [&frm](Arguments arguments) {
                       frm.SignalError(vbs::ToLong(arguments[0]));
                       return Value();
                     }});
  members.push_back({u"Filtered", Property, 0, 0, [&frm](Arguments) {
                       const auto value = frm.Plot().Filtered();
                       return value ? Value::Double(*value) : Value();
                     }});
  members.push_back({u"StopComunication", Method, 1, 2, stop});
  members.push_back({u"StopWithMessage", Method, 1, 2, stop});
}

// Scripts have procedures and variables of such names, so these want the window's name in front.
void AddCourseMembers(Members& members, ScriptHost& script) {
  members.push_back({u"Finish", Method, 1, 1,
                     [&script](Arguments arguments) -> Value { script.Finish(vbs::ToLong(arguments[0])); },
                     nullptr, false});
  members.push_back({u"Sleep", Method, 1, 1,
                     [&script](Arguments arguments) {
                       script.Waits().Sleep(vbs::ToLong(arguments[0]));
                       return Value();
                     },
                     nullptr, false});
  members.push_back({u"WaitAnswer", Method, 1, 1,
                     [&script](Arguments arguments) {
                       const auto answer = script.Waits().Answer(vbs::ToLong(arguments[0]));
                       return answer ? TextValue(*answer) : Value();
                     },
                     nullptr, false});
}

void AddTransferMembers(Members& members, Link& link) {
  members.push_back({u"SendString", Method, 1, 1, [&link](Arguments arguments) {
                       std::string text = BytesOfValue(arguments[0]);
                       return Value::Long(link.SendString(text));
                     }});
  members.push_back({u"ReceiveChar", Method, 0, 0, [&link](Arguments) {
                       link.CommRxEmpty();
                       return TextValue(link.ReceiveChar());
                     }});
  members.push_back({u"CommRead", Method, 0, 1, [&link](Arguments arguments) {
                       const std::int32_t most =
                           IsGiven(arguments, 0) ? vbs::ToLong(arguments[0]) : Link::receiveSize;
                       std::string text;
                       if (!link.CommRxEmpty()) link.CommRead(text, most);
                       return TextValue(text);
                     }});
  members.push_back({u"CommWrite", Method, 1, 1, [&link](Arguments arguments) {
                       return Value::Long(link.CommWrite(BytesOfValue(arguments[0])));
                     }});
  members.push_back(
      {u"CommRxEmpty", Method, 0, 0, [&link](Arguments) { return Value::Bool(link.CommRxEmpty()); }});
  members.push_back(
      {u"CommFlush", Method, 0, 0, [&link](Arguments) { return Value::Long(link.CommFlush()); }});
  members.push_back({u"GetByteRead", Method, 0, 0,
                     [&link](Arguments) { return Value::Long(link.Network().GetByteRead()); }});
  members.push_back({u"GetStringRead", Method, 0, 0,
                     [&link](Arguments) { return TextValue(link.Network().GetStringRead()); }});
}

void AddPortMembers(Members& members, FrmMain& frm, Link& link, const std::function<void()>& linkChanged) {
  members.push_back({u"CommOpen", Method, 1, 2, [&frm, &link, linkChanged](Arguments arguments) {
                       const ConnectionControls& chosen = frm.controls.connection;
                       const std::string settings =
                           IsGiven(arguments, 1) ? BytesOfValue(arguments[1])
                                                 : chosen.ComboBaud.Text() + "," + chosen.ComboWord.Text();
                       const std::int32_t status = link.CommOpen(BytesOfValue(arguments[0]), settings);
                       linkChanged();
                       return Value::Long(status);
                     }});
  members.push_back({u"CommClose", Method, 0, 0, [&link, linkChanged](Arguments) {
                       const std::int32_t status = link.CommClose();
                       linkChanged();
                       return Value::Long(status);
                     }});
  members.push_back(
      {u"CommIsOpen", Method, 0, 0, [&link](Arguments) { return Value::Bool(link.CommIsOpen()); }});
  members.push_back({u"CommReadCD", Method, 1, 1, [&link](Arguments arguments) {
                       bool state = false;
                       link.CommReadCD(static_cast<std::uint16_t>(vbs::ToLong(arguments[0])), state);
                       return Value::Bool(state);
                     }});
  members.push_back({u"CommSetLine", Method, 2, 2, [&link](Arguments arguments) {
                       return Value::Long(
                           link.CommSetLine(vbs::ToInteger(arguments[0]), vbs::ToInteger(arguments[1])));
                     }});
}

void AddErrorMembers(Members& members, Link& link) {
  members.push_back({u"CommLastError", Property, 0, 0,
                     [&link](Arguments) { return Value::Long(link.State.CommLastError); }});
  members.push_back({u"CommLastErrorSource", Property, 0, 0,
                     [&link](Arguments) { return TextValue(link.State.CommLastErrorSource); }});
  members.push_back({u"CommLastErrorText", Property, 0, 0,
                     [&link](Arguments) { return TextValue(link.State.CommLastErrorText); }});
}

}  // namespace

vbs::ObjectRef MakeFormMainObject(FrmMain& frm, Link& link, const std::function<void()>& linkChanged) {
  Members members;
  AddWindowMembers(members, frm);
  AddCourseMembers(members, frm.Script());
  AddTransferMembers(members, link);
  AddPortMembers(members, frm, link, linkChanged);
  AddErrorMembers(members, link);
  return vbs::ObjectRef(new FormObject(u"frmMain", frm.Collection(), std::move(members)));
}

}  // namespace quarlin
