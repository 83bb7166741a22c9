// SPDX-License-Identifier: GPL-3.0-or-later
#include "welcome/trial.h"

#include <fmt/format.h>
#include <unistd.h>

#include "base/text.h"

namespace quarlin {
namespace {

constexpr std::string_view firstCommand = "READ";

// What the user has chosen since stays.
template <typename Value>
Value BackFrom(const Value& now, const Value& tried, const Value& before) {
  return now == tried ? before : now;
}

}  // namespace

Trial::Trial(TrialParts parts, const Bundle& bundle)
    : parts_(parts), program_(bundle.instrument), instrument_(parts.loop, bundle.instrument, bundle.scratch) {
  instrument_.Hooks.ready = [this](const std::string& port) { Ready(port); };
  instrument_.Hooks.ended = [this](std::string_view why) { Ended(why); };
}

std::string Trial::Trouble() const {
  if (access(program_.c_str(), X_OK) == 0) return {};
  if (program_.empty()) return "there is no simulated instrument here";
  return fmt::format("the simulated instrument is not installed: {}", BytesFromUtf8(program_.string()));
}

void Trial::Toggle() {
  if (Runs()) {
    End();
  } else {
    Begin();
  }
  Hooks.changed();  // whoever has pressed shows how it stands
}

void Trial::Begin() {
  if (const std::string trouble = Trouble(); !trouble.empty()) return parts_.status.Say(trouble);
  if (!parts_.connection.Idle()) {
    return parts_.status.Say(
        fmt::format("{} is in use: disconnect first, then the simulated instrument can be tried",
                    parts_.connection.Target()));
  }
  if (instrument_.Runs()) return parts_.status.Say("the simulated instrument is still ending; try again");
  if (const std::string why = instrument_.Start(); !why.empty()) {
    return parts_.status.Say("the simulated instrument was not started: " + why);
  }
  parts_.status.Say("the simulated instrument is being started");
  SetRuns(true);
}

void Trial::Ready(const std::string& port) {
  if (!parts_.connection.Idle()) {
    parts_.status.Say(parts_.connection.Target() +
                      " was opened meanwhile; the simulated instrument is put away again");
    return GiveUp();
  }
  before_ = Chosen();
  tried_ = {
      port, "9600", "n,8,1", static_cast<std::size_t>(TxEnd::CrLf), static_cast<std::size_t>(RxEnd::CrLf),
      "010"};
  Choose(tried_);
  ComboBox& command = parts_.cycle.CBOSEND;
  if (command.Text().empty()) command.SetText(firstCommand);
  parts_.connection.cmdOpen_Click();
  if (!parts_.connection.Holds(port)) return GiveUp();  // which the connection has told
  SayHowToGoOn();
  Hooks.connected();
}

void Trial::SayHowToGoOn() {
  const std::string command = CodedText(parts_.cycle.CBOSEND.Text(), 30);
  parts_.status.Say(fmt::format(
      "the simulated instrument is connected: Enter sends {} once, Start (F5) sends it every {} ms", command,
      parts_.run.HScroll1.Value()));
}

// A second click while the link is being closed finds the end told already.
void Trial::End() {
  SetRuns(false);
  if (before_ && parts_.connection.Holds(tried_.port)) parts_.connection.Disconnect();
  PutBack();
  instrument_.End();
  parts_.status.Say(fmt::format("the simulated instrument is put away; the port is {}", Chosen().port));
}

void Trial::GiveUp() {
  PutBack();
  instrument_.End();
  SetRuns(false);
}

// By itself only while the trial runs.
void Trial::Ended(std::string_view why) {
  if (!Runs()) return;
  SetRuns(false);
  const bool held = before_ && parts_.connection.Holds(tried_.port);
  if (held) parts_.connection.Disconnect();
  PutBack();
  parts_.status.Say(fmt::format("the simulated instrument has gone: {}", why));
}

Trial::Settings Trial::Chosen() const {
  return {parts_.port.cboSerial.Text(),      parts_.port.ComboBaud.Text(),      parts_.port.ComboWord.Text(),
          parts_.framing.Option3.Selected(), parts_.receive.Option4.Selected(), parts_.link.txtterm.Text()};
}

void Trial::Choose(const Settings& settings) {
  parts_.port.cboSerial.SetText(settings.port);
  parts_.port.ComboBaud.SetText(settings.speed);
  parts_.port.ComboWord.SetText(settings.format);
  if (settings.txEnd) parts_.framing.Option3[*settings.txEnd].SetValue(true);
  if (settings.rxEnd) parts_.receive.Option4[*settings.rxEnd].SetValue(true);
  parts_.link.txtterm.SetText(settings.term);
}

Trial::Settings Trial::Users() const {
  const Settings now = Chosen();
  return {
      BackFrom(now.port, tried_.port, before_->port),       BackFrom(now.speed, tried_.speed, before_->speed),
      BackFrom(now.format, tried_.format, before_->format), BackFrom(now.txEnd, tried_.txEnd, before_->txEnd),
      BackFrom(now.rxEnd, tried_.rxEnd, before_->rxEnd),    BackFrom(now.term, tried_.term, before_->term)};
}

void Trial::PutBack() {
  if (before_) Choose(Users());
  before_.reset();
}

void Trial::SetRuns(bool runs) {
  runs_ = runs;
  Hooks.changed();
}

Trial::Away::Away(Trial& trial) : trial_(trial) {
  if (!trial.before_) return;
  tried_ = trial.Chosen();
  trial.Choose(trial.Users());
}

Trial::Away::~Away() {
  if (tried_) trial_.Choose(*tried_);
}

}  // namespace quarlin
