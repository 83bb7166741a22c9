// SPDX-License-Identifier: GPL-3.0-or-later
#include "connect/modem_lines.h"

#include <fmt/format.h>

#include <array>

namespace quarlin {
namespace {

struct InputLine {
  ModemLine mask;
  std::string_view name;
};

// In the order of the lamps.
constexpr std::array<InputLine, 4> inputLines{{{cts, "CTS"}, {dsr, "DSR"}, {ring, "ring"}, {rlsd, "rlsd"}}};

}  // namespace

ModemLines::ModemLines(Link& link, ModemControls& controls) : link_(link), controls_(controls) {
  controls_.tmrLine.OnTimer = [this] { tmrLine_Timer(); };
  for (std::size_t i = 0; i < controls_.chkLine.size(); ++i) {
    controls_.chkLine[i].Click = [this] { controls_.tmrLine.Resume(); };
  }
  ShowAvailable(true);
}

void ModemLines::LinkChanged() {
  for (std::size_t i = 0; i < inputLines.size(); ++i) controls_.shpLine[i].SetFillColor(colors::darkGreen);
  ShowAvailable(true);
  controls_.tmrLine.Wake();
}

void ModemLines::tmrLine_Timer() {
  if (!link_.CommIsOpen()) {
    controls_.tmrLine.Rest();
    return;
  }
  ShowInputs();
  if (link_.State.CommNetMode || link_.State.NoModemLines) {
    ShowAvailable(false);
    controls_.tmrLine.Rest();
    return;
  }
  SetOutputs();
}

void ModemLines::ShowInputs() {
  std::uint16_t lines = 0;  // lines that cannot be read show as inactive
  link_.CommReadLines(lines);
  for (std::size_t i = 0; i < inputLines.size(); ++i) {
    controls_.shpLine[i].SetFillColor((lines & inputLines[i].mask) != 0 ? colors::green : colors::darkGreen);
  }
}

void ModemLines::SetOutputs() {
  link_.KeepLine(OutputLine::Break, controls_.chkLine[0].Checked());
  link_.KeepLine(OutputLine::Dtr, controls_.chkLine[1].Checked());
  link_.KeepLine(OutputLine::Rts, controls_.chkLine[2].Checked());
}

void ModemLines::ShowAvailable(bool available) {
  for (std::size_t i = 0; i < inputLines.size(); ++i) {
    // Without a text of ours the form's explanation of the line is shown.
    controls_.shpLine[i].SetToolTipText(
        available ? "" : fmt::format("{}: not available on this link", inputLines[i].name));
  }
}

}  // namespace quarlin
