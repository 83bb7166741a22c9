// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/link.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <utility>

#include "base/numbers.h"
#include "base/scope_flag.h"
#include "base/system_call.h"
#include "base/text.h"

namespace quarlin {
namespace {

constexpr std::int32_t invalidHandle = -1;
constexpr std::size_t queueSize = 1024;
constexpr std::int32_t networkToken = 1;
constexpr std::int32_t readSize = 1024;  // the most that one read may ask for
constexpr std::size_t queuedTextLimit = std::size_t{1} << 20;
constexpr std::size_t streamPiece = std::size_t{64} * 1024;
constexpr std::size_t datagram = 1024;  // of a stream: one that no network takes apart
constexpr Duration fullNetworkPause = std::chrono::milliseconds(1);

// Where an error happened, as CommLastErrorSource shows it. Those of CommOpen are followed by the port.
namespace sources {
constexpr std::string_view open = "CommOpen";
constexpr std::string_view createFile = "CommOpen (CreateFile) ";
constexpr std::string_view setupComm = "CommOpen (SetupComm) ";
constexpr std::string_view purgeComm = "CommOpen (PurgeComm) ";
constexpr std::string_view setCommTimeouts = "CommOpen (SetCommTimeouts) ";
constexpr std::string_view getCommState = "CommOpen (GetCommState) ";
constexpr std::string_view buildCommDcb = "CommOpen (BuildCommDCB) ";
constexpr std::string_view setCommState = "CommOpen (SetCommState) ";
constexpr std::string_view close = "CommClose (CloseHandle)";
constexpr std::string_view flush = "CommFlush (PurgeComm)";
constexpr std::string_view read = "CommRead (ReadFile)";
constexpr std::string_view write = "CommWrite (WriteFile)";
constexpr std::string_view pendingWrite = "CommWrite (GetOverlappedResult)";
constexpr std::string_view sendData = "CommWrite (SendData)";
constexpr std::string_view readModem = "CommReadCD (GetCommModemStatus)";
constexpr std::string_view setLine = "CommSetLine (EscapeCommFunction)";
}  // namespace sources

constexpr std::string_view portInUse = "Port in use.";
constexpr std::string_view errorFlagsText = "  COMM Error Flags = ";

constexpr std::string_view networkName = "NET";
constexpr Duration finishGrace = std::chrono::seconds(2);
constexpr Duration lineErrorPause = std::chrono::milliseconds(250);
constexpr double bitsPerByte = 12;  // the most that a line makes of one

std::error_code BadHandle() {
  return std::make_error_code(std::errc::bad_file_descriptor);
}

bool MeansDeviceGone(std::error_code error) {
  const int code = error.value();
  return code == EIO || code == ENODEV || code == ENXIO || code == EPIPE;
}

bool MeansNoModemLines(std::error_code error) {
  const int code = error.value();
  return code == EBADF || code == ENOTTY || code == EINVAL;
}

std::optional<OutputLine> OutputLineFrom(std::int16_t number) {
  if (number < 1 || number > 3) return std::nullopt;
  return static_cast<OutputLine>(number);
}

}  // namespace

bool LinkTarget::IsNetwork() const {
  return EqualsIgnoringCase(port, networkName);
}

Link::Link(EventLoop& loop, DeviceSource& devices, LinkControls& controls)
    : loop_(loop),
      devices_(devices),
      controls_(controls),
      progress_(loop, [this](std::size_t taken, std::size_t total) { Hooks.progress(taken, total); }),
      flowWatch_(loop, [this] { Hooks.held(); }),
      lineErrorAlarm_(loop, [this] { CountLineErrors(); }),
      streamAlarm_(loop, [this] { OfferRoom(); }),
      network_(loop) {
  network_.OnArrival = [this] { OnArrival(); };
  network_.OnNewPeer = [this] { Hooks.newPeer(); };
  network_.OnLost = [this](std::size_t bytes) { TellLost(bytes); };
  network_.OnQueue = [this](std::size_t taken, std::size_t total) { NetworkQueueChanged(taken, total); };
}

Link::~Link() = default;

std::int32_t Link::CommOpen(const std::string& portName, std::string_view settings) {
  const LinkTarget target{portName, std::string(settings), controls_.Flow(),
                          ChooseNetwork ? ChooseNetwork() : NetworkChoice{}};
  // The link that is open keeps what it was opened with: it is closed below.
  const bool inUse = State.CommPortOpen && !target.IsNetwork();
  if (!inUse) target_ = target;
  const std::int32_t result = target.IsNetwork() ? OpenNetwork() : OpenSerial();
  if (result != 0) CommClose();
  return result;
}

std::int32_t Link::OpenNetwork() {
  EnterNetworkMode();
  if (network_.Open(target_.network)) NetworkOpened();
  return 0;
}

void Link::OpenInBackground(const LinkTarget& target, std::function<void()> over) {
  target_ = target;
  if (!target.IsNetwork()) {
    if (OpenSerial() != 0) CommClose();
    over();
    return;
  }
  EnterNetworkMode();
  network_.OpenInBackground(target_.network, [this, over = std::move(over)](bool opened) {
    if (opened) NetworkOpened();
    over();
  });
}

void Link::EnterNetworkMode() {
  if (State.CommPortOpen) CommClose();
  State.CommNetMode = true;
  State.DeviceGone = false;
  State.NoModemLines = true;
}

void Link::NetworkOpened() {
  ++openings_;
  State.CommPortOpen = true;
  State.CommHandle = networkToken;
}

std::int32_t Link::OpenSerial() {
  if (State.CommPortOpen) {
    State.CommLastError = -1;
    State.CommLastErrorSource = sources::open;
    State.CommLastErrorText = portInUse;
    return -1;
  }
  if (State.CommNetMode) CommClose();  // a connection may still be being made
  State.DeviceGone = false;
  State.NoModemLines = false;
  State.CommStat = {};
  linesSet_.clear();
  OpenedDevice opened =
      devices_.Open(target_.path.empty() ? target_.port : target_.path, [this] { DeviceCalls(); });
  if (!opened.device) {
    State.CommHandle = invalidHandle;
    return CommSetError(fmt::format("{}{} ", sources::createFile, target_.port), opened.error);
  }
  device_ = std::move(opened.device);
  State.CommHandle = ++lastToken_;
  ++openings_;
  State.CommPortOpen = true;
  errorsBefore_ = errors_.value_or(LineErrors());
  errorsAreCounted_ = device_->Errors().has_value();
  if (errorsAreCounted_) errors_ = errorsBefore_;
  return SetUp(*device_);
}

// Bytes have come, or the device has gone; also during a yield.
void Link::DeviceCalls() {
  if (errorsAreCounted_ && !lineErrorAlarm_.IsSet()) lineErrorAlarm_.At(loop_.Now() + lineErrorPause);
  OnArrival();
  if (!waitsForDriver_ || showsArrival_ || !Hooks.arrivedWhileWriting || Scripting()) return;
  const ScopeFlag showing(showsArrival_);
  Hooks.arrivedWhileWriting();
}

void Link::CountLineErrors() {
  const auto device = OpenDevice();
  const auto counted = device ? device->Errors() : std::nullopt;
  if (!counted || errors_ == errorsBefore_ + *counted) return;
  errors_ = errorsBefore_ + *counted;
  Hooks.lineErrors();
}

std::int32_t Link::SetUp(Device& device) {
  const auto fail = [&](std::string_view source, std::error_code error) {
    return CommSetError(fmt::format("{}{} ", source, target_.port), error);
  };
  if (const auto error = device.SetupQueues(queueSize, queueSize)) return fail(sources::setupComm, error);
  if (const auto error = device.Purge()) return fail(sources::purgeComm, error);
  if (const auto error = device.SetTimeouts()) return fail(sources::setCommTimeouts, error);
  const CurrentSettings current = device.Settings();
  if (current.error) return fail(sources::getCommState, current.error);
  SerialSettings wanted = current.settings;
  if (!target_.flow || !BuildCommDcb(target_.settings, wanted)) {
    return fail(sources::buildCommDcb, std::make_error_code(std::errc::invalid_argument));
  }
  AddFlowControl(*target_.flow, wanted);
  State.CommDCB = wanted;
  if (const auto error = device.Apply(wanted)) return fail(sources::setCommState, error);
  flowWatch_.Opened(device, wanted);
  return 0;
}

std::int32_t Link::CommClose() {
  EndStream();
  if (State.CommNetMode) {
    CloseNetwork();
    return 0;
  }
  if (!State.CommPortOpen) return 0;
  CountLineErrors();
  const bool heldUp =
      std::exchange(finishing_, false) || waitsForDriver_;  // else the system sends what it has taken
  const std::size_t left = heldUp ? device_->Unsent() : 0;
  if (const auto error = device_->Close()) return CommSetError(sources::close, error);
  ++openings_;
  lineErrorAlarm_.Cancel();
  flowWatch_.Closed();
  device_.reset();
  State.CommPortOpen = false;
  TellLost(left);
  return 0;
}

void Link::CloseNetwork() {
  ++openings_;
  finishing_ = false;
  network_.Close();
  State.CommNetMode = false;
  State.CommPortOpen = false;
}

void Link::TellLost(std::size_t bytes) {
  if (bytes > 0) Hooks.lost(bytes);
}

void Link::Finish() {
  if (!State.CommPortOpen || std::exchange(finishing_, true)) return;
  EndStream();
  if (State.CommNetMode) return network_.Finish(loop_.Now() + finishGrace);
  const auto device = OpenDevice();
  device->WaitSent(loop_.Now() + TimeOnTheLine(device->Unsent()) + finishGrace);
}

std::shared_ptr<Device> Link::OpenDevice() const {
  return State.CommPortOpen ? device_ : nullptr;
}

void Link::GiveUpWaiting() {
  if (!sending_ && !finishing_) return;
  givenUp_ = true;
  Finish();
  CommClose();
}

std::int32_t Link::CommFlush() {
  const auto device = OpenDevice();
  const std::error_code error = device ? device->Purge() : BadHandle();
  return error ? CommSetError(sources::flush, error) : 0;
}

bool Link::CommRxEmpty() {
  if (State.CommNetMode) {
    State.CommStat = {static_cast<std::size_t>(network_.GetByteRead()), {}};
    return State.CommStat.cbInQue == 0;
  }
  const auto device = OpenDevice();
  if (!device) {
    State.CommStat = {};
    return true;
  }
  State.CommStat = device->Queue();
  // The platform tells of a lost device when its queue is asked for; there is no read left to fail.
  if (State.CommStat.error && !State.DeviceGone) CommSetErrorFlags(sources::read, State.CommStat.error);
  if (State.CommStat.error) State.CommStat.cbInQue = 0;
  return State.CommStat.cbInQue == 0;
}

std::int32_t Link::CommRead(std::string& text, std::int32_t maxLength) {
  text.clear();
  if (State.CommNetMode) {
    const std::int32_t count = network_.GetByteRead();
    if (count != 0) text = network_.GetStringRead();
    return count;
  }
  const auto device = OpenDevice();
  loop_.DoEvents();
  if (device != OpenDevice()) return 0;  // closed meanwhile, and what it held with it
  const auto limit = static_cast<std::size_t>(std::clamp(maxLength, 0, readSize));
  const std::size_t wanted = std::min(State.CommStat.cbInQue, limit);
  if (wanted == 0) return 0;
  char buffer[readSize];
  const Transfer taken = device ? device->Read(buffer, wanted) : Transfer{0, BadHandle()};
  if (taken.error) {
    CommSetErrorFlags(sources::read, taken.error);
    return -1;
  }
  text.assign(buffer, taken.bytes);
  return static_cast<std::int32_t>(taken.bytes);
}

std::int32_t Link::CommWrite(std::string_view text) {
  Writing writing{text.size(), openings_};
  return Write(text, writing);
}

std::int32_t Link::Write(std::string_view text, Writing& writing) {
  const bool raisesRts = controls_.ChkRtsTx.Checked();
  if (raisesRts && !State.CommNetMode) CommSetLine(3, -1);
  const std::int32_t written = State.CommNetMode ? WriteNetwork(text, writing) : WriteSerial(text, writing);
  if (raisesRts && !writing.cancelled) {
    WaitUntilSent(text.size());
    if (writing.opening == openings_) CommSetLine(3, 0);
  }
  return written;
}

std::int32_t Link::WriteNetwork(std::string_view text, Writing& writing) {
  writing.error = network_.Send(text);
  writing.taken += writing.error ? network_.TakenOfLastSend() : text.size();
  if (writing.error) CommSetError(sources::sendData, writing.error);
  return 0;
}

std::int32_t Link::WriteSerial(std::string_view text, Writing& writing) {
  const auto device = OpenDevice();
  if (!device) return Fail(writing, sources::write, BadHandle());
  const Duration pause = CharacterPause();
  const std::int32_t written = pause == Duration::zero() ? WriteWhole(*device, text, writing)
                                                         : WriteSlowly(*device, text, pause, writing);
  loop_.DoEvents();
  return written;
}

std::int32_t Link::WriteWhole(Device& device, std::string_view text, Writing& writing) {
  const Instant deadline = loop_.Now() + std::chrono::seconds(text.size());
  std::string_view source = sources::write;
  std::size_t sent = 0;
  for (;;) {
    const Transfer transfer = device.Write(text.substr(sent));
    flowWatch_.Wrote(transfer.bytes);
    sent += transfer.bytes;
    writing.taken += transfer.bytes;
    if (transfer.error) return Fail(writing, source, transfer.error);
    if (sent == text.size()) return static_cast<std::int32_t>(sent);
    progress_.Tell(writing.taken, writing.total);
    source = sources::pendingWrite;
    const bool inTime = WaitForDriver(device, deadline, writing);
    if (writing.opening != openings_ || calledOff_) return Cancel(writing);
    if (!inTime) return Fail(writing, source, std::make_error_code(std::errc::timed_out));
  }
}

// A wait that lasts is interrupted for a look at who holds the line.
bool Link::WaitForDriver(Device& device, Instant deadline, const Writing& writing) {
  const ScopeFlag waiting(waitsForDriver_);
  for (;;) {
    const Instant look = std::min(deadline, loop_.Now() + FlowWatch::interval);
    if (device.WaitWritable(look, [this] { return calledOff_; })) return true;
    if (look == deadline) return false;
    flowWatch_.Look();
    progress_.Tell(writing.taken, writing.total);
  }
}

bool Link::TakesStream() const {
  return !Scripting() && !controls_.ChkRtsTx.Checked() && !controls_.chkTerminal.Checked() &&
         CharacterPause() == Duration::zero();
}

Duration Link::CharacterPause() const {
  constexpr double most = 24.0 * 60 * 60 * 1000;  // nobody means more, and a duration has an end
  const double milliseconds = std::clamp(NumberOf(controls_.txtcharrit.Text()).value_or(0), -most, most);
  return std::chrono::duration_cast<Duration>(std::chrono::duration<double, std::milli>(milliseconds));
}

void Link::BeginStream(std::function<void()> room) {
  stream_ = std::move(room);
  const auto device = OpenDevice();
  if (device) {
    device->CallWhileWritable([this] { OfferRoom(); });
  } else {
    streamAlarm_.At(loop_.Now());
  }
}

void Link::EndStream() {
  if (!std::exchange(stream_, nullptr)) return;
  streamAlarm_.Cancel();
  if (const auto device = OpenDevice()) device->CallWhileWritable(nullptr);
}

void Link::OfferRoom() {
  const auto stream = stream_;  // it may end in the call
  if (stream) stream();
}

Transfer Link::SendSome(std::string_view bytes) {
  Transfer taken;
  if (State.CommNetMode) {
    taken = SendSomeToPeer(bytes);
  } else if (const auto device = OpenDevice()) {
    taken = device->Write(bytes.substr(0, streamPiece));
    flowWatch_.Wrote(taken.bytes);
    if (taken.error) CommSetErrorFlags(sources::write, taken.error);
  } else {
    taken.error = BadHandle();
  }
  if (taken.bytes > 0) {
    State.LastSendTime = Midnight();
    Hooks.transmitted();
  }
  return taken;
}

Transfer Link::SendSomeToPeer(std::string_view bytes) {
  if (network_.Unsent() > 0) return {};  // its end is told
  const std::string_view piece = bytes.substr(0, target_.network.udp ? datagram : streamPiece);
  const std::error_code error = network_.Send(piece);
  if (error == std::errc::resource_unavailable_try_again) {
    streamAlarm_.At(loop_.Now() + fullNetworkPause);
    return {};
  }
  if (error) {
    CommSetError(sources::sendData, error);
    return {network_.TakenOfLastSend(), error};
  }
  if (stream_ && network_.Unsent() == 0) streamAlarm_.At(loop_.Now());
  return {piece.size(), {}};
}

std::int32_t Link::WriteSlowly(Device& device, std::string_view text, Duration pause, Writing& writing) {
  std::int32_t written = 0;
  for (const char& character : text) {
    written = WriteWhole(device, {&character, 1}, writing);
    if (written < 0) break;
    loop_.Pause(loop_.Now() + pause);
  }
  return written;
}

std::int32_t Link::Fail(Writing& writing, std::string_view source, std::error_code error) {
  writing.error = error;
  CommSetErrorFlags(source, error);
  return -1;
}

std::int32_t Link::Cancel(Writing& writing) {
  writing.cancelled = true;
  return -1;
}

Duration Link::TimeOnTheLine(std::size_t bytes) const {
  const double seconds = static_cast<double>(bytes) * bitsPerByte / std::max<double>(State.CommDCB.baud, 1);
  return std::chrono::duration_cast<Duration>(std::chrono::duration<double>(seconds));
}

void Link::WaitUntilSent(std::size_t bytes) {
  const auto device = OpenDevice();
  if (device) device->WaitSent(loop_.Now() + std::chrono::milliseconds(100) + TimeOnTheLine(bytes));
}

std::string_view Link::WaitsFor() const {
  if (State.CommNetMode) return "the peer";
  if (HeldBy() == Hold::Xoff) return "XON";
  const auto device = OpenDevice();
  if (!device || !State.CommDCB.ctsFlow) return "the driver";
  const ModemStatus status = device->Modem();
  return status.error || (status.lines & cts) != 0 ? "the driver" : "CTS";
}

std::error_code Link::SetLowLatency(bool on) {
  const auto device = OpenDevice();
  return device ? device->SetLowLatency(on) : BadHandle();
}

std::int32_t Link::CommReadCD(std::uint16_t mask, bool& state) {
  std::uint16_t lines = 0;
  const std::int32_t status = CommReadLines(lines);
  if (status == 0) state = (lines & mask) != 0;
  return status;
}

std::int32_t Link::CommReadLines(std::uint16_t& lines) {
  const auto device = OpenDevice();
  const ModemStatus status = device ? device->Modem() : ModemStatus{0, BadHandle()};
  if (status.error) {
    State.NoModemLines = MeansNoModemLines(status.error);
    return CommSetError(sources::readModem, status.error);
  }
  lines = status.lines;
  return 0;
}

std::int32_t Link::CommSetLine(std::int16_t line, std::int16_t state) {
  const auto output = OutputLineFrom(line);
  const auto device = OpenDevice();
  std::error_code error;
  if (!device) {
    error = BadHandle();
  } else if (!output) {
    error = std::make_error_code(std::errc::invalid_argument);
  } else {
    error = device->SetLine(*output, state != 0);
  }
  if (error) return CommSetError(sources::setLine, error);
  linesSet_[*output] = state != 0;
  return 0;
}

void Link::KeepLine(OutputLine line, bool asserted) {
  const auto set = linesSet_.find(line);
  const bool driverMovesIt = line == OutputLine::Rts && State.CommDCB.rtsToggle;
  if (set != linesSet_.end() && set->second == asserted && !driverMovesIt) return;
  CommSetLine(static_cast<std::int16_t>(line), asserted ? 1 : 0);
}

std::string Link::ReceiveChar() {
  std::string text;
  if (State.CommHandle <= 0 || CommRead(text, receiveSize) == 0) return {};
  Hooks.received(text);
  if (Scripting()) LetScriptSeeEach(text);
  return text;
}

void Link::LetScriptSeeEach(std::string& text) {
  std::string seen;
  for (const char character : text) {
    std::string one(1, character);
    Hooks.receiveChar(one);
    seen += one;
  }
  text = std::move(seen);
}

std::int32_t Link::SendString(std::string& text) {
  if (State.CommHandle < 1) return 0;
  if (finishing_) return -1;
  const WhenSent whenSent = [this](const SendOutcome& outcome) { Hooks.sentString(outcome); };
  if (sending_) {
    Queue(text, whenSent);
    return 0;
  }
  Sending sending = Transmit(text, Scripting());
  text = sending.outcome.text;
  whenSent(sending.outcome);
  TransmitQueued();
  return sending.status;
}

void Link::Send(std::string text, WhenSent whenSent) {
  if (State.CommHandle < 1) {
    whenSent({std::move(text), 0, SendEnd::Failed, CommErrorText(BadHandle().value())});
  } else if (finishing_) {
    whenSent({std::move(text), 0, SendEnd::Cancelled, {}});
  } else if (sending_) {
    Queue(std::move(text), std::move(whenSent));
  } else {
    whenSent(Transmit(std::move(text), Scripting()).outcome);
    TransmitQueued();
  }
}

Link::Sending Link::Transmit(std::string text, bool scripted) {
  const ScopeFlag sending(sending_);
  calledOff_ = false;
  if (scripted) Hooks.sendString(text);
  Writing writing{text.size(), openings_};
  const std::int32_t status =
      controls_.chkTerminal.Checked() ? WriteEach(text, writing) : Write(text, writing);
  if (network_.Unsent() == 0) progress_.End();
  State.LastSendTime = Midnight();
  Hooks.transmitted();
  SendOutcome outcome{std::move(text), writing.taken};
  if (writing.cancelled && givenUp_ && writing.taken > 0) {
    outcome.end = SendEnd::Failed;
    outcome.reason = "cut short by the end of the program";
  } else if (writing.cancelled) {
    outcome.end = SendEnd::Cancelled;
  } else if (writing.error) {
    outcome.end = SendEnd::Failed;
    outcome.reason = CommErrorText(writing.error.value());
    if (HeldBy() != Hold::None) outcome.reason += fmt::format("; {}", InWords(HeldBy()));
  }
  return {status, std::move(outcome)};
}

// Each character is a write of its own. What is left is not for a port that was opened meanwhile.
std::int32_t Link::WriteEach(std::string_view text, Writing& writing) {
  std::int32_t status = 0;
  for (const char& character : text) {
    if (writing.opening != openings_) return status | Cancel(writing);
    status |= Write({&character, 1}, writing);
    if (writing.error || writing.cancelled) break;
  }
  return status;
}

void Link::Queue(std::string text, WhenSent whenSent) {
  if (queuedBytes_ + text.size() > queuedTextLimit) {
    const std::error_code error = std::make_error_code(std::errc::no_buffer_space);
    CommSetErrorFlags(sources::write, error);
    whenSent({std::move(text), 0, SendEnd::Failed, CommErrorText(error.value())});
    return;
  }
  queuedBytes_ += text.size();
  queued_.push_back({std::move(text), std::move(whenSent), Scripting(), openings_});
}

void Link::TransmitQueued() {
  while (!queued_.empty()) {
    Queued next = std::move(queued_.front());
    queued_.pop_front();
    queuedBytes_ -= next.text.size();
    if (next.opening == openings_) {
      next.whenSent(Transmit(std::move(next.text), next.scripted && Scripting()).outcome);
    } else {
      next.whenSent({std::move(next.text), 0, SendEnd::Cancelled, {}});
    }
  }
  TellFree();
}

void Link::NetworkQueueChanged(std::size_t taken, std::size_t total) {
  if (taken < total) return progress_.Tell(taken, total);
  progress_.End();
  if (stream_) streamAlarm_.At(loop_.Now());
  TellFree();
}

void Link::TellFree() {
  if (!Busy()) Hooks.free();
}

std::string Link::CommErrorText(std::int32_t code) {
  return std::string(TrimBlanks(SystemError(code).message()));
}

void Link::Record(std::string_view source, std::error_code error) {
  State.CommLastError = error.value();
  State.CommLastErrorSource = source;
  State.CommLastErrorText = CommErrorText(error.value());
}

std::int32_t Link::CommSetError(std::string_view source, std::error_code error) {
  Record(source, error);
  const bool modemLine = source == sources::readModem || source == sources::setLine;
  if (!modemLine) OnError();
  return State.CommLastError;
}

std::int32_t Link::CommSetErrorFlags(std::string_view source, std::error_code error) {
  Record(source, error);
  const auto device = OpenDevice();
  const std::uint32_t flags = device ? device->TakeErrorFlags() : 0;
  State.CommLastErrorText += fmt::format("{}{:X}", errorFlagsText, flags);
  OnError();
  if (device && MeansDeviceGone(error) && !std::exchange(State.DeviceGone, true) && OnArrival) OnArrival();
  return State.CommLastError;
}

}  // namespace quarlin
