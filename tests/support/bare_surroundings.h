// SPDX-License-Identifier: GPL-3.0-or-later
// What a window stands on in a test that wants nothing of it.
#pragma once

#include "desktop/text_opener.h"
#include "link/device.h"

namespace quarlin {

class NoDevices : public DeviceSource {
 public:
  OpenedDevice Open(const std::string&, std::function<void()>) override {
    return {nullptr, std::make_error_code(std::errc::no_such_device)};
  }
};

// Says that the file is open.
class SilentTextOpener : public TextOpener {
 public:
  bool OpenText(const std::filesystem::path&) override { return true; }
};

}  // namespace quarlin
