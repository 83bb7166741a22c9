// SPDX-License-Identifier: GPL-3.0-or-later
#include "receive/receive_loop.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "base/numbers.h"
#include "receive/answer_check.h"

namespace quarlin {
namespace {

// Taken in one turn, so that the window gets its own.
constexpr std::size_t turnLimit = std::size_t{64} * 1024;
constexpr Duration lampTime = std::chrono::milliseconds(100);

std::string NothingOrBytes(std::size_t count) {
  return count == 0 ? "nothing received" : fmt::format("{} bytes without terminator", count);
}

}  // namespace

ReceiveLoop::ReceiveLoop(ReceiveParts parts)
    : parts_(parts),
      lastTick_(parts_.loop.Now()),
      lampAlarm_(parts_.loop, [this] { LampTimeIsUp(); }),
      quietAlarm_(parts_.loop, [this] { LineMayBeQuiet(); }) {
  ReceiveControls& controls = parts_.controls;
  controls.Timer3.OnTimer = [this] { Timer3_Timer(); };
  controls.tmrric.OnTimer = [this] { tmrric_Timer(); };
  controls.Option4.OnClick([this] { SetRxTerminator(); });
  controls.Combo3.Change = [this] { SetRxTerminator(); };
  parts_.linkControls.chkLogOnly.Click = [this] {
    releasesHeld_ = !parts_.link.RxOnly();
    parts_.controls.Timer3.Wake();
    parts_.controls.tmrric.Wake();
    Hooks.mayTransmit();
  };
}

void ReceiveLoop::SetRxTerminator() {
  const ComboBox& code = parts_.controls.Combo3;
  std::string terminator;
  std::int16_t minChars = 0;
  switch (static_cast<RxEnd>(parts_.controls.Option4.Selected().value_or(1))) {
    case RxEnd::Cr:
      terminator = "\r";
      break;
    case RxEnd::CrLf:
      terminator = "\r\n";
      break;
    case RxEnd::ManualChar:
      if (code.Text() != "000") terminator = CharacterOfCode(IntegerOf(code.Text()));
      break;
    case RxEnd::MinNumChar:
      minChars = static_cast<std::int16_t>(
          std::clamp<std::int32_t>(IntegerOf(code.Text()), 0, std::numeric_limits<std::int16_t>::max()));
      break;
  }
  if (!terminator.empty()) {
    parts_.linkControls.txtterm.SetText(PaddedDecimal(static_cast<unsigned char>(terminator.back()), 3));
  }
  if (!assembler_.SetRule(std::move(terminator), minChars)) return;
  shownPending_ = 0;
  EndErr();
}

void ReceiveLoop::Timer3_Timer() {
  parts_.controls.Timer3.Rest();
  if (TakeFromLink()) parts_.controls.Timer3.Wake();
  if (assembler_.HasPending()) parts_.controls.tmrric.Wake();
  if (parts_.link.State.DeviceGone) Hooks.deviceGone();
}

// True when there is more to take in another turn.
bool ReceiveLoop::TakeFromLink() {
  // What the sender before has sent is handled first.
  if (parts_.link.SenderChanges() && assembler_.HasPending()) return false;
  const Instant now = parts_.loop.Now();  // of all that one turn takes
  for (std::size_t taken = 0; taken < turnLimit;) {
    if (parts_.link.CommRxEmpty()) return false;
    if (assembler_.State().RxPending.size() >= Assembler::limit) {
      heldBack_ = true;
      parts_.status.Mention("1 MiB is waiting while \"Rx only\" is checked; the rest stays on the line");
      return false;
    }
    const std::size_t queued = parts_.link.State.CommStat.cbInQue;
    const std::string text = parts_.link.ReceiveChar();
    assembler_.Pend(text, Hooks.scripting() ? parts_.loop.Now() : now);  // a script takes its time
    // A socket hands out all that it has. What comes next calls again.
    if (queued <= Link::receiveSize || parts_.link.State.CommNetMode) return false;
    taken += Link::receiveSize;
  }
  return true;
}

void ReceiveLoop::TakeArrivals() {
  Timer3_Timer();
  if (parts_.controls.tmrric.Enabled()) tmrric_Timer();
}

void ReceiveLoop::tmrric_Timer() {
  parts_.controls.tmrric.Rest();
  if (parts_.link.RxOnly()) return;
  Hooks.showElapsed();
  CountIdleTicks();
  if (std::exchange(releasesHeld_, false)) HandleArrival(TakeArrival());
  ReportTimeOut();
  HandleArrival(TakeArrival());
  DimLamps();
}

// The ticks that were rested through count as well.
void ReceiveLoop::CountIdleTicks() {
  const Instant now = parts_.loop.Now();
  const std::int64_t ticks = std::max<std::int64_t>((now - lastTick_) / std::chrono::milliseconds(1), 1);
  lastTick_ = now;
  const std::int64_t most = std::numeric_limits<std::int16_t>::max();
  state_.RxIdleTicks = static_cast<std::int16_t>(std::min(state_.RxIdleTicks + ticks, most));
}

void ReceiveLoop::ReportTimeOut() {
  if (!parts_.exchange.TakeTimeOut()) return;
  const std::string detail = NothingOrBytes(assembler_.State().RxBuffer.size());
  parts_.status.Mention("time-out: " + detail);
  Hooks.signalError({Verdict::TimeOut, detail,
                     fmt::format("an answer within {} ms", parts_.run.txtAnswerTime.Integer()), detail});
}

void ReceiveLoop::ShowPending() {
  const std::string_view fresh = std::string_view(assembler_.State().RxPending).substr(shownPending_);
  if (fresh.empty()) return;
  if (shownPending_ == 0 && assembler_.State().RxBuffer.empty() && !assembler_.Discarding()) StampPause();
  parts_.traffic.Received(fresh, parts_.conversion.ForDisplay(fresh));
  shownPending_ += fresh.size();
}

void ReceiveLoop::ShowArrivals() {
  if (parts_.link.RxOnly()) return;
  TakeFromLink();
  ShowPending();
  parts_.controls.tmrric.Wake();
}

// Shown and logged as it came, whatever becomes of it.
Assembly ReceiveLoop::TakeArrival() {
  if (!assembler_.HasPending()) return Assembly::Nothing;
  ShowPending();
  shownPending_ = 0;
  const Assembly assembly = assembler_.Take();
  if (std::exchange(heldBack_, false) || parts_.link.SenderChanges()) parts_.controls.Timer3.Wake();
  state_.RxIdleTicks = 0;
  parts_.counters.RxLamp().SetFillColor(colors::rxLamp);
  KeepLampsBright();
  return assembly;
}

// Without a cycle: the time of the string that follows a pause.
void ReceiveLoop::StampPause() {
  if (!parts_.run.chkhhmmss.Checked() || parts_.exchange.Running()) return;
  const double seconds = SecondsSinceMidnight(parts_.loop.Local());
  if (SecondsApart(state_.LastStampTime, seconds) <= parts_.run.HScroll1.Value() / 1000.0) return;
  parts_.traffic.StampLog();
  state_.LastStampTime = seconds;
}

void ReceiveLoop::HandleArrival(Assembly assembly) {
  if (assembly == Assembly::Nothing) return;
  if (assembly == Assembly::Discarded) return AwaitQuiet();
  if (assembly == Assembly::DiscardEnds) return EndErr();
  if (assembly == Assembly::Overlong) {
    parts_.status.Mention("1 MiB received without a terminator was handed on as one string");
  }
  const bool complete = assembly != Assembly::Beginning;
  std::string text = complete ? assembler_.State().RxBuffer : std::string();
  if (complete) AnswerAsDialog(text);
  // A request of the dialog test is none of an instrument's errors, whole or in pieces.
  if (!parts_.controls.chkDialog.Checked() && assembler_.HoldsError()) {
    CountErr(complete);
  } else if (complete) {
    Handle(std::move(text));
  }
}

void ReceiveLoop::AnswerAsDialog(const std::string& text) {
  if (!parts_.controls.chkDialog.Checked()) return;
  std::string request(assembler_.StripRxTerminator(text));
  parts_.conversion.ForChecks(request, 0);
  assembler_.Clear();
  Hooks.dialog(request);
}

void ReceiveLoop::CountErr(bool complete) {
  parts_.counters.lblerror.Increment();
  parts_.exchange.ErrSeen(assembler_.State().RxBuffer, assembler_.FirstByte());
  assembler_.Discard(complete);
  if (assembler_.Discarding()) {
    AwaitQuiet();
  } else {
    EndErr();
  }
}

void ReceiveLoop::AwaitQuiet() {
  quietAlarm_.At(assembler_.LastByte() + Quiet());
}

// What came while the program was busy has come in time.
void ReceiveLoop::LineMayBeQuiet() {
  if (!assembler_.Discarding()) return;
  TakeArrivals();
  if (!assembler_.Discarding() || assembler_.HasPending()) return;  // "Rx only" holds its rest back
  if (parts_.loop.Now() < assembler_.LastByte() + Quiet()) {
    AwaitQuiet();
  } else {
    EndErr();
  }
}

void ReceiveLoop::EndErr() {
  quietAlarm_.Cancel();
  assembler_.EndDiscard();
  parts_.exchange.ErrEnded();
}

Duration ReceiveLoop::Quiet() const {
  const LinkState& link = parts_.link.State;
  return QuietTime(link.CommNetMode ? Duration{} : CharacterTime(link.CommDCB));
}

std::size_t ReceiveLoop::GiveUpString() {
  const std::size_t length = assembler_.State().RxBuffer.size();
  assembler_.Clear();
  state_.RxIdleTicks = 2;
  return length;
}

void ReceiveLoop::BeginSender() {
  const std::size_t dropped = assembler_.State().RxBuffer.size();
  if (dropped > 0) {
    parts_.status.Mention(
        fmt::format("another sender: {} bytes without terminator of the one before were dropped", dropped));
  }
  ForgetArrivals();
}

void ReceiveLoop::ForgetArrivals() {
  shownPending_ = 0;
  assembler_.ClearAll();
  EndErr();
}

void ReceiveLoop::ForgetBeginning() {
  assembler_.Clear();
  EndErr();
}

void ReceiveLoop::DropBeginning() {
  TakeArrivals();
  assembler_.DiscardUnfinished(parts_.loop.Now(), Quiet());
  if (assembler_.Discarding()) AwaitQuiet();
}

void ReceiveLoop::Handle(std::string text) {
  const std::uint32_t run = parts_.exchange.Run();
  const auto runIsOver = [&] { return run != parts_.exchange.Run(); };
  const bool late = parts_.exchange.BeginString(text, assembler_.FirstByte());
  parts_.counters.lblrxpersecond.SetCaption(DecimalText(RxIntervalSeconds()));
  if (parts_.controls.chkTimerDiff.Checked()) ShowTimeDifference();
  ConvertForChecks(text);
  Hooks.completed(text);
  if (Hooks.scripting()) Hooks.receiveString(text);
  if (late) parts_.status.Mention("late answer");
  // A script, or somebody at a box, may have begun another run, of which this is no answer.
  std::optional<std::string> parsed;
  if (!runIsOver()) parsed = Accept(text);
  if (!runIsOver()) CheckChecksum(parsed.value_or(text));
  assembler_.Clear();
  parts_.exchange.EndString();
}

// Its terminator has been recognised, and those who look at the string expect it at its end.
void ReceiveLoop::ConvertForChecks(std::string& text) {
  parts_.conversion.ForChecks(text, text.size() - assembler_.StripRxTerminator(text).size());
}

float ReceiveLoop::RxIntervalSeconds() {
  const std::uint32_t tick = MillisecondTick(parts_.loop.Now());
  const std::uint32_t elapsed = tick - state_.LastCompleteTick;
  state_.LastCompleteTick = tick;
  return static_cast<float>(elapsed) / 1000;
}

void ReceiveLoop::ShowTimeDifference() {
  const double now = SecondsSinceMidnight(parts_.loop.Local());
  const double apart = std::round(SecondsApart(state_.LastRxTime, now) * 1e6) / 1e6;  // no digits of noise
  parts_.traffic.Append(fmt::format("TIME :{}\r\n", DecimalText(apart)), colors::magenta);
  state_.LastRxTime = now;
}

bool ReceiveLoop::PassesChecks(const std::string& text) {
  AnswerRules rules{parts_.controls.txtlenrx.Integer(), std::nullopt};
  if (parts_.controls.chkSame.Checked()) rules.same = parts_.controls.txtparser.Text();
  const auto objection = CheckAnswer(text, rules);
  if (objection) Hooks.signalError(*objection);
  return !objection;
}

// Everything that is done with an answer that passes the checks. Returns what is to be verified by the
// checksum in its place: the parser's result, while the parser is on.
std::optional<std::string> ReceiveLoop::Accept(const std::string& text) {
  if (!PassesChecks(text)) return std::nullopt;
  const auto length = static_cast<std::int32_t>(text.size());
  parts_.counters.lbllen.SetInteger(length);
  parts_.counters.lblllen.SetInteger(length);
  parts_.counters.Label7.Increment();
  Hooks.counted();
  const std::uint32_t run = parts_.exchange.Run();
  StopIfFound(text);
  if (run != parts_.exchange.Run()) return std::nullopt;
  if (parts_.controls.ChkCrLfAppRx.Checked()) parts_.traffic.AppendReceivedRow();
  const std::string parsed = Parsed(text);
  parts_.exchange.Accept(parsed);
  CountRequest();
  if (!parts_.controls.chkParser.Checked()) return std::nullopt;
  return parsed;
}

void ReceiveLoop::StopIfFound(const std::string& text) {
  ReceiveControls& controls = parts_.controls;
  for (std::size_t i = 0; i < controls.chkStopif.size(); ++i) {
    std::string search = controls.txtConv[2 * i].Text();
    std::string unused = controls.txtConv[2 * i + 1].Text();
    if (!search.empty()) parts_.expander.ExpandMacros(search);
    if (!unused.empty()) parts_.expander.ExpandMacros(unused);
    if (!search.empty() && controls.chkStopif[i].Checked() && text.find(search) != std::string::npos) {
      Hooks.stopWithMessage("STRING FOUND", "SEARCH STRING");
    }
  }
}

std::string ReceiveLoop::Parsed(const std::string& text) {
  ReceiveControls& controls = parts_.controls;
  std::string result =
      controls.chkParser.Checked() ? parts_.parser.ParseReceived(controls.cboParser.Text(), text) : text;
  controls.txtparser.SetText(result);
  parts_.traffic.Parsed(result);
  return result;
}

void ReceiveLoop::CountRequest() {
  RequestCount& requests = parts_.exchange.Requests();
  if (!requests.Limited() || !parts_.run.WaitsForAnswer()) return;
  requests.TakeOne();
  if (requests.RequestsLeft() == 0) Hooks.requestsDone();
}

void ReceiveLoop::CheckChecksum(const std::string& text) {
  const auto objection =
      CheckAnswerSum(text, assembler_.StripRxTerminator(text), parts_.controls.cboCheckSum.ListIndex());
  if (objection) Hooks.signalError(*objection);
}

void ReceiveLoop::KeepLampsBright() {
  lampsUntil_ = parts_.loop.Now() + lampTime;
  if (!lampAlarm_.IsSet()) lampAlarm_.At(lampsUntil_);
}

void ReceiveLoop::LampTimeIsUp() {
  if (parts_.loop.Now() < lampsUntil_) {
    lampAlarm_.At(lampsUntil_);
  } else {
    parts_.controls.tmrric.Wake();
  }
}

void ReceiveLoop::DimLamps() {
  if (state_.RxIdleTicks <= 1 || parts_.loop.Now() < lampsUntil_) return;
  DarkenLamps();
  state_.RxIdleTicks = 0;
}

void ReceiveLoop::DarkenLamps() {
  parts_.counters.TxLamp().SetFillColor(colors::darkRed);
  parts_.counters.RxLamp().SetFillColor(colors::darkGreen);
}

}  // namespace quarlin
