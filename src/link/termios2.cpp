// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/termios2.h"

#include <asm/termbits.h>
#include <sys/ioctl.h>

#include <array>

#include "base/system_call.h"

namespace quarlin {
namespace {

constexpr std::array<tcflag_t, 4> dataBitFlags{CS5, CS6, CS7, CS8};

constexpr tcflag_t parityMask = PARENB | PARODD | CMSPAR;

tcflag_t ParityFlags(Parity parity) {
  switch (parity) {
    case Parity::None:
      return 0;
    case Parity::Even:
      return PARENB;
    case Parity::Odd:
      return PARENB | PARODD;
    case Parity::Mark:
      return PARENB | PARODD | CMSPAR;
    case Parity::Space:
      return PARENB | CMSPAR;
  }
  return 0;
}

Parity ParityOf(tcflag_t flags) {
  if ((flags & PARENB) == 0) return Parity::None;
  const bool odd = (flags & PARODD) != 0;
  if ((flags & CMSPAR) != 0) return odd ? Parity::Mark : Parity::Space;
  return odd ? Parity::Odd : Parity::Even;
}

int DataBitsOf(tcflag_t flags) {
  int bits = 5;
  for (const tcflag_t flag : dataBitFlags) {
    if ((flags & CSIZE) == flag) break;
    ++bits;
  }
  return bits;
}

// One flag stands for "more than one stop bit"; with five data bits the line makes it one and a half.
StopBits StopBitsOf(tcflag_t flags) {
  if ((flags & CSTOPB) == 0) return StopBits::One;
  return DataBitsOf(flags) == 5 ? StopBits::OneAndHalf : StopBits::Two;
}

// Flow control by DSR and DTR, and RTS alone without CTS, are nothing that a line here can do; neither
// are the stop bits that no chip makes of the given data bits.
bool CanBeSet(const SerialSettings& settings) {
  if (settings.dsrFlow || settings.dtrFlow) return false;
  if (settings.rtsToggle && !settings.ctsFlow) return false;
  const StopBits missing = settings.dataBits == 5 ? StopBits::Two : StopBits::OneAndHalf;
  return settings.stopBits != missing;
}

std::error_code Get(int descriptor, termios2& modes) {
  if (ioctl(descriptor, TCGETS2, &modes) < 0) return LastError();
  return {};
}

std::error_code Set(int descriptor, const termios2& modes) {
  if (ioctl(descriptor, TCSETS2, &modes) < 0) return LastError();
  return {};
}

void Switch(tcflag_t& flags, tcflag_t which, bool on) {
  flags = on ? flags | which : flags & ~which;
}

}  // namespace

std::error_code MakeRaw(int descriptor) {
  termios2 modes{};
  if (const std::error_code error = Get(descriptor, modes)) return error;
  modes.c_iflag = 0;
  modes.c_oflag = 0;
  modes.c_lflag = 0;
  modes.c_cflag = (modes.c_cflag & ~static_cast<tcflag_t>(CRTSCTS)) | CREAD | CLOCAL;
  modes.c_cc[VMIN] = 1;  // with 0 a read of an empty line gives 0, as at a hang-up
  modes.c_cc[VTIME] = 0;
  modes.c_cc[VSTART] = 0x11;
  modes.c_cc[VSTOP] = 0x13;
  return Set(descriptor, modes);
}

CurrentSettings ReadSettings(int descriptor) {
  termios2 modes{};
  if (const std::error_code error = Get(descriptor, modes)) return {{}, error};
  SerialSettings settings;
  settings.baud = modes.c_ospeed;
  settings.parity = ParityOf(modes.c_cflag);
  settings.dataBits = DataBitsOf(modes.c_cflag);
  settings.stopBits = StopBitsOf(modes.c_cflag);
  settings.xonXoff = (modes.c_iflag & IXON) != 0;
  settings.ctsFlow = (modes.c_cflag & CRTSCTS) != 0;
  settings.rtsToggle = settings.ctsFlow;
  return {settings, {}};
}

std::error_code WriteSettings(int descriptor, const SerialSettings& settings) {
  if (!CanBeSet(settings)) return std::make_error_code(std::errc::operation_not_supported);
  termios2 modes{};
  if (const std::error_code error = Get(descriptor, modes)) return error;
  modes.c_cflag &= ~(CSIZE | parityMask);
  modes.c_cflag |= dataBitFlags.at(static_cast<std::size_t>(settings.dataBits - 5));
  modes.c_cflag |= ParityFlags(settings.parity);
  Switch(modes.c_cflag, CSTOPB, settings.stopBits != StopBits::One);
  Switch(modes.c_cflag, CRTSCTS, settings.ctsFlow);
  Switch(modes.c_iflag, IXON | IXOFF, settings.xonXoff);

  // The input rate is left at "as the output's".
  constexpr tcflag_t inputRate = static_cast<tcflag_t>(CBAUD) << IBSHIFT;
  modes.c_cflag = (modes.c_cflag & ~(CBAUD | inputRate)) | BOTHER;
  modes.c_ospeed = settings.baud;
  modes.c_ispeed = settings.baud;
  return Set(descriptor, modes);
}

}  // namespace quarlin
