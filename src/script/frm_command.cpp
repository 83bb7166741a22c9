// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/frm_command.h"

#include <algorithm>
#include <limits>

#include "base/numbers.h"
#include "base/scope_flag.h"

namespace quarlin {
namespace {

constexpr std::string_view windowCaption = "Command (FrmCommand)";
constexpr Color unlit = 0x606060;  // until a script gives it a colour
constexpr int atRest = 1;
constexpr int lowerArrow = 2;

}  // namespace

FrmCommandControls::FrmCommandControls(EventLoop& loop)
    : ControlGroup(loop), ShpOutput(*this, "ShpOutput", unlit), ChkInput(*this, "ChkInput", "") {}

FrmCommand::FrmCommand(EventLoop& loop) : Form("FrmCommand", windowCaption), controls(loop), loop_(loop) {
  Collection().Add(controls);
  for (std::size_t i = 0; i < controls.VScrollIO.size(); ++i) {
    controls.VScrollIO[i].Change = [this, i] { VScrollIO_Change(i); };
  }
  controls.cmdExit.OnClick = [this] {
    OnExit();
    closed_ = true;
    SetVisible(false);
  };
  OnClose = [this] {
    if (Modal()) {
      SetVisible(false);  // a script waits for that
    } else {
      controls.cmdExit.Click();
    }
  };
  BeginAfresh();
}

void FrmCommand::BeginAfresh() {
  closed_ = false;
  SetCaption(windowCaption);
  for (Control* control : controls.Members()) control->ForgetLooks();
  for (std::size_t i = 0; i < controls.TextIO.size(); ++i) controls.TextIO[i].SetText("");
  for (std::size_t i = 0; i < controls.comboIO.size(); ++i) {
    controls.comboIO[i].Clear();
    controls.comboIO[i].SetText("");
  }
  controls.txtInput.SetText("");
  controls.txtOutput.SetText("");
  for (std::size_t i = 0; i < controls.ShpOutput.size(); ++i) controls.ShpOutput[i].SetFillColor(unlit);
  for (std::size_t i = 0; i < controls.ChkInput.size(); ++i) {
    controls.ChkInput[i].SetValue(0);
    controls.ChkInput[i].SetCaption(PaddedDecimal(static_cast<std::int64_t>(i), 1));
  }
  controls.FrameText.SetCaption("General (TextIO - VScrollIO)");
  controls.FarmeCombo.SetCaption("General (comboIO)");
  controls.FrameOutput.SetCaption("Output (ShpOutput)");
  controls.FrameInput.SetCaption("Input (ChkInput)");
  controls.cmdExit.SetCaption("Exit");
}

void FrmCommand::Load() {
  if (closed_) BeginAfresh();
  const ScopeFlag busy(SpinBusy);  // this is no press of a button
  for (std::size_t i = 0; i < controls.VScrollIO.size(); ++i) controls.VScrollIO[i].SetValue(atRest);
}

void FrmCommand::VScrollIO_Change(std::size_t index) {
  if (SpinBusy) return;
  const ScopeFlag busy(SpinBusy);
  TextBox& box = controls.TextIO[index];
  ScrollBar& spin = controls.VScrollIO[index];
  const std::int64_t step = spin.Value() == lowerArrow ? -1 : 1;
  using Limits = std::numeric_limits<std::int32_t>;
  const std::int64_t number = std::clamp<std::int64_t>(box.Integer() + step, Limits::min(), Limits::max());
  box.SetText(PaddedDecimal(number, 1));
  spin.SetValue(atRest);
  loop_.DoEvents();
}

}  // namespace quarlin
