// SPDX-License-Identifier: GPL-3.0-or-later
#include "connect/connection.h"

#include <fmt/format.h>

#include <algorithm>
#include <initializer_list>
#include <utility>

#include "base/scope_flag.h"
#include "base/text.h"

namespace quarlin {
namespace {

using std::chrono::milliseconds;

constexpr std::string_view connectCaption = "Connect";
constexpr std::string_view disconnectCaption = "Disconnect";
constexpr std::string_view cancelCaption = "Cancel";
constexpr std::string_view searchCaption = "Search";
constexpr std::string_view stopSearchCaption = "Stop search";
constexpr int lastComPort = 99;
constexpr std::size_t mostRefusalsTold = 3;
constexpr Duration firstPause = milliseconds(500);
constexpr Duration longestPause = milliseconds(10'000);

const FoundPort networkPort{"NET", "UDP or TCP"};

// "COM1 9600,n,8,1", "COM1 9600,n,8,1 RTS/CTS", "TCP 127.0.0.1:4001", "TCP port 4001".
std::string InWords(const LinkTarget& target) {
  if (!target.IsNetwork()) {
    const FlowControl flow = target.flow.value_or(FlowControl::None);
    return fmt::format("{} {}{}{}", target.port, target.settings, flow == FlowControl::None ? "" : " ",
                       flow == FlowControl::None ? "" : NameOf(flow));
  }
  const NetworkChoice& choice = target.network;
  const std::string_view protocol = choice.udp ? "UDP" : "TCP";
  if (!choice.listen) return fmt::format("{} {}:{}", protocol, choice.host, choice.port);
  return fmt::format("{} {}{}port {}", protocol, choice.bind, choice.bind.empty() ? "" : " ", choice.port);
}

std::int64_t SecondsBegun(Duration time) {
  return std::chrono::ceil<std::chrono::seconds>(std::max(time, Duration::zero())).count();
}

}  // namespace

Connection::Connection(EventLoop& loop, Link& link, ConnectionControls& controls, Prompts& prompts,
                       StatusNote& status)
    : loop_(loop),
      link_(link),
      controls_(controls),
      prompts_(prompts),
      status_(status),
      retryAlarm_(loop, [this] { TryAgain(); }),
      countDownAlarm_(loop, [this] { CountDown(); }) {
  controls_.cmdOpen.OnClick = [this] { cmdOpen_Click(); };
  controls_.cmdsearchcom.OnClick = [this] { cmdsearchcom_Click(); };
  controls_.chkReconnect.Click = [this] { ReconnectClicked(); };
  controls_.chkListen.Click = [this] { ShowAddress(); };
  ShowAddress();
  link_.ChooseNetwork = [this] { return ChosenNetwork(); };
  link_.Network().OnEvent = [this](std::string_view words) { NetworkEvent(words); };
  link_.Hooks.progress = [this](std::size_t taken, std::size_t total) { ShowSending(taken, total); };
  link_.Hooks.held = [this] { ShowHold(); };
  link_.Hooks.lineErrors = [this] {
    status_.Mention("line errors: " + InWords(link_.Errors().value_or(LineErrors())));
  };
}

// A server has an address of its own to listen at, a client the address of its peer.
void Connection::ShowAddress() {
  controls_.txtBind.SetVisible(controls_.chkListen.Checked());
  controls_.txtIp.SetVisible(!controls_.chkListen.Checked());
}

std::string Connection::Settings() const {
  return controls_.ComboBaud.Text() + "," + controls_.ComboWord.Text();
}

NetworkChoice Connection::ChosenNetwork() const {
  return {controls_.chkUDP.Checked(), controls_.chkListen.Checked(), controls_.txtIp.Text(),
          controls_.txtPort.Text(), controls_.txtBind.Text()};
}

LinkTarget Connection::Chosen() const {
  return {controls_.cboSerial.Text(), Settings(), link_.ChosenFlow(), ChosenNetwork()};
}

bool Connection::ControlsSay(const LinkTarget& target) const {
  const LinkTarget chosen = Chosen();
  if (!EqualsIgnoringCase(chosen.port, target.port)) return false;
  if (target.IsNetwork()) return chosen.network == target.network;
  return chosen.settings == target.settings && chosen.flow == target.flow;
}

bool Connection::Idle() const {
  return !searching_ && !connecting_ && !disconnecting_ && !waiting_ && !link_.CommIsOpen();
}

bool Connection::Holds(std::string_view portName) const {
  if (link_.CommIsOpen()) return link_.Target().port == portName;
  return gone_ && gone_->port == portName;
}

std::string Connection::Target() const {
  return InWords(asked_.value_or(Chosen()));
}

std::string Connection::Description() const {
  if (connecting_) return "connecting to " + InWords(Chosen());
  if (link_.CommIsOpen()) {
    return link_.State.CommNetMode ? NetworkDescription() : SerialDescription();
  }
  if (!gone_) return "not connected";
  if (!waiting_) return InWords(*gone_) + " has gone";
  const Duration left = retryAlarm_.When().value_or(loop_.Now()) - loop_.Now();
  return fmt::format("waiting for {}, next try in {} s", InWords(*gone_), SecondsBegun(left));
}

std::string Connection::SerialDescription() const {
  const std::string target = InWords(link_.Target());
  if (link_.HeldBy() == Hold::None) return "connected " + target;
  return fmt::format("{}; {}", InWords(link_.HeldBy()), target);
}

std::string Connection::NetworkDescription() const {
  const NetworkLink& network = link_.Network();
  const NetworkChoice& choice = link_.Target().network;
  const std::string target = InWords(link_.Target());
  switch (network.State()) {
    case Passage::Closed:
      return "not connected";
    case Passage::PeerGone:
      return "the peer has gone: " + target;
    case Passage::WaitsForPeer:
      return "waiting for a peer on " + target;
    case Passage::Open:
      break;
  }
  if (!choice.listen) return "connected " + target;
  return network.PeerName().empty() ? "listening on " + target
                                    : fmt::format("connected {} on {}", network.PeerName(), target);
}

Color Connection::LampColor() const {
  if (connecting_ || waiting_) return colors::yellow;
  if (!link_.CommIsOpen()) return gone_ ? colors::red : colors::darkGreen;
  if (!link_.State.CommNetMode) return link_.HeldBy() == Hold::None ? colors::green : colors::yellow;
  switch (link_.Network().State()) {
    case Passage::Open:
      return colors::green;
    case Passage::WaitsForPeer:
      return colors::yellow;
    case Passage::Closed:
    case Passage::PeerGone:
      break;
  }
  return colors::red;
}

void Connection::ShowLink() {
  if (link_.CommIsOpen() && named_ != link_.Target()) {
    named_ = asked_ = link_.Target();
    stablePath_ = named_->path;
    if (stablePath_.empty() && !named_->IsNetwork()) stablePath_ = Hooks.stablePath(named_->port);
  }
  if (!link_.CommIsOpen()) toldHold_ = false;
  controls_.shpLink.SetFillColor(LampColor());
  controls_.shpLink.SetToolTipText(Description());
  Hooks.showLink(Description());
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
  gone_.reset();
  Open();
  SetAccess(false);
  controls_.cmdOpen.SetCaption(disconnectCaption);
  Hooks.connecting();
  if (link_.CommIsOpen()) {
    ShowOpened();
  } else {
    TellWhyNot();
    controls_.cboSerial.SetBackColor(colors::red);
    CloseAfterFailure();
  }
}

// A network connection takes its time; meanwhile the button cancels it.
void Connection::Open() {
  const LinkTarget chosen = Chosen();
  asked_ = chosen;
  const ScopeFlag connecting(connecting_, chosen.IsNetwork());
  if (connecting_) {
    SetAccess(false);
    controls_.cmdOpen.SetCaption(cancelCaption);
    ShowLink();
  }
  link_.CommOpen(chosen.port, chosen.settings);
}

// Of a network connection its own event has told.
void Connection::TellWhyNot() {
  if (link_.Target().IsNetwork()) return;
  const std::string& port = link_.Target().port;
  const std::string why = Hooks.whoseIsIt(port, link_.State.CommLastError);
  failure_ = fmt::format("{}: {}", link_.State.CommLastErrorSource, link_.State.CommLastErrorText);
  if (!why.empty()) failure_ += fmt::format("; {} {}", port, why);
  status_.Say(failure_);
}

void Connection::ShowOpened() {
  controls_.cboSerial.SetBackColor(colors::green);
  Hooks.opened();
  Hooks.stateChanged();
}

void Connection::Disconnect() {
  if (disconnecting_) {
    link_.CommClose();
    return;
  }
  const ScopeFlag disconnecting(disconnecting_);
  StopWaiting();
  gone_.reset();
  status_.Clear();
  status_.Runs("sending what is left; Disconnect closes at once");
  link_.Finish();
  status_.Runs("");
  link_.CommClose();
  controls_.cboSerial.SetBackColor(std::nullopt);
  ShowClosed();
}

void Connection::CloseAfterFailure() {
  StopWaiting();
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
  for (Control* control : std::initializer_list<Control*>{
           &controls_.Frame1, &controls_.Frame2, &controls_.txtIp, &controls_.txtPort, &controls_.txtBind}) {
    control->SetEnabled(enabled);
  }
}

void Connection::SettingsLoaded() {
  const bool held = link_.CommIsOpen() || waiting_;
  const LinkTarget& target = waiting_ ? *gone_ : link_.Target();
  if (!held || ControlsSay(target)) return;
  status_.Say(fmt::format("{} keeps its settings until the next Connect", InWords(target)));
}

void Connection::FlowChanged() {
  if (!link_.CommIsOpen() || link_.State.CommNetMode || link_.ChosenFlow() == link_.Target().flow) return;
  status_.Mention("the flow control is taken at the next Connect");
}

// What happens while somebody waits for the outcome of her click is its answer.
void Connection::NetworkEvent(std::string_view words) {
  const bool gone = link_.Network().PeerGone();
  if (connecting_) failure_ = words;
  if (disconnecting_) return;  // the peer's answer to our own end
  if (connecting_ || gone) {
    status_.Say(words);
  } else {
    status_.Mention(words);
  }
  if (!connecting_) ShowLink();
  if (gone && !disconnecting_) loop_.Post([this, reason = std::string(words)] { PeerWent(reason); });
}

void Connection::PeerWent(std::string_view reason) {
  if (!link_.CommIsOpen() || !link_.Network().PeerGone()) return;
  if (controls_.chkReconnect.Checked()) {
    LinkLost(reason);
    return;
  }
  controls_.cboSerial.SetBackColor(colors::red);
  Hooks.lost(fmt::format("{}: {}", InWords(link_.Target()), reason));
}

void Connection::LinkLost(std::string_view reason) {
  if (!link_.CommIsOpen()) return;
  controls_.cboSerial.SetBackColor(colors::red);
  gone_ = link_.Target();
  gone_->path = stablePath_;
  const std::string lost = fmt::format("{} has gone: {}", InWords(*gone_), reason);
  if (controls_.chkReconnect.Checked()) {
    status_.Say(lost);
    link_.CommClose();
    Hooks.outage(lost);
    WaitForReturn();
  } else {
    Hooks.lost(lost);
    CloseAfterFailure();
    status_.Say(lost);
  }
}

void Connection::ReconnectClicked() {
  if (!controls_.chkReconnect.Checked() || waiting_) return;
  if (link_.CommIsOpen() && link_.Network().PeerGone()) {
    LinkLost("the peer has gone");
  } else if (gone_ && !link_.CommIsOpen()) {
    SetAccess(false);
    controls_.cmdOpen.SetCaption(disconnectCaption);
    Hooks.connecting();
    WaitForReturn();
  }
}

void Connection::WaitForReturn() {
  waiting_ = true;
  pause_ = firstPause;
  SetRetry();
  Hooks.stateChanged();
}

void Connection::SetRetry() {
  retryAlarm_.At(loop_.Now() + pause_);
  CountDown();
}

void Connection::StopWaiting() {
  waiting_ = false;
  retryAlarm_.Cancel();
  countDownAlarm_.Cancel();
}

// Called again when the words are to be others.
void Connection::CountDown() {
  ShowLink();
  if (!retryAlarm_.IsSet()) return;
  const Duration left = *retryAlarm_.When() - loop_.Now();
  const std::int64_t next = SecondsBegun(left) - 1;
  if (next > 0) countDownAlarm_.At(*retryAlarm_.When() - std::chrono::seconds(next));
}

void Connection::TryAgain() {
  if (link_.CommIsOpen()) {  // a script was quicker
    gone_.reset();
    return StopWaiting();
  }
  countDownAlarm_.Cancel();
  link_.OpenInBackground(*gone_, [this] { TriedAgain(); });
}

void Connection::TriedAgain() {
  if (link_.CommIsOpen()) {
    StopWaiting();
    gone_.reset();
    controls_.lblReconnects.Increment();
    ShowOpened();
    status_.Say("connected again");
    return;
  }
  link_.CommClose();
  pause_ = std::min(pause_ * 2, longestPause);
  SetRetry();
}

void Connection::ShowSending(std::size_t taken, std::size_t total) {
  status_.Runs(total == 0
                   ? ""
                   : fmt::format("sending: {} of {} bytes, waiting for {}", taken, total, link_.WaitsFor()));
}

// An instrument that holds the line with every string shows that in the lamp, and is told of once.
void Connection::ShowHold() {
  ShowLink();
  if (link_.HeldBy() == Hold::None || std::exchange(toldHold_, true)) return;
  Hooks.held(SerialDescription());
}

// An open link is closed by the first probe, which fails by that: the port is probed again.
bool Connection::Probe(const std::string& name) {
  status_.Runs("searching: " + name);
  const bool wasOpen = link_.CommIsOpen();
  link_.CommOpen(name, Settings());
  if (wasOpen) link_.CommOpen(name, Settings());
  const bool opened = link_.CommIsOpen();
  if (!opened) NoteRefusal(name);
  link_.CommClose();
  loop_.DoEvents();
  return opened;
}

// What one refusal tells is told once.
void Connection::NoteRefusal(const std::string& name) {
  std::string why = Hooks.whoseIsIt(name, link_.State.CommLastError);
  if (why.empty()) return;
  const auto same = std::find_if(refusals_.begin(), refusals_.end(),
                                 [&](const Refusal& refusal) { return refusal.why == why; });
  if (same != refusals_.end()) {
    ++same->others;
  } else if (refusals_.size() < mostRefusalsTold) {
    refusals_.push_back({name, std::move(why)});
  }
}

std::vector<FoundPort> Connection::Search() {
  std::vector<FoundPort> found{networkPort};
  for (int number = 1; number <= lastComPort && !stopSearch_; ++number) {
    if (std::string name = fmt::format("COM{}", number); Probe(name)) found.push_back({std::move(name), ""});
  }
  for (FoundPort& port : Hooks.systemPorts()) {
    if (!stopSearch_ && Probe(port.name)) found.push_back(std::move(port));
  }
  return found;
}

void Connection::OfferPorts() {
  std::vector<FoundPort> ports;
  for (const std::string& name : controls_.cboSerial.List()) ports.push_back({name, ""});
  ports.push_back(networkPort);
  for (FoundPort& port : Hooks.systemPorts()) ports.push_back(std::move(port));
  ShowPorts(ports);
}

void Connection::ShowPorts(const std::vector<FoundPort>& ports) {
  std::vector<std::string> names;
  names.reserve(ports.size());
  for (const FoundPort& port : ports) names.push_back(port.name);
  controls_.cboSerial.SetList(std::move(names));
  for (std::size_t i = 0; i < ports.size(); ++i) {
    controls_.cboSerial.SetItemToolTip(static_cast<int>(i), WhatIsKnownOf(ports[i]));
  }
}

// The first line stands in the list, beside the name.
std::string Connection::WhatIsKnownOf(const FoundPort& port) const {
  const std::string missing = Hooks.missingPermission(port.name);
  std::string text = port.description;
  if (!missing.empty()) text += text.empty() ? "no permission" : ", no permission";
  if (!missing.empty()) text += fmt::format("\n{} {}", port.name, missing);
  if (!port.adapter.empty()) text += fmt::format("\nadapter {}", port.adapter);
  return text;
}

void Connection::cmdsearchcom_Click() {
  if (searching_ || connecting_) {
    CancelWaits();
    return;
  }
  std::vector<FoundPort> found;
  stopSearch_ = false;
  refusals_.clear();
  const bool wasOpen = link_.CommIsOpen() || waiting_;
  StopWaiting();
  gone_.reset();
  controls_.cmdsearchcom.SetCaption(stopSearchCaption);
  controls_.Frame1.SetEnabled(false);
  {
    const ScopeFlag searching(searching_);
    found = Search();
  }
  ShowPorts(found);
  controls_.cboSerial.SetListIndex(0);
  controls_.Frame1.SetEnabled(true);
  controls_.cmdsearchcom.SetCaption(searchCaption);
  status_.Runs("");
  if (wasOpen) {  // the first probe closed it
    controls_.cboSerial.SetBackColor(std::nullopt);
    ShowClosed();
  }
  const std::size_t ports = found.size() - 1;
  std::string words = fmt::format("{} port{} found{}", ports, ports == 1 ? "" : "s",
                                  stopSearch_ ? " before the search was stopped" : "");
  for (const Refusal& refusal : refusals_) {
    words += fmt::format("; {} {}", refusal.port, refusal.why);
    if (refusal.others > 0) words += fmt::format(" (and {} more)", refusal.others);
  }
  status_.Say(words);
}

void Connection::StopWithMessage(std::string_view message, std::string_view title) {
  loop_.DoEvents();
  if (link_.CommIsOpen() || waiting_) Disconnect();
  prompts_.ShowMessage(message, title);
}

}  // namespace quarlin
