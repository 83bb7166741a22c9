// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/posix_device.h"

#include <fcntl.h>
#include <linux/serial.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <optional>
#include <utility>

#include "base/system_call.h"
#include "base/text.h"
#include "link/input_queue.h"
#include "link/termios2.h"

namespace quarlin {
namespace {

using std::chrono::milliseconds;

template <typename... Argument>
std::error_code Control(int descriptor, unsigned long request, Argument... argument) {
  if (Uninterrupted([&] { return ioctl(descriptor, request, argument...); }) < 0) return LastError();
  return {};
}

bool IsPseudoTerminal(int descriptor) {
  struct stat status {};
  if (fstat(descriptor, &status) < 0) return false;
  return major(status.st_rdev) >= 136 && major(status.st_rdev) <= 143;
}

struct ErrorCount {
  int serial_icounter_struct::*count;
  std::uint32_t flag;
};

constexpr std::array<ErrorCount, 5> errorCounts{{{&serial_icounter_struct::buf_overrun, 1},
                                                 {&serial_icounter_struct::overrun, 2},
                                                 {&serial_icounter_struct::parity, 4},
                                                 {&serial_icounter_struct::frame, 8},
                                                 {&serial_icounter_struct::brk, 16}}};

// Nothing where the driver does not count.
std::optional<serial_icounter_struct> CountedErrors(int descriptor) {
  serial_icounter_struct counts{};
  if (Control(descriptor, TIOCGICOUNT, &counts)) return std::nullopt;
  return counts;
}

constexpr int lowLatency = static_cast<int>(ASYNC_LOW_LATENCY);

// Nothing where the driver knows no such mode.
std::optional<bool> IsLowLatency(int descriptor) {
  serial_struct port{};
  if (Control(descriptor, TIOCGSERIAL, &port)) return std::nullopt;
  return (port.flags & lowLatency) != 0;
}

// A driver that does not know the mode may report success.
std::error_code SwitchLowLatency(int descriptor, bool on) {
  serial_struct port{};
  if (const std::error_code error = Control(descriptor, TIOCGSERIAL, &port)) return error;
  port.flags = on ? port.flags | lowLatency : port.flags & ~lowLatency;
  return Control(descriptor, TIOCSSERIAL, &port);
}

class PosixDevice final : public Device {
 public:
  PosixDevice(EventLoop& loop, int descriptor, std::function<void()> arrived);
  ~PosixDevice() override;

  std::error_code SetupQueues(std::size_t, std::size_t) override { return {}; }
  std::error_code Purge() override;
  std::error_code SetTimeouts() override { return {}; }  // a raw, non-blocking line never waits
  CurrentSettings Settings() override { return ReadSettings(descriptor_); }
  std::error_code Apply(const SerialSettings& settings) override;
  QueueStatus Queue() override;
  Transfer Read(char* buffer, std::size_t size) override;
  Transfer Write(std::string_view bytes) override;
  bool Writable() const override;
  bool WaitWritable(Instant deadline, const std::function<bool()>& givenUp) override;
  void CallWhileWritable(std::function<void()> room) override;
  void WaitSent(Instant deadline) override;
  std::size_t Unsent() const override;
  ModemStatus Modem() override;
  std::error_code SetLine(OutputLine line, bool asserted) override;
  std::error_code SetLowLatency(bool on) override;
  std::optional<LineErrors> Errors() override;
  std::uint32_t TakeErrorFlags() override;
  std::error_code Close() override;

 private:
  bool Closed() const { return descriptor_ < 0; }
  bool Over() const { return Closed() || lost_; }
  void Fill();
  void WatchWhileThereIsRoom();
  void WatchForRoom();
  std::error_code Verify(const SerialSettings& wanted);
  bool AllSent() const;
  bool OutputMayBeHeld() const { return writableWatch_ || room_ || flowControl_; }

