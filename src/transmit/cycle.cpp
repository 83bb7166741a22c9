#include "transmit/cycle.h"

#include <fmt/format.h>

#include <cstdlib>
#include <utility>

#include "base/numbers.h"

namespace quarlin {
namespace {

constexpr std::string_view startCaption = "&Start";
constexpr std::string_view stopCaption = "&Stop";
constexpr std::string_view noCode = "000";  // of a code box: no character at all

std::string CharacterOf(const ComboBox& box) {
  return box.Text() == noCode ? std::string() : CharacterOfCode(Val(box.Text()));
}

}  // namespace

Cycle::Cycle(CycleParts parts)
    : parts_(parts),
      answerAlarm_(parts_.loop, [this] { AnswerTimeIsUp(); }),
      secondAlarm_(parts_.loop, [this] { TellEachSecond(); }) {
  CycleControls& controls = parts_.controls;
  controls.Timer1.OnTimer = [this] { Timer1_Timer(); };
  controls.Timer2.OnTimer = [this] { Timer2_Timer(); };
  controls.Option3.OnClick([this] { ComputeTxTerminator(); });
  controls.Combo2.Change = [this] { ComputeTxTerminator(); };
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

void Cycle::ComputeTxTerminator() {
  const auto selected = static_cast<TxEnd>(parts_.controls.Option3.Selected().value_or(1));
  if (selected == TxEnd::Manual) {
    txTerminator_ = CharacterOf(parts_.controls.Combo2);
  } else {
    txTerminator_ = selected == TxEnd::Cr ? "\r" : "\r\n";
  }
}

void Cycle::Command1_Click() {
  if (parts_.run.CycleRuns()) {
    Stop();
  } else {
    Start();
  }
}

void Cycle::Start() {
  parts_.intervals.Restart();
  while (parts_.expander.State.ExpandBusy) parts_.loop.DoEvents();
  ++run_;
  parts_.handOver = {};
  parts_.handOver.RequestsLeft = parts_.run.Text1.Integer();
  ComputeTxTerminator();
  ExpanderState& state = parts_.expander.State;
  state.MainCounter = parts_.macro.txtmin.Integer();
  state.Cnt1 = state.Cnt2 = state.Cnt3 = 0;
  state.CounterWrapped = false;
  state.CounterStop = false;
  parts_.sequence.Restart();
  SetRunning(true);
  Counters& counters = parts_.counters;
  for (Label* label : {&counters.Label7, &counters.lblerror, &counters.lblErrorLen, &counters.lblErrStr,
                       &counters.lblSendperSecond, &counters.lblsend}) {
    label->SetInteger(0);
  }
  lastRateSample_ = 0;
  started_ = parts_.loop.Now();
  shownSecond_ = -1;
  ShowElapsed();
  secondAlarm_.At(started_ + std::chrono::seconds(1));
}

void Cycle::Stop(RunEnd end) {
  if (!parts_.run.CycleRuns()) return;
  ShowElapsed();
  ++run_;
  EndWait();
  SetRunning(false);
  secondAlarm_.Cancel();
  parts_.counters.TxLamp().SetFillColor(colors::darkRed);
  Hooks.showWait("");
  parts_.logs.Flush();
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
  if (parts_.link.RxOnly() || !parts_.link.CommIsOpen()) return false;
  if (parts_.run.Check1.Checked() && parts_.handOver.WaitingAnswer) return false;
  return !parts_.run.chkRequest.Checked() || parts_.link.State.AnswerPending;
}

void Cycle::Timer1_Timer() {
  if (MaySend()) {
    SendNext();
  } else {
    parts_.controls.Timer1.Rest();
  }
}

void Cycle::SendNext() {
  parts_.counters.TxLamp().SetFillColor(colors::red);
  Hooks.sent();
  parts_.link.State.AnswerPending = false;
  const std::string expanded = ExpandNext();
  if (!CountRequest()) return;
  if (parts_.expander.State.CounterStop) {
    Hooks.stopWithMessage("COUNTER STOP", "STOP CYCLE");
    parts_.expander.State.CounterStop = false;
    return;
  }
  const std::uint32_t run = run_;
  Transmit(Framed(expanded), [this, run] {
    if (run == run_) parts_.counters.lblsend.Increment();  // another run has its own count
  });
  if (run != run_) return;  // stopped while it was being sent: nobody waits for the answer
  StartWait();
}

// False when the run has come to its end instead.
bool Cycle::CountRequest() {
  HandOver& handOver = parts_.handOver;
  if (!parts_.run.CountsRequests()) return true;
  if (handOver.RequestsLeft <= 0) {
    Stop(RunEnd::Completed);
    return false;
  }
  if (!parts_.run.WaitsForAnswer()) parts_.run.Text1.SetText(PaddedDecimal(--handOver.RequestsLeft, 1));
  return true;
}

std::string Cycle::ExpandNext() {
  if (parts_.controls.chkSequence.Checked() && !parts_.sequence.Empty()) {
    parts_.controls.CBOSEND.SetText(parts_.sequence.NextLine());
  }
  parts_.expander.State.CounterStop = false;  // a search string may have raised it
  std::string text = parts_.controls.CBOSEND.Text();
  if (parts_.controls.ChkCounter.Checked()) text += "[COUNTER]";
  return parts_.expander.ExpandMacros(text);
}

std::string Cycle::Framed(const std::string& expanded) const {
  return Prefix() + expanded + txTerminator_;
}

std::string Cycle::Prefix() const {
  if (!parts_.controls.chkInit.Checked()) return {};
  if (parts_.controls.Combo4.Text() == noCode) return ExpandHexCodes(parts_.controls.txtinitstr.Text());
  return CharacterOf(parts_.controls.Combo4);
}

void Cycle::Transmit(std::string text, std::function<void()> counted) {
  parts_.link.Send(std::move(text), [this, counted = std::move(counted)](const SendOutcome& outcome) {
    const std::string& sent = outcome.text;
    parts_.logs.WriteTraffic(sent);
    if (parts_.run.chkhhmmss.Checked()) {
      parts_.display.Append(fmt::format("{}{} ", stampMark, DateTimeText(parts_.loop.Local())), colors::blue);
    }
    parts_.display.Append(sent, colors::blue);
    if (parts_.controls.ChkCrLfAppTx.Checked()) parts_.display.Append("\r\n", colors::blue);
    counted();
  });
}

void Cycle::cmdSend_Click() {
  if (!parts_.link.CommIsOpen()) return;
  const std::string expanded = ExpandNext();
  if (std::exchange(parts_.expander.State.CounterStop, false)) {
    Hooks.showWait("the counter has passed its maximum; nothing was sent");
    return;
  }
  parts_.counters.TxLamp().SetFillColor(colors::red);
  Hooks.sent();
  Transmit(Framed(expanded), [this] { parts_.counters.lblsend.Increment(); });
}

void Cycle::StartWait() {
  parts_.handOver.WaitingAnswer = true;
  waitingSince_ = parts_.loop.Now();
  const std::int32_t milliseconds = parts_.run.txtAnswerTime.Integer();
  if (parts_.run.WaitsForAnswer() && milliseconds > 0) {
    answerAlarm_.At(waitingSince_ + std::chrono::milliseconds(milliseconds));
  }
}

void Cycle::EndWait() {
  parts_.handOver.WaitingAnswer = false;
  parts_.handOver.AnswerTimedOut = false;  // a later request must not inherit it
  answerAlarm_.Cancel();
  MaySendAgain();
}

void Cycle::AnswerTimeIsUp() {
  Hooks.takeArrivals();
  if (!parts_.handOver.WaitingAnswer) return;
  parts_.handOver.AnswerTimedOut = true;
  Hooks.reportTimeOut();
}

void Cycle::ShowElapsed() {
  if (!parts_.run.CycleRuns()) return;
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
  const auto waited = std::chrono::floor<std::chrono::seconds>(now - waitingSince_).count();
  if (parts_.run.WaitsForAnswer() && parts_.handOver.WaitingAnswer) {
    Hooks.showWait(waited < 1 ? "" : fmt::format("waiting for an answer, {} s", waited));
  } else if (parts_.link.RxOnly()) {
    Hooks.showWait("nothing is sent while \"Rx only\" is checked");
  } else if (!parts_.link.CommIsOpen()) {
    Hooks.showWait("waiting for a connection");
  } else if (parts_.run.chkRequest.Checked() && !parts_.link.State.AnswerPending) {
    Hooks.showWait("waiting for a request");
  } else {
    Hooks.showWait("");
  }
}

void Cycle::Timer2_Timer() {
  const std::int32_t sample = parts_.counters.Label7.Integer();
  const std::int32_t perSecond = std::abs(sample - lastRateSample_) * 2;
  parts_.counters.lblSendperSecond.SetInteger(perSecond);
  lastRateSample_ = sample;
  if (perSecond == 0) parts_.controls.Timer2.Rest();
}

}  // namespace quarlin
