// SPDX-License-Identifier: GPL-3.0-or-later
// Serial ports of the operating system, as devices of the link.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "controls/event_loop.h"
#include "link/device.h"

namespace quarlin {

// The device file behind a port name: a name that begins with "/" is the path itself, "COM3" in any case
// is the third port of the machine, and every other name is taken below /dev.
std::string DevicePath(std::string_view portName);

// A port is opened for this program alone, in raw mode and without flow control. Open fails with EBUSY
// when somebody else has it and with ENOTTY when the file is no serial line. The loop must outlive the
// devices, and a device every wait of its own that is on the stack.
class PosixDeviceSource : public DeviceSource {
 public:
  explicit PosixDeviceSource(EventLoop& loop) : loop_(loop) {}
  OpenedDevice Open(const std::string& portName, std::function<void()> arrived) override;

 private:
  EventLoop& loop_;
};

}  // namespace quarlin
