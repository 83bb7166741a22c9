#include "instrument/pty_port.h"

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <utility>

namespace quarlin::instrument {

namespace {

std::error_code LastError() {
  return {errno, std::generic_category()};
}

Moved Result(ssize_t bytes) {
  if (bytes >= 0) return {static_cast<std::size_t>(bytes), {}};
  if (errno == EAGAIN || errno == EINTR) return {};
  return {0, LastError()};
}

void Require(bool worked, const char* what) {
  if (!worked) throw std::system_error(LastError(), what);
}

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
  Require(clients_.Get() >= 0, clientPath_.c_str());
  MakeRaw(clients_.Get());
}

Moved PtyPort::Read(std::span<char> buffer) const {
  return Result(read(ours_.Get(), buffer.data(), buffer.size()));
}

Moved PtyPort::Write(std::string_view bytes) const {
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
