// SPDX-License-Identifier: GPL-3.0-or-later
#include "connect/port_list.h"

#include <sys/stat.h>

#include <algorithm>
#include <string_view>
#include <system_error>
#include <utility>

#include "base/files.h"
#include "base/numbers.h"
#include "base/text.h"

namespace quarlin {
namespace {

namespace fs = std::filesystem;

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// "ttyS4"; not "ttySC0" or "ttySAC1", which other chips call theirs.
bool IsNumberedMachinePort(std::string_view name) {
  constexpr std::string_view stem = "ttyS";
  if (!name.starts_with(stem) || name.size() == stem.size()) return false;
  return std::all_of(name.begin() + stem.size(), name.end(), IsDigit);
}

// The first line of an attribute as a byte string; empty when the device does not tell it.
std::string Attribute(const fs::path& file) {
  const std::vector<std::string> lines = SplitLines(BytesFromFileText(ReadWholeFile(file).value_or("")));
  return lines.empty() ? std::string() : std::string(TrimBlanks(lines.front()));
}

// The USB device that `device` is a part of; empty for others.
fs::path UsbAncestor(fs::path device, const fs::path& sysfsRoot) {
  std::error_code missing;
  while (device != sysfsRoot && device.has_relative_path()) {
    if (fs::exists(device / "idVendor", missing)) return device;
    device = device.parent_path();
  }
  return {};
}

std::string Description(const fs::path& usb) {
  std::string text;
  for (const char* name : {"manufacturer", "product", "serial"}) {
    const std::string value = Attribute(usb / name);
    if (!text.empty() && !value.empty()) text += ' ';
    text += value;
  }
  return text;
}

std::string AdapterName(const fs::path& usb) {
  const std::string vendor = Attribute(usb / "idVendor");
  const std::string product = Attribute(usb / "idProduct");
  const std::string serial = Attribute(usb / "serial");
  if (vendor.empty() || product.empty()) return {};
  return vendor + ":" + product + (serial.empty() ? "" : ":") + serial;
}

FoundPort Describe(std::string name, const fs::path& device, const fs::path& sysfsRoot) {
  const fs::path usb = UsbAncestor(device, sysfsRoot);
  if (usb.empty()) return {std::move(name), ""};
  return {std::move(name), Description(usb), AdapterName(usb)};
}

// The digits that `text` begins with, without leading zeros; they are taken off it.
std::string_view TakeNumber(std::string_view& text) {
  const auto length =
      static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), IsDigit) - text.begin());
  std::string_view digits = text.substr(0, length);
  text.remove_prefix(length);
  digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
  return digits;
}

bool NaturallyBefore(std::string_view left, std::string_view right) {
  while (!left.empty() && !right.empty()) {
    if (IsDigit(left.front()) && IsDigit(right.front())) {
      const std::string_view a = TakeNumber(left);
      const std::string_view b = TakeNumber(right);
      if (a.size() != b.size()) return a.size() < b.size();
      if (a != b) return a < b;
    } else {
      if (left.front() != right.front()) return left.front() < right.front();
      left.remove_prefix(1);
      right.remove_prefix(1);
    }
  }
  return left.size() < right.size();
}

}  // namespace

std::vector<FoundPort> ListSystemPorts(const fs::path& sysfsRoot) {
  std::vector<FoundPort> ports;
  std::error_code error;
  const fs::path root = fs::canonical(sysfsRoot, error);
  fs::directory_iterator terminal(root / "class" / "tty", error);
  for (; !error && terminal != fs::directory_iterator(); terminal.increment(error)) {
    const std::string name = terminal->path().filename().string();
    std::error_code missing;
    const fs::path device = fs::canonical(terminal->path() / "device", missing);
    if (missing || IsNumberedMachinePort(name)) continue;
    ports.push_back(Describe(name, device, root));
  }
  std::sort(ports.begin(), ports.end(),
            [](const FoundPort& a, const FoundPort& b) { return NaturallyBefore(a.name, b.name); });
  return ports;
}

std::optional<int> AdapterDelay(const fs::path& device, const fs::path& sysfsRoot) {
  std::error_code missing;
  const fs::path name = fs::canonical(device, missing).filename();
  const std::string text = Attribute(sysfsRoot / "class" / "tty" / name / "device" / "latency_timer");
  const int milliseconds = IntegerOf(text);
  return milliseconds > 0 ? std::optional(milliseconds) : std::nullopt;
}

bool IsSameDevice(const std::filesystem::path& left, const std::filesystem::path& right) {
  struct stat one {};
  struct stat other {};
  if (stat(left.c_str(), &one) != 0 || stat(right.c_str(), &other) != 0) return false;
  return S_ISCHR(one.st_mode) && S_ISCHR(other.st_mode) && one.st_rdev == other.st_rdev;
}

std::string StablePath(const std::filesystem::path& device, const std::filesystem::path& linksFolder) {
  std::error_code error;
  for (const auto& link : std::filesystem::directory_iterator(linksFolder, error)) {
    if (IsSameDevice(link.path(), device)) return link.path().string();
  }
  return {};
}

}  // namespace quarlin
