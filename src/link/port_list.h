// The serial ports that the system lists.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace quarlin {

struct FoundPort {
  std::string name;         // as it stands below /dev: "ttyUSB0"
  std::string description;  // of a USB device its maker, product and serial number, as far as it tells them

  bool operator==(const FoundPort&) const = default;
};

// Every terminal with a device behind it, in natural order ("ttyUSB2" before "ttyUSB10"); none when the
// folder cannot be read. Left out are virtual terminals, which have no device, and the machine's own
// numbered ports ("ttyS0"): the system lists those without anything behind them too, so they are found
// by trying.
std::vector<FoundPort> ListSystemPorts(const std::filesystem::path& sysfsRoot = "/sys");

}  // namespace quarlin
