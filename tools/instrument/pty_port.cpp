// SPDX-License-Identifier: GPL-3.0-or-later
#include "instrument/pty_port.h"

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <utility>

#include "instrument/system_call.h"

namespace quarlin::instrument {

namespace {

void MakeRaw(int descriptor) {
  termios settings{};
  Require(tcgetattr(descriptor, &settings) == 0, "pseudo-terminal settings");
  cfmakeraw(&settings);
  Require(tcsetattr(descriptor, TCSANOW, &settings) == 0, "pseudo-terminal settings");
}

}  // namespace

PtyPort::PtyPort() : ours_(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {
  Require(ours_.Get() >= 0, "pseudo-terminal");
  Require(grantpt(ours_.Get()) == 0 && unlockpt(ours_.Get()) == 0, "pseudo-terminal");
  std::array<char, 128> path{};
  Require(ptsname_r(ours_.Get(), path.data(), path.size()) == 0, "pseudo-terminal name");
  clientPath_ = path.data();
  clients_ = FileHandle(open(clientPath_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
  Require(clients_.Get() >= 0, clientPath_);
  MakeRaw(clients_.Get());
}

// A read that does not fill the buffer has taken all there was.
Moved PtyPort::Read(std::span<char> buffer) {
  Moved moved = Result(read(ours_.Get(), buffer.data(), buffer.size()));
  moved.more = moved.bytes == buffer.size();
  return moved;
}

Moved PtyPort::Write(std::string_view bytes) {
  return Result(write(ours_.Get(), bytes.data(), bytes.size()));
}

// Polling moves bytes that are still under way between the two ends to where they are counted.
bool PtyPort::Unfetched() const {
  pollfd watch{clients_.Get(), POLLIN, 0};
  poll(&watch, 1, 0);
  int bytes = 0;
  return ioctl(clients_.Get(), FIONREAD, &bytes) == 0 && bytes > 0;
}

namespace fs = std::filesystem;

PortLink::PortLink(fs::path link, const fs::path& target) : link_(std::move(link)), target_(target) {
  std::error_code error;
  if (fs::is_symlink(link_, error)) {
    const bool stale =
        !fs::exists(link_, error) || fs::read_symlink(link_, error).parent_path() == target_.parent_path();
    if (stale) fs::remove(link_, error);
  }
  fs::create_symlink(target_, link_, error);
  if (error) throw std::system_error(error, link_.string());
}

PortLink::~PortLink() {
  std::error_code ignored;
  if (fs::read_symlink(link_, ignored) == target_) fs::remove(link_, ignored);
}

}  // namespace quarlin::instrument
