// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/link_controls.h"

#include <array>

#include "base/text.h"

namespace quarlin {
namespace {

constexpr std::array<FlowControl, 3> flows{FlowControl::None, FlowControl::RtsCts, FlowControl::XonXoff};

}  // namespace

LinkControls::LinkControls(EventLoop& loop) : ControlGroup(loop) {
  chkRTS.Click = [this] { FollowBox(); };
  cboFlow.Change = [this] { FollowChoice(); };
}

std::optional<FlowControl> LinkControls::Flow() const {
  for (const FlowControl flow : flows) {
    if (EqualsIgnoringCase(cboFlow.Text(), NameOf(flow))) return flow;
  }
  return std::nullopt;
}

void LinkControls::FollowBox() {
  const bool byLines = Flow() == FlowControl::RtsCts;
  if (chkRTS.Checked() == byLines) return;
  cboFlow.SetText(NameOf(byLines ? FlowControl::None : FlowControl::RtsCts));
}

void LinkControls::FollowChoice() {
  const std::optional<FlowControl> flow = Flow();
  if (flow && cboFlow.Text() != NameOf(*flow)) return cboFlow.SetText(NameOf(*flow));  // and here again
  const bool byLines = flow == FlowControl::RtsCts;
  if (chkRTS.Checked() != byLines) chkRTS.SetChecked(byLines);
  FlowChanged();
}

}  // namespace quarlin
