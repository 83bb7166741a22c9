// SPDX-License-Identifier: GPL-3.0-or-later
#include "transmit/cycle.h"

#include <fmt/format.h>

#include <cstdlib>
#include <utility>

#include "base/control_names.h"
#include "base/numbers.h"

namespace quarlin {
namespace {

using std::chrono::milliseconds;

constexpr Duration failurePause = milliseconds(100);
constexpr std::string_view startCaption = "&Start";
constexpr std::string_view stopCaption = "&Stop";

}  // namespace

Cycle::Cycle(CycleParts parts) : parts_(parts), secondAlarm_(parts_.loop, [this] { TellEachSecond(); }) {
  CycleControls& controls = parts_.controls;
  controls.Timer1.OnTimer = [this] { Timer1_Timer(); };
  controls.Timer2.OnTimer = [this] { Timer2_Timer(); };
  controls.cmdSend.OnClick = [this] { cmdSend_Click(); };
  controls.chkSequence.Click = [this] { parts_.sequence.Restart(); };
  RunControls& run = parts_.run;
  run.Command1.OnClick = [this] { Command1_Click(); };
  run.HScroll1.Change = [this] { IntervalChanged(); };
  run.txtInterval.Change = [this] { IntervalTyped(); };
  run.Check1.Click = [this] { MaySendAgain(); };
  run.chkRequest.Click = [this] { MaySendAgain(); };
}

void Cycle::IntervalChanged() {
  parts_.run.txtInterval.SetText(PaddedDecimal(parts_.run.HScroll1.Value(), 1));
  parts_.controls.Timer1.SetInterval(parts_.run.HScroll1.Value());
}

void Cycle::IntervalTyped() {
  parts_.run.HScroll1.SetValue(parts_.run.txtInterval.Integer());
  // What was typed may have been no number, or one beyond the range.
  parts_.run.txtInterval.SetText(PaddedDecimal(parts_.run.HScroll1.Value(), 1));
}

void Cycle::Command1_Click() {
  if (parts_.exchange.Running()) {
    Stop();
  } else {
    Start();
  }
}

void Cycle::Start() {
  while (parts_.expander.State.ExpandBusy) parts_.loop.DoEvents();
  if (const std::string objection = Hooks.objection(); !objection.empty()) {
    return parts_.status.Say(objection);
  }
  parts_.intervals.Restart();
  Hooks.starting();
  parts_.exchange.BeginRun();
  parts_.sender.Frame.ComputeTxTerminator();
  ExpanderState& state = parts_.expander.State;
  state.MainCounter = parts_.macro.txtmin.Integer();
  state.Cnt1 = state.Cnt2 = state.Cnt3 = 0;
  state.CounterWrapped = false;
  state.CounterStop = false;
  parts_.sequence.Begin();
  if (!SendsSequence()) Hooks.commandUsed(parts_.controls.CBOSEND.Text());
  SetRunning(true);
  ClearCounters();
  started_ = parts_.loop.Now();
  shownSecond_ = -1;
  ShowElapsed();
  secondAlarm_.At(started_ + std::chrono::seconds(1));
  if (parts_.link.RxOnly() || !parts_.link.CanPass()) parts_.status.Say("started; " + WhatIsWaitedFor());
}

std::string Cycle::Description() const {
  const std::string what =
      SendsSequence() ? "sequence.txt" : WithControlNames(Counted(parts_.controls.CBOSEND.Text()));
  const int pause = parts_.run.HScroll1.Value();
  return pause == 0 ? what + " without a pause" : fmt::format("{} every {} ms", what, pause);
}

bool Cycle::SendsSequence() const {
  return parts_.controls.chkSequence.Checked() && !parts_.sequence.Empty();
}

void Cycle::ClearCounters() {
  Counters& counters = parts_.counters;
  for (Label* label : {&counters.Label7, &counters.lblerror, &counters.lblErrorLen, &counters.lblErrStr,
                       &counters.lblSendperSecond, &counters.lblsend, &counters.lblNotSent}) {
    label->SetInteger(0);
  }
  lastRateSample_ = 0;
}

void Cycle::Stop(RunEnd end) {
  if (!parts_.exchange.Running()) return;
  ShowElapsed();
  parts_.exchange.EndRun(end == RunEnd::Completed);
  SetRunning(false);
  parts_.sequence.End();
  secondAlarm_.Cancel();
  parts_.counters.TxLamp().SetFillColor(colors::darkRed);
  parts_.status.Runs("");
  parts_.traffic.Flush();
  Hooks.stopped(end);
}

void Cycle::SetRunning(bool running) {
  RunControls& run = parts_.run;
  for (Control* control : std::initializer_list<Control*>{
           &run.Check1, &run.Check2, &run.Text1, &run.chkTimeout, &run.chkRequest, &run.txtTimeout}) {
    control->SetEnabled(!running);
  }
  run.Command1.SetCaption(running ? stopCaption : startCaption);
  parts_.controls.Timer1.SetEnabled(running);
}

bool Cycle::MaySend() const {
  const Link& link = parts_.link;
  if (link.RxOnly() || !link.CanPass() || link.Busy() || parts_.exchange.MustWait()) return false;
  return !parts_.run.chkRequest.Checked() || parts_.exchange.State().AnswerPending;
}

void Cycle::Timer1_Timer() {
  if (MaySend()) {
    SendNext();
  } else {
    parts_.controls.Timer1.Rest();
  }
}

void Cycle::SendNext() {
  const Sender::Expansion next = parts_.sender.Expand(NextCommand());
  if (!RequestIsLeft()) return;
  if (next.pastMaximum) {
    Hooks.stopWithMessage("COUNTER STOP", "STOP CYCLE");
  } else {
    parts_.sender.Send(parts_.sender.Frame.Framed(next.text), SendKind::Cycle,
                       [this](const SendOutcome& outcome) { PauseAfterFailure(outcome); });
  }
}

// Without a pause of its own the cycle would fail as fast as it can.
void Cycle::PauseAfterFailure(const SendOutcome& outcome) {
  if (outcome.end != SendEnd::Failed || parts_.run.HScroll1.Value() >= failurePause / milliseconds(1)) return;
  parts_.controls.Timer1.Rest();
  parts_.controls.Timer1.WakeAt(parts_.loop.Now() + failurePause);
}

// False when the run has come to its end instead.
bool Cycle::RequestIsLeft() {
  RequestCount& requests = parts_.exchange.Requests();
  if (!requests.Limited()) return true;
  if (requests.RequestsLeft() <= 0) {
    if (parts_.exchange.Record().Sums().requests == 0) parts_.status.Say("no requests left");
    Stop(RunEnd::Completed);
    return false;
  }
  if (!parts_.run.WaitsForAnswer()) requests.TakeOne();
  return true;
}

std::string Cycle::NextCommand() {
  if (SendsSequence()) {
    parts_.controls.CBOSEND.SetText(parts_.sequence.NextLine());
  }
  return Counted(parts_.controls.CBOSEND.Text());
}

std::string Cycle::Counted(std::string command) const {
  if (parts_.controls.ChkCounter.Checked()) command += "[COUNTER]";
  return command;
}

void Cycle::cmdSend_Click() {
  if (!parts_.link.CommIsOpen()) return parts_.status.Say("not connected; nothing was sent");
  const std::string command = parts_.controls.CBOSEND.Text();
  const Sender::Expansion expansion = parts_.sender.Expand(Counted(command));
  if (expansion.pastMaximum) {
    parts_.status.Say("the counter has passed its maximum; nothing was sent");
    return;
  }
  Hooks.commandUsed(command);
  parts_.sender.Send(parts_.sender.Frame.Framed(expansion.text), SendKind::ByHand);
}

void Cycle::ShowElapsed() {
  if (!parts_.exchange.Running()) return;
  const Duration elapsed = parts_.loop.Now() - started_;
  const std::int64_t second = std::chrono::floor<std::chrono::seconds>(elapsed).count();
  if (second == shownSecond_) return;
  shownSecond_ = second;
  parts_.counters.lbltempo.SetCaption(ElapsedText(elapsed));
}

void Cycle::TellEachSecond() {
  const Instant now = parts_.loop.Now();
  secondAlarm_.At(now + std::chrono::seconds(1) - (now - started_) % std::chrono::seconds(1));
  ShowElapsed();
  parts_.status.Runs(WhatIsWaitedFor());
}

std::string Cycle::WhatIsWaitedFor() const {
  if (parts_.exchange.MustWait()) {
    const auto waited = std::chrono::floor<std::chrono::seconds>(parts_.exchange.Waited()).count();
    return waited < 1 ? "" : fmt::format("waiting for an answer, {} s", waited);
  }
  if (parts_.link.RxOnly()) return "nothing is sent while \"Rx only\" is checked";
  if (!parts_.link.CanPass()) return "waiting for a connection";
  if (parts_.link.Busy()) return "waiting until the last string has left";
  if (parts_.run.chkRequest.Checked() && !parts_.exchange.State().AnswerPending)
    return "waiting for a request";
  return "";
}

void Cycle::Timer2_Timer() {
  const std::int32_t sample = parts_.counters.Label7.Integer();
  const std::int32_t perSecond = std::abs(sample - lastRateSample_) * 2;
  parts_.counters.lblSendperSecond.SetInteger(perSecond);
  lastRateSample_ = sample;
  if (perSecond == 0) parts_.controls.Timer2.Rest();
}

}  // namespace quarlin
