#include "connect/connection.h"

#include <fmt/format.h>

#include <algorithm>
#include <initializer_list>

#include "base/scope_flag.h"

namespace quarlin {
namespace {

using std::chrono::milliseconds;

constexpr std::string_view connectCaption = "Connect";
constexpr std::string_view disconnectCaption = "Disconnect";
constexpr std::string_view cancelCaption = "Cancel";
constexpr std::string_view searchCaption = "Search";
constexpr std::string_view stopSearchCaption = "Stop search";
constexpr int lastComPort = 99;
constexpr Duration firstPause = milliseconds(500);
constexpr Duration longestPause = milliseconds(10'000);

}  // namespace

Connection::Connection(EventLoop& loop, Link& link, ConnectionControls& controls, Prompts& prompts,
                       StatusNote& status)
    : loop_(loop),
      link_(link),
      controls_(controls),
      prompts_(prompts),
      status_(status),
      retryAlarm_(loop, [this] { TryAgain(); }) {
  controls_.cmdOpen.OnClick = [this] { cmdOpen_Click(); };
  controls_.cmdsearchcom.OnClick = [this] { cmdsearchcom_Click(); };
  link_.ChooseNetwork = [this] { return ChosenNetwork(); };
}

std::string Connection::Settings() const {
  return controls_.ComboBaud.Text() + "," + controls_.ComboWord.Text();
}

NetworkChoice Connection::ChosenNetwork() const {
  return {controls_.chkUDP.Checked(), controls_.chkListen.Checked(), controls_.txtIp.Text(),
          controls_.txtPort.Text()};
}

std::string Connection::PortAndSettings() const {
  if (!IsNetwork()) return controls_.cboSerial.Text() + " " + Settings();
  const std::string_view protocol = controls_.chkUDP.Checked() ? "UDP" : "TCP";
  if (controls_.chkListen.Checked()) return fmt::format("{} port {}", protocol, controls_.txtPort.Text());
  return fmt::format("{} {}:{}", protocol, controls_.txtIp.Text(), controls_.txtPort.Text());
}

std::string Connection::Description() const {
  if (connecting_) return "connecting to " + PortAndSettings();
  if (waiting_ && !link_.CommIsOpen())
    return fmt::format("waiting for {}, next try in {:.1f} s", PortAndSettings(),
                       std::chrono::duration<double>(pause_).count());
  if (!link_.CommIsOpen()) return "not connected";
  return (IsNetwork() && controls_.chkListen.Checked() ? "listening on " : "connected ") + PortAndSettings();
}

void Connection::cmdOpen_Click() {
  if (searching_ || connecting_) {
    CancelWaits();
  } else if (link_.CommIsOpen() || waiting_) {
    Disconnect();
  } else {
    Connect();
  }
}

void Connection::CancelWaits() {
  stopSearch_ = true;
  link_.Network().Cancel();
}

void Connection::Connect() {
  while (Hooks.expanderBusy()) loop_.DoEvents();
  Open();
  SetAccess(false);
  controls_.cmdOpen.SetCaption(disconnectCaption);
  Hooks.connecting();
  if (link_.CommIsOpen()) {
    stablePath_ = IsNetwork() ? "" : Hooks.stablePath(controls_.cboSerial.Text());
    ShowOpened();
  } else {
    controls_.cboSerial.SetBackColor(colors::red);
    Disconnect();
  }
}

// A network connection takes its time; meanwhile the button cancels it.
void Connection::Open() {
  const ScopeFlag connecting(connecting_, IsNetwork());
  if (connecting_) {
    SetAccess(false);
    controls_.cmdOpen.SetCaption(cancelCaption);
    Hooks.stateChanged();
  }
  link_.CommOpen(controls_.cboSerial.Text(), Settings());
}

void Connection::ShowOpened() {
  controls_.cboSerial.SetBackColor(colors::green);
  Hooks.opened();
  Hooks.stateChanged();
}

void Connection::Disconnect() {
  waiting_ = false;
  retryAlarm_.Cancel();
  link_.CommClose();
  ShowClosed();
}

void Connection::ShowClosed() {
  controls_.cmdOpen.SetCaption(connectCaption);
  SetAccess(true);
  Hooks.disconnected();
  Hooks.stateChanged();
}

void Connection::SetAccess(bool enabled) {
  for (Control* control : std::initializer_list<Control*>{&controls_.Frame1, &controls_.Frame2,
                                                          &controls_.txtIp, &controls_.txtPort}) {
    control->SetEnabled(enabled);
  }
}

void Connection::LinkLost(std::string_view reason) {
  if (!link_.CommIsOpen()) return;
  controls_.cboSerial.SetBackColor(colors::red);
  const std::string lost = fmt::format("{} has gone: {}", PortAndSettings(), reason);
  if (!controls_.chkReconnect.Checked()) {
    Disconnect();
    status_.Say(lost);
    return;
  }
  link_.CommClose();
  waiting_ = true;
  pause_ = firstPause;
  retryAlarm_.At(loop_.Now() + pause_);
  Hooks.outage(lost);
  Hooks.stateChanged();
}

void Connection::TryAgain() {
  LinkTarget target = link_.Target();
  target.path = stablePath_;
  link_.OpenInBackground(target, [this] { TriedAgain(); });
}

void Connection::TriedAgain() {
  if (link_.CommIsOpen()) {
    waiting_ = false;
    controls_.lblReconnects.Increment();
    ShowOpened();
    status_.Say("connected again");
    return;
  }
  link_.CommClose();
  pause_ = std::min(pause_ * 2, longestPause);
  retryAlarm_.At(loop_.Now() + pause_);
  Hooks.stateChanged();
}

bool Connection::Probe(const std::string& name) {
  status_.Runs("searching: " + name);
  link_.CommOpen(name, Settings());
  const bool opened = link_.CommIsOpen();
  link_.CommClose();
  loop_.DoEvents();
  return opened;
}

std::vector<FoundPort> Connection::Search() {
  const ScopeFlag searching(searching_);
  std::vector<FoundPort> found{{"NET", "UDP or TCP"}};
  for (int number = 1; number <= lastComPort && !stopSearch_; ++number) {
    if (std::string name = fmt::format("COM{}", number); Probe(name)) found.push_back({std::move(name), ""});
  }
  for (FoundPort& port : Hooks.systemPorts()) {
    if (!stopSearch_ && Probe(port.name)) found.push_back(std::move(port));
  }
  return found;
}

void Connection::cmdsearchcom_Click() {
  if (searching_ || connecting_) {
    CancelWaits();
    return;
  }
  stopSearch_ = false;
  const bool wasOpen = link_.CommIsOpen() || waiting_;
  waiting_ = false;
  retryAlarm_.Cancel();
  controls_.cmdsearchcom.SetCaption(stopSearchCaption);
  controls_.Frame1.SetEnabled(false);
  const std::vector<FoundPort> found = Search();
  std::vector<std::string> names;
  for (const FoundPort& port : found) names.push_back(port.name);
  controls_.cboSerial.SetList(std::move(names));
  for (std::size_t i = 0; i < found.size(); ++i) {
    controls_.cboSerial.SetItemToolTip(static_cast<int>(i), found[i].description);
  }
  controls_.cboSerial.SetListIndex(0);
  controls_.Frame1.SetEnabled(true);
  controls_.cmdsearchcom.SetCaption(searchCaption);
  const std::size_t ports = found.size() - 1;
  status_.Runs("");
  status_.Say(fmt::format("{} port{} found{}", ports, ports == 1 ? "" : "s",
                          stopSearch_ ? " before the search was stopped" : ""));
  if (wasOpen) ShowClosed();  // the first probe closed it
}

void Connection::StopWithMessage(std::string_view message, std::string_view title) {
  loop_.DoEvents();
  if (controls_.cmdOpen.Caption() != connectCaption) Disconnect();
  prompts_.ShowMessage(message, title);
}

}  // namespace quarlin