  EventLoop& loop_;
  int descriptor_;  // -1 once closed
  std::function<void()> arrived_;
  bool pseudoTerminal_;
  InputQueue queue_;
  std::error_code lost_;  // why the line cannot be read any more
  std::unique_ptr<Watch> readableWatch_;
  bool watching_ = true;
  std::unique_ptr<Watch> writableWatch_;  // during WaitWritable
  std::function<void()> room_;            // whom CallWhileWritable calls
  std::unique_ptr<Watch> roomWatch_;      // for it; a descriptor can be watched once only
  bool flowControl_ = false;
  bool madeLowLatency_ = false;  // which it was not before
  Duration characterTime_{};
  Instant lineFree_{};  // when what was written can have left the line at the earliest
  std::optional<serial_icounter_struct> counts_;        // when the flags were last taken
  const std::optional<serial_icounter_struct> before_;  // the opening
};

constexpr ssize_t wholeRead = 2048;

PosixDevice::PosixDevice(EventLoop& loop, int descriptor, std::function<void()> arrived)
    : loop_(loop),
      descriptor_(descriptor),
      arrived_(std::move(arrived)),
      pseudoTerminal_(IsPseudoTerminal(descriptor)),
      counts_(CountedErrors(descriptor)),
      before_(counts_) {
  readableWatch_ = loop.WatchReadable(descriptor, [this] {
    Fill();
    arrived_();
  });
}

PosixDevice::~PosixDevice() {
  Close();
}

// Takes over what the driver holds, as far as there is room. A terminal hands out all that it has, up to
// its buffer of 4 KiB, so a shorter read was the last one: to ask again would cost as much as the read. Any
// failure but an empty line is the end of the line: a descriptor that has hung up stays readable for ever, so
// it must not be watched any more.
void PosixDevice::Fill() {
  while (!lost_ && !queue_.Full()) {
    const std::span<char> room = queue_.Room();
    const ssize_t count = Uninterrupted([&] { return read(descriptor_, room.data(), room.size()); });
    if (count < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) break;
    if (count > 0) {
      queue_.Grew(static_cast<std::size_t>(count));
      if (count < wholeRead) break;
    } else {
      lost_ = count < 0 ? LastError() : SystemError(EIO);
    }
  }
  WatchWhileThereIsRoom();
}

void PosixDevice::WatchWhileThereIsRoom() {
  const bool wanted = !lost_ && !queue_.Full();
  if (!readableWatch_ || wanted == watching_) return;
  watching_ = wanted;
  readableWatch_->SetEnabled(wanted);
}

QueueStatus PosixDevice::Queue() {
  if (queue_.Size() == 0) Fill();
  if (queue_.Size() > 0) return {queue_.Size(), {}};
  return {0, lost_};
}

Transfer PosixDevice::Read(char* buffer, std::size_t size) {
  if (queue_.Size() == 0) Fill();
  if (queue_.Size() == 0) return {0, lost_};
  const std::size_t count = queue_.Take(buffer, size);
  WatchWhileThereIsRoom();
  return {count, {}};
}

std::error_code PosixDevice::Purge() {
  queue_.Clear();
  WatchWhileThereIsRoom();
  lineFree_ = loop_.Now();
  if (tcflush(descriptor_, TCIOFLUSH) < 0) return LastError();
  return {};
}

std::error_code PosixDevice::Apply(const SerialSettings& settings) {
  const CurrentSettings before = Settings();
  if (before.error) return before.error;
  if (const std::error_code error = WriteSettings(descriptor_, settings)) return error;
  if (const std::error_code error = Verify(settings)) {
    WriteSettings(descriptor_, before.settings);
    return error;
  }
  flowControl_ = settings.ctsFlow || settings.xonXoff;
  characterTime_ = pseudoTerminal_ ? Duration::zero() : CharacterTime(settings);
  std::error_code error;
  if (settings.dtr) error = SetLine(OutputLine::Dtr, *settings.dtr);
  if (settings.rts && !error) error = SetLine(OutputLine::Rts, *settings.rts);
  return error;
}

// A driver that cannot do what it was told sets something near it and reports success.
std::error_code PosixDevice::Verify(const SerialSettings& wanted) {
  CurrentSettings taken = Settings();
  if (taken.error) return taken.error;
  if (pseudoTerminal_) {  // it has no line and says 8 bits without parity whatever was set
    taken.settings.parity = wanted.parity;
    taken.settings.dataBits = wanted.dataBits;
    taken.settings.stopBits = wanted.stopBits;
  }
  if (!RunsAs(taken.settings, wanted)) return std::make_error_code(std::errc::invalid_argument);
  return {};
}

Transfer PosixDevice::Write(std::string_view bytes) {
  if (bytes.empty()) return {};
  const ssize_t count = Uninterrupted([&] { return write(descriptor_, bytes.data(), bytes.size()); });
  if (count < 0) {
    if (errno == EAGAIN || errno == EWOULDBLOCK) return {};
    return {0, LastError()};
  }
  lineFree_ = std::max(lineFree_, loop_.Now()) + count * characterTime_;
  return {static_cast<std::size_t>(count), {}};
}

bool PosixDevice::Writable() const {
  pollfd room{descriptor_, POLLOUT, 0};
  return Uninterrupted([&] { return poll(&room, 1, 0); }) > 0;
}

bool PosixDevice::WaitWritable(Instant deadline, const std::function<bool()>& givenUp) {
  if (Over()) return true;
  bool writable = false;
  roomWatch_.reset();
  writableWatch_ = loop_.WatchWritable(descriptor_, [&] { writable = true; });
  const bool ended = loop_.WaitUntil([&] { return writable || Over() || givenUp(); }, deadline);
  writableWatch_.reset();
  WatchForRoom();
  return ended;
}

void PosixDevice::CallWhileWritable(std::function<void()> room) {
  room_ = std::move(room);
  roomWatch_.reset();
  WatchForRoom();
}

void PosixDevice::WatchForRoom() {
  if (room_ && !writableWatch_ && !Closed()) roomWatch_ = loop_.WatchWritable(descriptor_, room_);
}

void PosixDevice::WaitSent(Instant deadline) {
  while (!AllSent() && loop_.Now() < deadline) {
    loop_.WaitUntil([this] { return Over(); }, std::min(deadline, loop_.Now() + milliseconds(1)));
  }
}

// Asks the driver's queue, then the chip. Not every driver knows the state of its chip (USB adapters have
// it at the far end of the cable), so the time that the line needs for the bytes must have passed, too.
bool PosixDevice::AllSent() const {
  if (Over()) return true;
  if (loop_.Now() < lineFree_) return false;
  if (Unsent() > 0) return false;
  int state = 0;
  return Control(descriptor_, TIOCSERGETLSR, &state) || (state & TIOCSER_TEMT) != 0;
}

std::size_t PosixDevice::Unsent() const {
  int pending = 0;
  if (Over() || Control(descriptor_, TIOCOUTQ, &pending)) return 0;
  return static_cast<std::size_t>(std::max(pending, 0));
}

ModemStatus PosixDevice::Modem() {
  struct Line {
    int bit;
    ModemLine line;
  };
  static constexpr std::array<Line, 4> lines{
      {{TIOCM_CTS, cts}, {TIOCM_DSR, dsr}, {TIOCM_RNG, ring}, {TIOCM_CAR, rlsd}}};

  int state = 0;
  if (const std::error_code error = Control(descriptor_, TIOCMGET, &state)) return {0, error};
  ModemStatus status;
  for (const Line& row : lines) {
    if ((state & row.bit) != 0) status.lines = static_cast<std::uint16_t>(status.lines | row.line);
  }
  return status;
}

std::error_code PosixDevice::SetLine(OutputLine line, bool asserted) {
  if (line == OutputLine::Break) return Control(descriptor_, asserted ? TIOCSBRK : TIOCCBRK);
  const int bit = line == OutputLine::Dtr ? TIOCM_DTR : TIOCM_RTS;
  return Control(descriptor_, asserted ? TIOCMBIS : TIOCMBIC, &bit);
}

// A mode that somebody else has switched on is none of ours to switch off.
std::error_code PosixDevice::SetLowLatency(bool on) {
  if (!on && !madeLowLatency_) return {};
  const std::optional<bool> before = IsLowLatency(descriptor_);
  if (before == on) return {};
  if (!before || SwitchLowLatency(descriptor_, on) || IsLowLatency(descriptor_) != on) {
    return std::make_error_code(std::errc::not_supported);
  }
  madeLowLatency_ = on;
  return {};
}

std::optional<LineErrors> PosixDevice::Errors() {
  if (Closed() || !before_) return std::nullopt;
  const std::optional<serial_icounter_struct> now = CountedErrors(descriptor_);
  if (!now) return std::nullopt;
  // The driver's counts are signed and may wrap.
  const auto since = [&](int serial_icounter_struct::*count) {
    return std::uint64_t{static_cast<unsigned>(*now.*count) - static_cast<unsigned>(*before_.*count)};
  };
  return LineErrors{since(&serial_icounter_struct::parity), since(&serial_icounter_struct::frame),
                    since(&serial_icounter_struct::overrun) + since(&serial_icounter_struct::buf_overrun),
                    since(&serial_icounter_struct::brk)};
}

std::uint32_t PosixDevice::TakeErrorFlags() {
  if (!counts_) return 0;
  const std::optional<serial_icounter_struct> now = CountedErrors(descriptor_);
  if (!now) return 0;
  std::uint32_t flags = 0;
  for (const ErrorCount& row : errorCounts) {
    if (*now.*row.count != *counts_.*row.count) flags |= row.flag;
  }
  counts_ = now;
  return flags;
}

// The watches end before the descriptor does: its number may be another file's at once. Output that the
// other side holds back is dropped, or the kernel would keep the program waiting for half a minute.
std::error_code PosixDevice::Close() {
  if (Closed()) return {};
  SetLowLatency(false);
  if (OutputMayBeHeld()) tcflush(descriptor_, TCOFLUSH);
  readableWatch_.reset();
  writableWatch_.reset();
  roomWatch_.reset();
  ioctl(descriptor_, TIOCNXCL);
  const int descriptor = std::exchange(descriptor_, -1);
  if (close(descriptor) < 0 && errno != EINTR) return LastError();
  return {};
}

// Makes an open file this program's own serial line. Nothing of the line is touched before it is known
// to be free.
std::error_code Claim(int descriptor) {
  if (isatty(descriptor) == 0) {
    return errno == EINVAL ? std::make_error_code(std::errc::inappropriate_io_control_operation)
                           : LastError();
  }
  if (Uninterrupted([&] { return flock(descriptor, LOCK_EX | LOCK_NB); }) < 0) {
    return errno == EWOULDBLOCK ? std::make_error_code(std::errc::device_or_resource_busy) : LastError();
  }
  if (const std::error_code error = MakeRaw(descriptor)) return error;
  return Control(descriptor, TIOCEXCL);
}

// The n of "COM"n.
std::optional<unsigned> MachinePort(std::string_view portName) {
  if (!EqualsIgnoringCase(portName.substr(0, 3), "COM")) return std::nullopt;
  const std::string_view digits = portName.substr(3);
  const char* const end = digits.data() + digits.size();
  unsigned number = 0;
  const auto [stop, error] = std::from_chars(digits.data(), end, number);
  if (error != std::errc() || stop != end || number == 0) return std::nullopt;
  return number;
}

}  // namespace

std::string DevicePath(std::string_view portName) {
  if (portName.starts_with('/')) return std::string(portName);
  if (const auto number = MachinePort(portName)) return "/dev/ttyS" + std::to_string(*number - 1);
  return "/dev/" + std::string(portName);
}

OpenedDevice PosixDeviceSource::Open(const std::string& portName, std::function<void()> arrived) {
  const std::string path = DevicePath(portName);
  const int descriptor =
      Uninterrupted([&] { return open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC); });
  if (descriptor < 0) return {nullptr, LastError()};
  if (const std::error_code error = Claim(descriptor)) {
    close(descriptor);
    return {nullptr, error};
  }
  return {std::make_unique<PosixDevice>(loop_, descriptor, std::move(arrived)), {}};
}

}  // namespace quarlin
