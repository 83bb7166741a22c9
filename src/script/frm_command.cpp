#include "script/frm_command.h"

#include <algorithm>
#include <limits>

#include "base/numbers.h"

namespace quarlin {
namespace {

constexpr Color unlit = 0x606060;  // until a script gives it a colour
constexpr int atRest = 1;
constexpr int lowerArrow = 2;

}  // namespace

FrmCommandControls::FrmCommandControls(EventLoop& loop)
    : ControlGroup(loop), ShpOutput(*this, "ShpOutput", unlit), ChkInput(*this, "ChkInput", "") {
  for (std::size_t i = 0; i < ChkInput.size(); ++i) {
    ChkInput[i].SetCaption(PaddedDecimal(static_cast<std::int64_t>(i), 1));
  }
}

FrmCommand::FrmCommand(EventLoop& loop) : controls(loop), loop_(loop) {
  collection_.Add(controls);
  for (std::size_t i = 0; i < controls.VScrollIO.size(); ++i) {
    controls.VScrollIO[i].Change = [this, i] { VScrollIO_Change(i); };
  }
  controls.cmdExit.OnClick = [this] {
    if (OnExit) OnExit();
    SetVisible(false);
  };
}

void FrmCommand::Load() {
  SpinBusy = true;  // this is no press of a button
  for (std::size_t i = 0; i < controls.VScrollIO.size(); ++i) controls.VScrollIO[i].SetValue(atRest);
  SpinBusy = false;
}

void FrmCommand::VScrollIO_Change(std::size_t index) {
  if (SpinBusy) return;
  SpinBusy = true;
  TextBox& box = controls.TextIO[index];
  ScrollBar& spin = controls.VScrollIO[index];
  const std::int64_t step = spin.Value() == lowerArrow ? -1 : 1;
  using Limits = std::numeric_limits<std::int32_t>;
  const std::int64_t number = std::clamp<std::int64_t>(box.Integer() + step, Limits::min(), Limits::max());
  box.SetText(PaddedDecimal(number, 1));
  spin.SetValue(atRest);
  loop_.DoEvents();
  SpinBusy = false;
}

void FrmCommand::SetCaption(std::string_view caption) {
  caption_ = caption;
  WindowChanged();
}

void FrmCommand::SetVisible(bool visible) {
  visible_ = visible;
  WindowChanged();
}

void FrmCommand::SetTopMost(bool topMost) {
  topMost_ = topMost;
  WindowChanged();
}

void FrmCommand::WindowChanged() const {
  if (OnWindowChanged) OnWindowChanged();
}

}  // namespace quarlin
