// SPDX-License-Identifier: GPL-3.0-or-later
// The serial device as the link needs it: one open port of the operating system, or a scripted one in
// tests. Every operation reports its failure as the platform's error code and shows nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "base/clock.h"
#include "link/line_errors.h"
#include "link/serial_settings.h"

namespace quarlin {

// What became of a read or a write. Zero bytes without an error mean: nothing there, or no room, now.
struct Transfer {
  std::size_t bytes = 0;
  std::error_code error;
};

enum class OutputLine : std::int16_t { Break = 1, Dtr = 2, Rts = 3 };

// The modem input lines, with the bits by which they are asked for.
enum ModemLine : std::uint16_t { cts = 0x10, dsr = 0x20, ring = 0x40, rlsd = 0x80 };

struct ModemStatus {
  std::uint16_t lines = 0;  // ModemLine bits
  std::error_code error;
};

struct CurrentSettings {
  SerialSettings settings;
  std::error_code error;
};

struct QueueStatus {
  std::size_t cbInQue = 0;  // bytes that can be read at once
  std::error_code error;    // also that the device has gone, reported when its last bytes were taken
};

class Device {
 public:
  virtual ~Device() = default;

  // Readies the queues of the driver. They are hints; the device's own input queue holds 64 KiB.
  virtual std::error_code SetupQueues(std::size_t input, std::size_t output) = 0;

  // Throws away what was received and not read, and what was written and not sent.
  virtual std::error_code Purge() = 0;

  // Has reads return at once with what is there. Writes are timed by the link.
  virtual std::error_code SetTimeouts() = 0;

  virtual CurrentSettings Settings() = 0;

  // Fails when the driver does not take the rate or the format; never sets another rate instead.
  virtual std::error_code Apply(const SerialSettings& settings) = 0;

  // How much has been received and not read. Asks the driver for more only when nothing is queued.
  virtual QueueStatus Queue() = 0;

  // Takes up to `size` received bytes from the queue; never waits.
  virtual Transfer Read(char* buffer, std::size_t size) = 0;

  // Hands over as much as the driver takes at once; never waits.
  virtual Transfer Write(std::string_view bytes) = 0;

  // Whether the driver takes bytes now.
  virtual bool Writable() const = 0;

  // Yields until the driver can take bytes again, the device is closed or fails, `givenUp` says so, or the
  // instant has passed; false in the last case.
  virtual bool WaitWritable(Instant deadline, const std::function<bool()>& givenUp) = 0;

  // From now on `room` is called from the event loop whenever the driver can take bytes, at once where it can
  // already, until it is replaced by an empty one or the device is closed. Not called during WaitWritable.
  virtual void CallWhileWritable(std::function<void()> room) = 0;

  // Yields until the last byte has left the line, or the instant has passed.
  virtual void WaitSent(Instant deadline) = 0;

  // The bytes that were written and still wait in the driver; 0 where it does not tell.
  virtual std::size_t Unsent() const = 0;

  virtual ModemStatus Modem() = 0;
  virtual std::error_code SetLine(OutputLine line, bool asserted) = 0;

  // Switches the low-latency mode of the adapter on, or back to what it was at the opening; so does Close.
  // "Not supported" where the driver has no such mode.
  virtual std::error_code SetLowLatency(bool on) = 0;

  // What the driver has counted since the port was opened; nothing where it does not count.
  virtual std::optional<LineErrors> Errors() = 0;

  // The line errors counted by the driver since the last call, as the bits that ClearCommError gives:
  // 1 queue overflow, 2 overrun, 4 parity, 8 framing, 16 break. 0 where the driver does not count.
  virtual std::uint32_t TakeErrorFlags() = 0;

  // Gives the port back. A wait in progress ends. Nothing else may be called afterwards.
  virtual std::error_code Close() = 0;
};

struct OpenedDevice {
  std::unique_ptr<Device> device;  // empty on failure
  std::error_code error;
};

// Where devices come from. `arrived` is called whenever bytes have come in or the device has gone, from
// the event loop and also during a yield; it must only wake somebody.
class DeviceSource {
 public:
  virtual ~DeviceSource() = default;
  virtual OpenedDevice Open(const std::string& portName, std::function<void()> arrived) = 0;
};

}  // namespace quarlin
