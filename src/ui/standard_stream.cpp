// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/standard_stream.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <limits.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>

#include "base/system_call.h"

namespace quarlin {
namespace {

constexpr std::size_t mostWaiting = std::size_t{4} << 20;

// Nothing for a stream that need not or cannot be opened again, as a socket.
FileHandle OpenedAgain(int descriptor) {
  struct stat status {};
  if (fstat(descriptor, &status) != 0) return FileHandle();
  if (!S_ISFIFO(status.st_mode) && isatty(descriptor) == 0) return FileHandle();
  const std::string name = fmt::format("/proc/self/fd/{}", descriptor);
  return FileHandle(open(name.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
}

// The codes below 32, 127 and, as UTF-8 has them, 128 to 159.
std::string WithoutCommands(std::string_view utf8) {
  std::string shown;
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    auto code = static_cast<unsigned char>(utf8[i]);
    const bool isPair = code == 0xC2 && i + 1 < utf8.size();
    if (isPair) code = static_cast<unsigned char>(utf8[i + 1]);
    const bool commands = isPair ? code < 0xA0 : (code < 0x20 && code != '\n') || code == 0x7F;
    if (commands) {
      shown += fmt::format("\\x{:02X}", code);
      i += isPair ? 1 : 0;
    } else {
      shown += utf8[i];
    }
  }
  return shown;
}

std::uint64_t LinesIn(std::string_view text) {
  const auto ends = static_cast<std::uint64_t>(std::count(text.begin(), text.end(), '\n'));
  return text.empty() || text.ends_with('\n') ? ends : ends + 1;
}

// In whole milliseconds, rounded up so that a wait is not one turn too short.
int MillisecondsOf(Duration duration) {
  return static_cast<int>(
      std::max<std::int64_t>(std::chrono::ceil<std::chrono::milliseconds>(duration).count(), 0));
}

}  // namespace

StandardStream::StandardStream(EventLoop& loop, int descriptor)
    : loop_(loop),
      own_(OpenedAgain(descriptor)),
      descriptor_(own_.Get() >= 0 ? own_.Get() : descriptor),
      isTerminal_(isatty(descriptor) != 0) {}

void StandardStream::Write(std::string_view utf8) {
  const std::string shown = isTerminal_ ? WithoutCommands(utf8) : std::string(utf8);
  std::string_view rest = shown;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find('\n'), rest.size() - 1) + 1;
    Add(rest.substr(0, end));
    rest.remove_prefix(end);
  }
  Pump();
}

void StandardStream::Add(std::string_view piece) {
  const auto isTooMuch = [&] { return Waiting() + piece.size() >= mostWaiting; };
  if (isTooMuch()) Pump();
  const bool endsLine = piece.ends_with('\n');
  lineIsLost_ = lineIsLost_ || isTooMuch();
  if (!lineIsLost_) {
    queue_ += piece;
    lineIsOpen_ = !endsLine;
    return;
  }
  if (std::exchange(lineIsOpen_, false)) queue_ += '\n';  // for which there is room
  if (!endsLine) return;
  lineIsLost_ = false;
  CountLost(1);
}

void StandardStream::Pump() {
  while (Waiting() > 0 && Takes()) {
    const std::string_view piece = std::string_view(queue_).substr(taken_, PIPE_BUF);
    const ssize_t wrote = Uninterrupted([&] { return write(descriptor_, piece.data(), piece.size()); });
    if (wrote < 0 && errno == EAGAIN) break;
    if (wrote < 0) return LoseQueue();
    taken_ += static_cast<std::size_t>(wrote);
  }
  // Moved together when half of it is out, so that each byte is moved once at most on average.
  if (taken_ >= queue_.size() - taken_) {
    queue_.erase(0, taken_);
    taken_ = 0;
  }
  const bool waits = Waiting() > 0;
  if (waits && !watch_) watch_ = loop_.WatchWritable(descriptor_, [this] { Pump(); });
  if (watch_) watch_->SetEnabled(waits);
}

// Also when writing would fail: the error is the write's to tell.
bool StandardStream::Takes() const {
  pollfd asked{descriptor_, POLLOUT, 0};
  return poll(&asked, 1, 0) > 0;
}

void StandardStream::LoseQueue() {
  const std::uint64_t lines = LinesIn(std::string_view(queue_).substr(taken_));
  queue_.clear();
  taken_ = 0;
  lineIsOpen_ = false;
  if (watch_) watch_->SetEnabled(false);
  CountLost(lines);
}

void StandardStream::CountLost(std::uint64_t lines) {
  if (lines == 0) return;
  const bool isFirst = lostLines_ == 0;
  lostLines_ += lines;
  if (isFirst) OnFirstLoss();
}

void StandardStream::Finish(std::string_view lastWords, Instant deadline, int impatience) {
  if (lineIsOpen_ && !lastWords.empty()) queue_ += '\n';
  queue_ += isTerminal_ ? WithoutCommands(lastWords) : std::string(lastWords);
  for (Pump(); Waiting() > 0; Pump()) {
    std::array<pollfd, 2> asked{{{descriptor_, POLLOUT, 0}, {impatience, POLLIN, 0}}};
    const int left = MillisecondsOf(deadline - loop_.Now());
    const int ready = Uninterrupted([&] { return poll(asked.data(), asked.size(), left); });
    if (ready <= 0 || asked[1].revents != 0) break;
  }
  LoseQueue();
}

}  // namespace quarlin
