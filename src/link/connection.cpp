#include "link/connection.h"

#include <fmt/format.h>

namespace quarlin {
namespace {

constexpr std::string_view connectCaption = "Connect";
constexpr std::string_view disconnectCaption = "Disconnect";
constexpr std::string_view networkName = "NET";
constexpr int lastComPort = 99;

}  // namespace

Connection::Connection(EventLoop& loop, Link& link, ConnectionControls& controls, Prompts& prompts)
    : loop_(loop), link_(link), controls_(controls), prompts_(prompts) {
  controls_.cmdOpen.OnClick = [this] { cmdOpen_Click(); };
  controls_.cmdsearchcom.OnClick = [this] { cmdsearchcom_Click(); };
}

std::string Connection::Settings() const {
  return controls_.ComboBaud.Text() + "," + controls_.ComboWord.Text();
}

std::string Connection::Description() const {
  if (controls_.cboSerial.Text() == networkName) return std::string(networkName);
  return controls_.cboSerial.Text() + " " + Settings();
}

void Connection::cmdOpen_Click() {
  if (searching_) return;
  if (link_.CommIsOpen()) {
    Disconnect();
  } else {
    Connect();
  }
}

void Connection::Connect() {
  while (Hooks.expanderBusy()) loop_.DoEvents();
  link_.CommOpen(controls_.cboSerial.Text(), Settings());
  controls_.cmdOpen.SetCaption(disconnectCaption);
  for (Control* control : std::initializer_list<Control*>{&controls_.Frame1, &controls_.Frame2,
                                                          &controls_.txtIp, &controls_.txtPort}) {
    control->SetEnabled(false);
  }
  link_.State.AnswerPending = false;
  Hooks.connecting();
  if (link_.CommIsOpen()) {
    controls_.cboSerial.SetBackColor(colors::green);
    link_.ResetIntervalStatistics();
    Hooks.stateChanged();
  } else {
    controls_.cboSerial.SetBackColor(colors::red);
    Disconnect();
  }
}

void Connection::Disconnect() {
  link_.CommClose();
  ShowClosed();
}

void Connection::ShowClosed() {
  controls_.cmdOpen.SetCaption(connectCaption);
  for (Control* control : std::initializer_list<Control*>{&controls_.Frame1, &controls_.Frame2,
                                                          &controls_.txtIp, &controls_.txtPort}) {
    control->SetEnabled(true);
  }
  Hooks.disconnected();
  Hooks.stateChanged();
}

void Connection::DeviceLost() {
  if (!link_.CommIsOpen()) return;
  controls_.cboSerial.SetBackColor(colors::red);
  Disconnect();
}

bool Connection::Probe(const std::string& name) {
  link_.CommOpen(name, Settings());
  const bool opened = link_.CommIsOpen();
  link_.CommClose();
  loop_.DoEvents();
  return opened;
}

void Connection::cmdsearchcom_Click() {
  if (searching_) return;
  searching_ = true;
  const bool wasOpen = link_.CommIsOpen();
  controls_.Frame1.SetEnabled(false);
  std::vector<FoundPort> found{{std::string(networkName), "UDP or TCP"}};
  for (int number = 1; number <= lastComPort; ++number) {
    if (std::string name = fmt::format("COM{}", number); Probe(name)) found.push_back({std::move(name), ""});
  }
  for (FoundPort& port : Hooks.systemPorts()) {
    if (Probe(port.name)) found.push_back(std::move(port));
  }
  std::vector<std::string> names;
  for (const FoundPort& port : found) names.push_back(port.name);
  controls_.cboSerial.SetList(std::move(names));
  for (std::size_t i = 0; i < found.size(); ++i) {
    controls_.cboSerial.SetItemToolTip(static_cast<int>(i), found[i].description);
  }
  controls_.cboSerial.SetListIndex(0);
  controls_.Frame1.SetEnabled(true);
  searching_ = false;
  if (wasOpen) ShowClosed();  // the first probe closed it
}

void Connection::StopWithMessage(std::string_view message, std::string_view title) {
  loop_.DoEvents();
  if (controls_.cmdOpen.Caption() != connectCaption) Disconnect();
  prompts_.ShowMessage(message, title);
}

}  // namespace quarlin
