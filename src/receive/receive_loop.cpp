#include "receive/receive_loop.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "base/numbers.h"
#include "receive/answer_checksum.h"

namespace quarlin {
namespace {

constexpr std::size_t turnLimit = 64 * 1024;  // taken in one turn, so that the window gets its own
constexpr std::size_t assemblyLimit = std::size_t{1} << 20;  // of one string, and of what waits for it
constexpr Duration lampTime = std::chrono::milliseconds(100);
constexpr std::string_view errorAnswer = "ERR";

// Whether `text` holds `needle`, when everything before its last `fresh` bytes is known not to.
bool HoldsNewly(std::string_view text, std::string_view needle, std::size_t fresh) {
  const std::size_t reach = fresh + needle.size() - 1;
  return text.find(needle, text.size() > reach ? text.size() - reach : 0) != std::string_view::npos;
}

std::string NothingOrBytes(std::size_t count) {
  return count == 0 ? "nothing received" : fmt::format("{} bytes without terminator", count);
}

}  // namespace

ReceiveLoop::ReceiveLoop(ReceiveParts parts)
    : parts_(parts), lastTick_(parts_.loop.Now()), lampAlarm_(parts_.loop, [this] { LampTimeIsUp(); }) {
  ReceiveControls& controls = parts_.controls;
  controls.Timer3.OnTimer = [this] { Timer3_Timer(); };
  controls.tmrric.OnTimer = [this] { tmrric_Timer(); };
  controls.Option4.OnClick([this] { SetRxTerminator(); });
  controls.Combo3.Change = [this] { SetRxTerminator(); };
  parts_.linkControls.chkLogOnly.Click = [this] {
    parts_.controls.Timer3.Wake();
    parts_.controls.tmrric.Wake();
    Hooks.mayTransmit();
  };
}

void ReceiveLoop::SetRxTerminator() {
  ReceiveState& state = parts_.state;
  const ComboBox& code = parts_.controls.Combo3;
  const auto selected = static_cast<RxEnd>(parts_.controls.Option4.Selected().value_or(1));
  state.RxMinChars = 0;
  switch (selected) {
    case RxEnd::Cr:
      state.RxTerminator = "\r";
      break;
    case RxEnd::CrLf:
      state.RxTerminator = "\r\n";
      break;
    case RxEnd::ManualChar:
      state.RxTerminator = code.Text() == "000" ? std::string() : CharacterOfCode(IntegerOf(code.Text()));
      break;
    case RxEnd::MinNumChar:
      state.RxTerminator.clear();
      state.RxMinChars = static_cast<std::int16_t>(
          std::clamp<std::int32_t>(IntegerOf(code.Text()), 0, std::numeric_limits<std::int16_t>::max()));
      break;
  }
  if (!state.RxTerminator.empty()) {
    parts_.linkControls.txtterm.SetText(
        PaddedDecimal(static_cast<unsigned char>(state.RxTerminator.back()), 3));
  }
  state.RxPending.clear();
  state.RxBuffer.clear();
}

std::string_view ReceiveLoop::StripRxTerminator(std::string_view text) const {
  const std::string& terminator = parts_.state.RxTerminator;
  if (!terminator.empty() && text.size() > terminator.size() && text.ends_with(terminator)) {
    text.remove_suffix(terminator.size());
  }
  return text;
}

void ReceiveLoop::Timer3_Timer() {
  parts_.controls.Timer3.Rest();
  if (TakeFromLink()) parts_.controls.Timer3.Wake();
  if (!parts_.state.RxPending.empty()) parts_.controls.tmrric.Wake();
  if (parts_.link.State.DeviceGone) Hooks.deviceGone();
}

// True when there is more to take in another turn.
bool ReceiveLoop::TakeFromLink() {
  std::string& pending = parts_.state.RxPending;
  for (std::size_t taken = 0; taken < turnLimit;) {
    if (parts_.link.CommRxEmpty()) return false;
    if (pending.size() >= assemblyLimit) {
      heldBack_ = true;
      Hooks.note("1 MiB is waiting while \"Rx only\" is checked; the rest stays on the line");
      return false;
    }
    const std::size_t queued = parts_.link.State.CommStat.cbInQue;
    pending += parts_.link.ReceiveChar();
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
  ReportTimeOut();
  const std::size_t arrived = parts_.state.RxPending.size();
  if (TakeArrival()) {
    if (auto text = CompleteString(arrived)) Handle(*std::move(text));
  }
  DimLamps();
}

// The ticks that were rested through count as well.
void ReceiveLoop::CountIdleTicks() {
  const Instant now = parts_.loop.Now();
  const std::int64_t ticks = std::max<std::int64_t>((now - lastTick_) / std::chrono::milliseconds(1), 1);
  lastTick_ = now;
  const std::int64_t most = std::numeric_limits<std::int16_t>::max();
  parts_.state.RxIdleTicks = static_cast<std::int16_t>(std::min(parts_.state.RxIdleTicks + ticks, most));
}

void ReceiveLoop::ReportTimeOut() {
  HandOver& handOver = parts_.handOver;
  if (!handOver.WaitingAnswer || !parts_.run.WaitsForAnswer() || !handOver.AnswerTimedOut) return;
  handOver.AnswerTimedOut = false;
  timedOut_ = true;
  const std::string detail = NothingOrBytes(parts_.state.RxBuffer.size());
  Hooks.note("time-out: " + detail);
  Hooks.signalError(0, detail);
}

bool ReceiveLoop::TakeArrival() {
  ReceiveState& state = parts_.state;
  if (state.RxPending.empty()) return false;
  parts_.display.Append(state.RxPending, colors::black);
  parts_.logs.WriteTraffic(state.RxPending);
  if (state.RxBuffer.empty()) {
    std::swap(state.RxBuffer, state.RxPending);
  } else {
    state.RxBuffer += state.RxPending;
  }
  state.RxPending.clear();
  if (std::exchange(heldBack_, false)) parts_.controls.Timer3.Wake();
  state.RxIdleTicks = 0;
  parts_.counters.RxLamp().SetFillColor(colors::rxLamp);
  KeepLampsBright();
  return true;
}

bool ReceiveLoop::IsComplete(std::size_t arrived) {
  const ReceiveState& state = parts_.state;
  if (state.RxTerminator.empty()) return state.RxBuffer.size() >= static_cast<std::size_t>(state.RxMinChars);
  if (HoldsNewly(state.RxBuffer, state.RxTerminator, arrived)) return true;
  if (state.RxBuffer.size() < assemblyLimit) return false;
  Hooks.note("1 MiB received without a terminator was handed on as one string");
  return true;
}

// The string, when it is complete and no "ERR" answer. RxBuffer keeps it until it has been handled.
std::optional<std::string> ReceiveLoop::CompleteString(std::size_t arrived) {
  ReceiveState& state = parts_.state;
  const bool complete = IsComplete(arrived);
  std::optional<std::string> text;
  if (complete) text = state.RxBuffer;
  if (complete && parts_.controls.chkDialog.Checked()) {
    const std::string request(StripRxTerminator(state.RxBuffer));
    state.RxBuffer.clear();
    Hooks.dialog(request);
  }
  if (!state.RxBuffer.empty() && HoldsNewly(state.RxBuffer, errorAnswer, arrived)) {
    parts_.counters.lblerror.Increment();
    state.RxBuffer.clear();
    if (complete) Hooks.endWait();
    return std::nullopt;
  }
  return text;
}

void ReceiveLoop::Handle(std::string text) {
  StampPause();
  parts_.counters.lblrxpersecond.SetCaption(DecimalText(RxIntervalSeconds()));
  if (parts_.controls.chkTimerDiff.Checked()) ShowTimeDifference();
  if (Hooks.scripting()) Hooks.receiveString(text);
  if (std::exchange(timedOut_, false) && !parts_.handOver.WaitingAnswer) Hooks.note("late answer");
  const std::optional<std::string> parsed = Accept(text);
  CheckChecksum(parsed.value_or(text));
  parts_.state.RxBuffer.clear();
}

void ReceiveLoop::StampPause() {
  if (!parts_.run.chkhhmmss.Checked() || parts_.run.CycleRuns()) return;
  const LocalTime now = parts_.loop.Local();
  const double seconds = SecondsSinceMidnight(now);
  if (SecondsApart(parts_.state.LastStampTime, seconds) <= parts_.run.HScroll1.Value() / 1000.0) return;
  parts_.logs.WriteStamp(now);
  parts_.state.LastStampTime = seconds;
}

float ReceiveLoop::RxIntervalSeconds() {
  const std::uint32_t tick = MillisecondTick(parts_.loop.Now());
  const std::uint32_t elapsed = tick - parts_.state.LastCompleteTick;
  parts_.state.LastCompleteTick = tick;
  return static_cast<float>(elapsed) / 1000;
}

void ReceiveLoop::ShowTimeDifference() {
  const double now = SecondsSinceMidnight(parts_.loop.Local());
  const double apart =
      std::round(SecondsApart(parts_.state.LastRxTime, now) * 1e6) / 1e6;  // no digits of noise
  parts_.display.Append(fmt::format("TIME :{}\r\n", DecimalText(apart)), colors::magenta);
  parts_.state.LastRxTime = now;
}

bool ReceiveLoop::PassesChecks(const std::string& text) {
  const std::int32_t length = parts_.controls.txtlenrx.Integer();
  if (length != 0 && text.size() != static_cast<std::size_t>(length)) {
    Hooks.signalError(2, fmt::format("{} characters instead of {}", text.size(), length));
    return false;
  }
  if (parts_.controls.chkSame.Checked() && text != parts_.controls.txtparser.Text()) {
    Hooks.signalError(1, fmt::format("{} characters received", text.size()));
    return false;
  }
  return true;
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
  StopIfFound(text);
  if (parts_.controls.ChkCrLfAppRx.Checked()) {
    parts_.display.Append("\r\n", colors::black);
    parts_.logs.WriteTraffic("\r\n");
  }
  const std::string parsed = Parsed(text);
  HandOverAnswer();
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
  parts_.logs.WriteParser(result);
  return result;
}

void ReceiveLoop::HandOverAnswer() {
  HandOver& handOver = parts_.handOver;
  parts_.link.State.AnswerPending = true;
  handOver.TimeoutCount = 0;
  Hooks.endWait();
  if (!parts_.run.CountsRequests() || !parts_.run.WaitsForAnswer()) return;
  --handOver.RequestsLeft;
  parts_.run.Text1.SetText(PaddedDecimal(handOver.RequestsLeft, 1));
  if (handOver.RequestsLeft == 0) Hooks.requestsDone();
}

void ReceiveLoop::CheckChecksum(const std::string& text) {
  const auto mismatch =
      FindChecksumMismatch(text, StripRxTerminator(text), parts_.controls.cboCheckSum.ListIndex());
  if (mismatch)
    Hooks.signalError(3, fmt::format("{} received, {} computed", mismatch->received, mismatch->computed));
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
  if (parts_.state.RxIdleTicks <= 1 || parts_.loop.Now() < lampsUntil_) return;
  DarkenLamps();
  parts_.state.RxIdleTicks = 0;
}

void ReceiveLoop::DarkenLamps() {
  parts_.counters.TxLamp().SetFillColor(colors::darkRed);
  parts_.counters.RxLamp().SetFillColor(colors::darkGreen);
}

}  // namespace quarlin
