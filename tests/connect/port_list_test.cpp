// SPDX-License-Identifier: GPL-3.0-or-later
#include "connect/port_list.h"

#include <gtest/gtest.h>

#include "base/files.h"
#include "support/temp_folder.h"

namespace quarlin {

void PrintTo(const FoundPort& port, std::ostream* out) {
  *out << port.name << " (" << port.description << ")";
}

namespace {

namespace fs = std::filesystem;

// A made-up system, with links as the real one has them: /sys/class/tty/NAME leads to the terminal below
// its device, and its "device" back up to that.
class PortList : public testing::Test {
 protected:
  PortList() { fs::create_directories(root_ / "class/tty"); }

  void AddPort(const std::string& name, const std::string& device) {
    const fs::path terminal = root_ / "devices" / device / "tty" / name;
    fs::create_directories(terminal);
    fs::create_directory_symlink("../..", terminal / "device");
    fs::create_directory_symlink(terminal, root_ / "class/tty" / name);
  }

  void AddVirtualTerminal(const std::string& name) { fs::create_directories(root_ / "class/tty" / name); }

  void AddAttribute(const std::string& device, const std::string& name, const std::string& value) {
    fs::create_directories(root_ / "devices" / device);
    ASSERT_FALSE(WriteWholeFile(root_ / "devices" / device / name, value));
  }

  void AddUsbDevice(const std::string& device, const std::string& maker, const std::string& product,
                    const std::string& serial) {
    AddAttribute(device, "idVendor", "1a2b\n");
    if (!maker.empty()) AddAttribute(device, "manufacturer", maker + "\n");
    if (!product.empty()) AddAttribute(device, "product", product + "\n");
    if (!serial.empty()) AddAttribute(device, "serial", serial + "\n");
  }

  TempFolder folder_;
  fs::path root_ = folder_.Path();
};

using Ports = std::vector<FoundPort>;

TEST_F(PortList, OnlyTerminalsWithADeviceAreListedInNaturalOrder) {
  for (const std::string name : {"tty", "tty0", "tty12", "ptmx", "console"}) AddVirtualTerminal(name);
  for (const std::string name :
       {"ttyUSB10", "ttyS0", "ttyUSB2", "ttyS12", "ttyACM0", "ttyUSB1", "ttySC0", "ttyAMA0"}) {
    AddPort(name, "platform/" + name + ".device");
  }
  EXPECT_EQ(ListSystemPorts(root_), (Ports{{"ttyACM0", ""},
                                           {"ttyAMA0", ""},
                                           {"ttySC0", ""},
                                           {"ttyUSB1", ""},
                                           {"ttyUSB2", ""},
                                           {"ttyUSB10", ""}}));
}

TEST_F(PortList, AUsbPortIsDescribedByItsOwnDeviceNotByTheHub) {
  AddUsbDevice("usb1", "Hub maker", "Hub", "0000");
  AddUsbDevice("usb1/1-1", " W\xC3\xA4gen & Co ", "Two ports", "A1B2");
  AddUsbDevice("usb1/1-2", "", "Nameless", "");
  AddAttribute("usb1/1-1", "idProduct", "3c4d\n");
  AddAttribute("usb1/1-3", "idProduct", "5e6f\n");
  AddUsbDevice("usb1/1-3", "", "", "");
  AddAttribute("pci0", "serial", "no business of ours");
  AddPort("ttyUSB0", "usb1/1-1/1-1:1.0/ttyUSB0");
  AddPort("ttyUSB1", "usb1/1-2/1-2:1.0/ttyUSB1");
  AddPort("ttyACM0", "usb1/1-3/1-3:1.0");
  AddPort("ttyX0", "pci0/port");
  EXPECT_EQ(ListSystemPorts(root_), (Ports{{"ttyACM0", "", "1a2b:5e6f"},
                                           {"ttyUSB0", "W\xE4gen & Co Two ports A1B2", "1a2b:3c4d:A1B2"},
                                           {"ttyUSB1", "Nameless"},
                                           {"ttyX0", ""}}));
}

TEST_F(PortList, TheDelayOfAnAdapterIsFoundUnderEveryNameOfItsPort) {
  AddPort("ttyUSB0", "usb1/1-1/ttyUSB0");
  AddAttribute("usb1/1-1/ttyUSB0", "latency_timer", "16\n");
  AddPort("ttyACM0", "usb1/1-2");
  fs::create_directories(root_ / "dev");
  for (const char* name : {"ttyUSB0", "ttyACM0"}) WriteWholeFile(root_ / "dev" / name, "");
  fs::create_symlink("ttyUSB0", root_ / "dev/scale");
  EXPECT_EQ(AdapterDelay(root_ / "dev/ttyUSB0", root_), 16);
  EXPECT_EQ(AdapterDelay(root_ / "dev/scale", root_), 16);
  EXPECT_EQ(AdapterDelay(root_ / "dev/ttyACM0", root_), std::nullopt);
  EXPECT_EQ(AdapterDelay(root_ / "dev/missing", root_), std::nullopt);
}

TEST_F(PortList, ASystemThatCannotBeReadHasNoPorts) {
  EXPECT_EQ(ListSystemPorts(root_ / "missing"), Ports{});
  fs::create_directory_symlink("nowhere", root_ / "class/tty/ttyUSB0");  // unplugged a moment ago
  EXPECT_EQ(ListSystemPorts(root_), Ports{});
}

}  // namespace
}  // namespace quarlin
