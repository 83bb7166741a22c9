// SPDX-License-Identifier: GPL-3.0-or-later
// The serial ports that the system lists.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace quarlin {

struct FoundPort {
  std::string name;         // as it stands below /dev: "ttyUSB0"
  std::string description;  // of a USB device its maker, product and serial number, as far as it tells them

  std::string adapter{};  // of a USB device its name for udev rules: "0403:6001:A50285BI"

  bool operator==(const FoundPort&) const = default;
};

// Every terminal with a device behind it, in natural order ("ttyUSB2" before "ttyUSB10"); none when the
// folder cannot be read. Left out are virtual terminals, which have no device, and the machine's own
// numbered ports ("ttyS0"): the system lists those without anything behind them too, so they are found
// by trying.
std::vector<FoundPort> ListSystemPorts(const std::filesystem::path& sysfsRoot = "/sys");

// How long, in milliseconds, the adapter behind a device file keeps what it received before it hands it on;
// nothing for one that does not, or does not tell.
std::optional<int> AdapterDelay(const std::filesystem::path& device,
                                const std::filesystem::path& sysfsRoot = "/sys");

// Whether both names lead to one device of the system: the same number behind two device files.
bool IsSameDevice(const std::filesystem::path& left, const std::filesystem::path& right);

// The name under which the device stays the same when its number changes, from the links that the system
// makes by maker, product and serial number; empty when it has none.
std::string StablePath(const std::filesystem::path& device,
                       const std::filesystem::path& linksFolder = "/dev/serial/by-id");

}  // namespace quarlin
